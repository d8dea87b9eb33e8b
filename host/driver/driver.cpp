#include "host/driver/driver.h"

#include "host/address/address.h"
#include "host/driver/driver_core.h"

#include <QStringList>

namespace cnet {

namespace {

// The driver's codes of what an object of the panel is. A word object may also be 32 bits wide,
// which no register of this driver asks for.
const int kBitObject = -1;
const int kWordObject = 0;
const int kReads = 0;
const int kWrites = 1;

const int kBitRegisters = 0;
const int kWordRegisters = 1;

// Places in the driver's parameter text, which is a list with commas.
enum ParameterPlace {
    kTypePlace = 0,
    kSerialPlace = 1,
    kSerialFields = 4,
    kHostPlace = 7,
    kPortPlace = 8,
    kNamePlace = 9,
};

QString reasonOf(int code)
{
    switch (code) {
    case kAddressValid:
        return QString();
    case kAddressWrongKind:
        return QLatin1String("a bit register used as words, or a word register used as bits");
    case kAddressOutOfRange:
        return QLatin1String("out of range");
    case kAddressUnknownName:
        return QLatin1String("no such register");
    case kAddressMalformed:
        return QLatin1String("not in the register's format");
    case kAddressWrongType:
        return QLatin1String("the data type does not fit the register");
    case kAddressReadOnly:
        return QLatin1String("the register cannot be written");
    default:
        return QString::fromLatin1("refused with code %1").arg(code);
    }
}

} // namespace

Driver::Driver(QObject *parent)
    : QObject(parent)
    , m_core(std::make_unique<DriverCore>())
{}

Driver::~Driver() = default;

bool Driver::load(const QString &path, QString &error)
{
    if (!m_core->load(path, error)) {
        return false;
    }
    readRegisters();
    return true;
}

bool Driver::isLoaded() const
{
    return m_core->isLoaded();
}

QString Driver::fileName() const
{
    return m_core->library().fileName();
}

void Driver::readRegisters()
{
    QList<QString> names;
    m_core->functions().getRegListByType(kWordRegisters, names);
    m_core->functions().getRegListByType(kBitRegisters, names);
    for (const QString &name : names) {
        QList<QString> texts;
        m_core->functions().getRegDiscription(name, texts);
        if (const auto info = RegisterCatalog::read(name, QStringList(texts))) {
            m_registers.add(*info);
        }
    }
}

DriverDescription Driver::description() const
{
    QString parameters;
    m_core->functions().getDriverParameter(parameters);
    const QStringList items = parameters.split(QLatin1Char(','));
    DriverDescription description;
    m_core->functions().getDriverPropertyPage(description.propertyPage);
    description.name = items.value(kNamePlace);
    description.version = m_core->functions().getVersion();
    description.protocolType = items.value(kTypePlace);
    description.serialDefault = items.mid(kSerialPlace, kSerialFields).join(QLatin1Char(','));
    description.networkDefault =
        QString::fromLatin1("%1:%2").arg(items.value(kHostPlace), items.value(kPortPlace));
    return description;
}

// The editor's plain check first, then the one that knows what the object does.
AddressVerdict Driver::checkAddress(const QString &registerName, const QString &text,
                                    ObjectKind kind, int count, Access access) const
{
    AddressVerdict verdict;
    const bool bits = kind == ObjectKind::Bits;
    int code = m_core->functions().checkAddrValidity(registerName, text, verdict.number, count,
                                                     bits ? 0 : 1);
    if (code == kAddressValid) {
        code = m_core->functions().checkAddr(registerName, text, verdict.number,
                                             bits ? kBitObject : kWordObject, count,
                                             access == Access::Write ? kWrites : kReads);
    }
    // The driver answers for some names that it does not list.
    if (m_registers.find(registerName) == nullptr) {
        code = kAddressUnknownName;
    }
    verdict.valid = code == kAddressValid;
    verdict.reason = reasonOf(code);
    return verdict;
}

bool Driver::check(const Item &item, Access access, QString &error) const
{
    const AddressVerdict verdict =
        checkAddress(item.reg.name, item.addressText(0),
                     item.reg.isBit() ? ObjectKind::Bits : ObjectKind::Words, item.count, access);
    // Requests are made from the number; it must be the one that the driver made of the text.
    const bool same = !verdict.valid || verdict.number == item.start;
    if (verdict.valid && same) {
        return true;
    }
    error = QString::fromLatin1("'%1': %2; an address of %3 is %4")
                .arg(item.text(),
                     same ? verdict.reason
                          : QString::fromLatin1("the driver takes it for %1").arg(verdict.number),
                     item.reg.name, addressHint(item.reg));
    return false;
}

AddressSeries Driver::series(const RegisterInfo &reg, int start, int count, int step) const
{
    static_assert(static_cast<int>(kWordInterval) == static_cast<int>(kIntervalWord) &&
                      static_cast<int>(kDoubleWordInterval) ==
                          static_cast<int>(kIntervalDoubleWord),
                  "as the driver has them");
    AddressSeries series;
    QString name = reg.name;
    const int result =
        m_core->functions().multiCopy(name, start, count, step, series.texts, series.numbers);
    series.clamped = result == kSeriesClamped;
    return series;
}

} // namespace cnet
