#pragma once

#include "host/driver/driver_library.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet {

/** How the user writes an address of a register. */
enum class AddressForm {
    Plain,   ///< one number: "100"
    WordBit, ///< decimal word, ".", decimal bit 0-15: "3.5"
};

/** One register type, as the driver describes it. */
struct RegisterInfo
{
    QString name;                      ///< "D_W", "M_bit", "TX"
    QString pattern;                   ///< address format: "DDDD", "DDD.dd"
    QString lowestText;                ///< lowest address in that format
    QString highestText;               ///< highest address in that format
    int widthCode = kWidthWord;        ///< a RegisterWidthCode
    int accessCode = kAccessReadWrite; ///< a RegisterAccessCode

    AddressForm form = AddressForm::Plain;
    int radix = 10; ///< of a plain address
    int lowest = 0; ///< as a number; word * 16 + bit in the word.bit form
    int highest = 0;

    bool isBit() const { return widthCode == kWidthBit; }
    /** A bit that is no bit of a word: the contacts of timers and counters. */
    bool isContact() const { return isBit() && form == AddressForm::Plain; }
    /** The device letter that word and bit names of the same memory share: "M" of "M_bit". */
    QString letter() const { return name.section(QLatin1Char('_'), 0, 0); }
};

/** The registers that a driver offers. */
class RegisterCatalog
{
public:
    RegisterCatalog() = default;

    /** Asks the driver for its word registers, then its bit registers. */
    explicit RegisterCatalog(const DriverFunctions &driver);

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
