#pragma once

#include "host/address/register_info.h"
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet {

/** The registers that a driver offers. */
class RegisterCatalog
{
public:
    RegisterCatalog() = default;

    /** Appends one. */
    void add(const RegisterInfo &reg) { m_registers.append(reg); }

    /** @return nullptr for a name that the driver does not offer; names are case-sensitive. */
    const RegisterInfo *find(const QString &name) const;

    const QVector<RegisterInfo> &all() const { return m_registers; }
    QStringList names() const;

    /**
     * Reads the five texts of a register description.
     * @return nothing where fewer than five came or the limits do not fit the format.
     */
    static std::optional<RegisterInfo> read(const QString &name, const QStringList &description);

private:
    QVector<RegisterInfo> m_registers;
};

} // namespace cnet
