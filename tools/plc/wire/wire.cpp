#include "plc/wire/wire.h"

#include <utility>

namespace plc {

namespace {

int digitValue(char digit)
{
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

} // namespace

QByteArray blockCheck(const QByteArray &headToTail)
{
    quint32 sum = 0;
    for (const char byte : headToTail) {
        sum += static_cast<quint8>(byte);
    }
    return hex(sum, kBlockCheckBytes);
}

QByteArray hex(quint32 value, int digits)
{
    QByteArray text;
    appendHex(text, value, digits);
    return text;
}

void appendHex(QByteArray &text, quint32 value, int digits)
{
    const auto end = text.size();
    text.resize(end + digits);
    char *const first = text.data() + end;
    for (int i = digits - 1; i >= 0; --i) {
        first[i] = "0123456789ABCDEF"[value & 0xFU];
        value >>= 4U;
    }
}

FieldReader::FieldReader(QByteArray text)
    : m_text(std::move(text))
{}

std::optional<QByteArray> FieldReader::take(int count)
{
    if (count < 0 || count > left()) {
        return std::nullopt;
    }
    m_position += count;
    return m_text.mid(m_position - count, count);
}

std::optional<int> FieldReader::takeHex(int digits)
{
    const int start = m_position;
    const std::optional<QByteArray> text = take(digits);
    if (!text) {
        return std::nullopt;
    }
    int value = 0;
    for (const char character : *text) {
        const int digit = digitValue(character);
        if (digit < 0) {
            m_position = start;
            return std::nullopt;
        }
        value = value * 16 + digit;
    }
    return value;
}

} // namespace plc
