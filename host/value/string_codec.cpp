#include "host/value/string_codec.h"

#include "host/address/value_text.h"

namespace cnet {

namespace {

const int kBitsOfByte = 8;
const ushort kHighestLatin = 0xFF;

int shiftOf(const ValueType &type, int character)
{
    const bool isFirst = character % 2 == 0;
    return isFirst == (type.bytes == ByteOrder::LowFirst) ? 0 : kBitsOfByte;
}

} // namespace

QString decodeString(const ValueType &type, const QVector<quint16> &units, int first)
{
    QByteArray bytes;
    for (int i = 0; i < type.characters; ++i) {
        bytes.append(static_cast<char>(units.at(first + i / 2) >> shiftOf(type, i) & 0xFF));
    }
    const int end = static_cast<int>(bytes.indexOf('\0'));
    int length = end < 0 ? static_cast<int>(bytes.size()) : end;
    while (type.padding == Padding::Space && length > 0 && bytes.at(length - 1) == ' ') {
        --length;
    }
    return QString::fromLatin1(bytes.constData(), length);
}

std::optional<QVector<quint16>> encodeString(const ValueType &type, const QString &text,
                                             QString &error)
{
    if (text.size() > type.characters) {
        error = QString::fromLatin1("'%1' has %2 characters, and %3 takes %4 at most")
                    .arg(quotable(text))
                    .arg(text.size())
                    .arg(type.text())
                    .arg(type.characters);
        return std::nullopt;
    }
    const int fill = type.padding == Padding::Space ? ' ' : 0;
    QVector<quint16> units(type.unitsPerValue(), static_cast<quint16>(fill << kBitsOfByte | fill));
    for (int i = 0; i < text.size(); ++i) {
        const ushort code = text.at(i).unicode();
        if (code == 0 || code > kHighestLatin) {
            error = QString::fromLatin1("character %1 of '%2' cannot be stored: a string takes "
                                        "those of Latin-1 but the one with the code 0")
                        .arg(i + 1)
                        .arg(quotable(text));
            return std::nullopt;
        }
        const auto mask = static_cast<quint16>(0xFF << shiftOf(type, i));
        quint16 &unit = units[i / 2];
        unit = static_cast<quint16>((unit & ~mask) | (code << shiftOf(type, i)));
    }
    return units;
}

} // namespace cnet
