#include "host/driver/item_check.h"

#include "host/address/address.h"

namespace cnet {

namespace {

// The driver's codes of what an object of the panel is. A word object may also be 32 bits wide,
// which no register of this driver asks for.
const int kBitObject = -1;
const int kWordObject = 0;
const int kReads = 0;
const int kWrites = 1;

} // namespace

QString addressCodeText(int code)
{
    switch (code) {
    case kAddressValid:
        return QLatin1String("valid");
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

int checkAddress(const DriverFunctions &driver, const QString &registerName, const QString &text,
                 bool asBits, int count, Access access, int &number)
{
    return driver.checkAddr(registerName, text, number, asBits ? kBitObject : kWordObject, count,
                            access == Access::Write ? kWrites : kReads);
}

bool checkItem(const DriverFunctions &driver, const Item &item, Access access, QString &error)
{
    int number = 0;
    const int code = checkAddress(driver, item.reg.name, item.addressText(0), item.reg.isBit(),
                                  item.count, access, number);
    // Requests are made from the number; it must be the one that the driver made of the text.
    const bool same = code != kAddressValid || number == item.start;
    if (code == kAddressValid && same) {
        return true;
    }
    error = QString::fromLatin1("'%1': %2; an address of %3 is %4")
                .arg(item.text(),
                     same ? addressCodeText(code)
                          : QString::fromLatin1("the driver takes it for %1").arg(number),
                     item.reg.name, addressHint(item.reg));
    return false;
}

} // namespace cnet
