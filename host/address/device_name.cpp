#include "host/address/device_name.h"

#include "host/address/address.h"

namespace cnet {

namespace {

const char kRelays[] = "PMKLF";
const char kTimersAndCounters[] = "TC";
const char kDataRegister = 'D';
// A word number of more digits than that is on no CPU, and word * 16 + bit has to be a number.
const int kMostDigits = 7;

bool isOneOf(const char *letters, char letter)
{
    return QByteArray(letters).contains(letter);
}

RegisterInfo registerOf(char device, bool isBit)
{
    RegisterInfo reg;
    const QString letter = QChar::fromLatin1(device);
    const bool isContact = isBit && isOneOf(kTimersAndCounters, device);
    reg.name = letter + QLatin1String(isContact ? "X" : isBit ? "_bit" : "_W");
    reg.width = isBit ? RegisterWidth::Bit : RegisterWidth::Word;
    reg.form = isBit && !isContact ? AddressForm::WordBit : AddressForm::Plain;
    return reg;
}

DeviceName fail(DeviceName name, int at, const char *why)
{
    name.faultAt = at;
    name.fault = QLatin1String(why);
    return name;
}

// Of a relay's bit the last digit is hexadecimal, all others of a name are decimal.
DeviceName readDigits(DeviceName name, const QByteArray &text, int first)
{
    const bool wordBit = name.reg.form == AddressForm::WordBit;
    const int size = static_cast<int>(text.size());
    if (size <= first) {
        return fail(name, size, "the address is missing");
    }
    int significant = 0;
    for (int i = first; i < size; ++i) {
        const int radix = wordBit && i == size - 1 ? kBitsPerWord : 10;
        bool ok = false;
        const int digit = text.mid(i, 1).toInt(&ok, radix);
        if (!ok) {
            return fail(name, i,
                        radix == 10 ? "expected a decimal digit of the address"
                                    : "expected the bit as a hexadecimal digit");
        }
        significant += significant > 0 || digit > 0 ? 1 : 0;
        if (significant > kMostDigits) {
            return fail(name, i, "no PLC has so high an address");
        }
        name.address = name.address * radix + digit;
    }
    return name;
}

} // namespace

DeviceName readDeviceName(const QByteArray &text)
{
    DeviceName name;
    if (!text.startsWith('%')) {
        return fail(name, 0, "a name begins with %");
    }
    const char device = text.size() > 1 ? text.at(1) : '\0';
    if (device == '\0' || (!isOneOf(kRelays, device) && !isOneOf(kTimersAndCounters, device) &&
                           device != kDataRegister)) {
        return fail(name, 1, "the devices are P, M, K, L, F, T, C and D");
    }
    const char type = text.size() > 2 ? text.at(2) : '\0';
    const bool isBit = type == 'X' || type == 'x';
    if (!isBit && type != 'W' && type != 'w') {
        return fail(name, 2, "expected X for a bit or W for a word");
    }
    if (isBit && device == kDataRegister) {
        return fail(name, 2, "the data registers D have no bits (a PLC refuses with 0007)");
    }
    name.reg = registerOf(device, isBit);
    return readDigits(name, text, 3);
}

} // namespace cnet
