#pragma once

#include "host/address/item.h"
#include "host/address/register_catalog.h"

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

namespace cnet {

class DriverCore;

enum class Access { Read, Write };

/** What an object of a panel is made of. */
enum class ObjectKind { Words, Bits };

/** What the driver says of itself. */
struct DriverDescription
{
    QString name;
    QString version;        ///< of its interface: "2.0.0.0"
    QString protocolType;   ///< "0"
    QString propertyPage;   ///< "0_0"
    QString serialDefault;  ///< "38400,8,NONE,1"
    QString networkDefault; ///< "192.168.0.100:8000"
};

/** What the driver says of an address. */
struct AddressVerdict
{
    bool valid = false;
    int number = 0; ///< the driver's own for it, where it is valid
    QString reason; ///< why not, in words: "out of range"
};

/** The addresses of copies of an object. */
struct AddressSeries
{
    QVector<QString> texts;
    QVector<int> numbers; ///< as many
    bool clamped =
        false; ///< some lie beyond the highest address and were set to it, or are missing
};

/**
 * A driver, loaded at run time. A session talks through one; several drivers in a process do not
 * share anything. To be used on the thread of its session.
 */
class Driver : public QObject
{
    Q_OBJECT

public:
    explicit Driver(QObject *parent = nullptr);
    ~Driver() override;

    /**
     * Loads the library, once only. Where this process has the file in use already, a copy of it is
     * loaded, from a temporary folder that goes with this object.
     *
     * @param path file to load; empty: the library that came with the program: in the folder `lib`
     * beside the program's own, where an installation has its libraries, beside the program, or on
     * the system's search path
     * @param error receives one sentence when the result is false
     */
    bool load(const QString &path, QString &error);
    bool isLoaded() const;

    /** The file that was loaded. */
    QString fileName() const;

    /** Empty before load(). */
    const RegisterCatalog &registers() const { return m_registers; }

    /** Valid after load(), as all that follows. */
    DriverDescription description() const;

    /**
     * Asks the driver whether it takes all addresses of an item. Nothing else keeps a wrong one off
     * the line: a session takes checked items only.
     *
     * @param error receives one sentence, with what was expected, when the result is false
     */
    bool check(const Item &item, Access access, QString &error) const;

    /**
     * The same for an address as text.
     * @param count words or bits of the object, 1 or more
     */
    AddressVerdict checkAddress(const QString &registerName, const QString &text, ObjectKind kind,
                                int count, Access access) const;

    /** Intervals of series() that are no number of units. */
    enum Interval { kWordInterval = -1, kDoubleWordInterval = -2 };

    /**
     * The addresses that a panel's editor gives to copies of an object.
     * @param start a valid address
     * @param count how many, 1 or more
     * @param step units from one to the next, 1 or more, or an Interval
     */
    AddressSeries series(const RegisterInfo &reg, int start, int count, int step) const;

    /** For the library's own use. */
    DriverCore &core() { return *m_core; }

private:
    void readRegisters();

    std::unique_ptr<DriverCore> m_core;
    RegisterCatalog m_registers;
};

} // namespace cnet
