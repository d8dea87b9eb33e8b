#include "host/address/address.h"

#include <QRegularExpression>

namespace cnet {

namespace {

// Qt's conversion also takes signs, blanks and a radix prefix, none of which belong in an address.
std::optional<int> readDigits(const QString &text, int radix)
{
    static const QRegularExpression digits(QLatin1String("\\A[0-9A-Fa-f]{1,9}\\z"));
    bool ok = false;
    const int number = text.toInt(&ok, radix);
    if (!ok || !digits.match(text).hasMatch()) {
        return std::nullopt;
    }
    return number;
}

} // namespace

std::optional<int> readAddress(const RegisterInfo &info, const QString &text)
{
    if (info.form == AddressForm::Plain) {
        return readDigits(text, info.radix);
    }
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const auto word = readDigits(parts.at(0), 10);
    const auto bit = readDigits(parts.at(1), 10);
    const int highestWord = (1 << 24);
    if (!word || !bit || *word > highestWord || *bit >= kBitsPerWord) {
        return std::nullopt;
    }
    return *word * kBitsPerWord + *bit;
}

QString addressText(const RegisterInfo &info, int address)
{
    if (info.form == AddressForm::Plain) {
        return QString::number(address, info.radix).toUpper();
    }
    return QString::fromLatin1("%1.%2").arg(address / kBitsPerWord).arg(address % kBitsPerWord);
}

QString addressHint(const RegisterInfo &info)
{
    const QString kind = info.form == AddressForm::WordBit ? QLatin1String("WORD.BIT")
                         : info.radix == 8                 ? QLatin1String("an octal number")
                         : info.radix == 16                ? QLatin1String("a hexadecimal number")
                                                           : QLatin1String("a number");
    return QString::fromLatin1("%1 from %2 to %3")
        .arg(kind, addressText(info, info.lowest), addressText(info, info.highest));
}

} // namespace cnet
