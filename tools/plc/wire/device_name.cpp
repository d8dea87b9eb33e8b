#include "plc/wire/device_name.h"

#include <algorithm>
#include <optional>

namespace plc {

namespace {

// "%" device type
constexpr int kNumberPosition = 3;
/** Larger than any address, and small enough to be multiplied by 16. */
constexpr int kBeyondAllDevices = 1000000;

std::optional<int> decimal(const QByteArray &digits)
{
    int value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        value = std::min(value * 10 + (digit - '0'), kBeyondAllDevices);
    }
    return value;
}

bool isDevice(char letter)
{
    return QByteArray("PMKLFTCD").contains(letter);
}

} // namespace

std::variant<Point, Refusal> readDeviceName(const QByteArray &name)
{
    if (name.size() <= kNumberPosition || name[0] != '%') {
        return Refusal::Malformed;
    }
    const char device = name[1];
    if (!isDevice(device)) {
        return Refusal::NoSuchAddress;
    }
    const char type = name[2];
    const bool word = type == 'W' || type == 'w';
    const bool bit = type == 'X' || type == 'x';
    if (!word && (!bit || device == 'D')) {
        return Refusal::TypeNotSupported;
    }
    const QByteArray digits = name.mid(kNumberPosition);
    const bool contact = bit && (device == 'T' || device == 'C');
    if (word || contact) {
        const std::optional<int> number = decimal(digits);
        if (!number) {
            return Refusal::Malformed;
        }
        return Point{device, contact ? PointKind::Contact : PointKind::Word, *number};
    }
    const std::optional<int> wordNumber = decimal(digits.left(digits.size() - 1));
    const std::optional<int> bitNumber = FieldReader(digits.right(1)).takeHex(1);
    if (!wordNumber || !bitNumber) {
        return Refusal::Malformed;
    }
    return Point{device, PointKind::Bit, *wordNumber * 16 + *bitNumber};
}

} // namespace plc
