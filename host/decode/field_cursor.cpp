#include "host/decode/field_cursor.h"

#include <algorithm>

namespace cnet {

namespace {

/// @return -1 for anything else
int hexDigit(char letter)
{
    if (letter >= '0' && letter <= '9') {
        return letter - '0';
    }
    const char upper =
        letter >= 'a' && letter <= 'f' ? static_cast<char>(letter - 'a' + 'A') : letter;
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

} // namespace

void judge(DecodedFrame &frame, FrameVerdict verdict, int at, const QString &fault)
{
    if (verdict < frame.verdict) {
        frame.verdict = verdict;
        frame.faultAt = at;
        frame.fault = fault;
    }
}

QByteArray FieldCursor::take(int count, const char *name)
{
    const int offset = m_position;
    return m_frame.bytes.mid(offset, skip(count, name));
}

int FieldCursor::skip(int count, const char *name)
{
    const int taken = std::min(count, left());
    if (explains()) {
        FrameField field;
        field.offset = m_position;
        field.length = taken;
        field.name = QLatin1String(name);
        m_frame.fields.append(field);
    }
    m_position += taken;
    if (taken < count) {
        const auto what = QLatin1String(name);
        fail(m_position, taken == 0 ? QString::fromLatin1("the %1 is missing").arg(what)
                                    : QString::fromLatin1("the %1 has %2 of %3 characters")
                                          .arg(what)
                                          .arg(taken)
                                          .arg(count));
    }
    return taken;
}

std::optional<int> FieldCursor::takeHex(int digits, const char *name)
{
    const int offset = m_position;
    if (skip(digits, name) < digits) {
        return std::nullopt;
    }
    const int hexadecimal = 16;
    int value = 0;
    for (int at = offset; at < m_position; ++at) {
        const int digit = hexDigit(m_frame.bytes.at(at));
        if (digit < 0) {
            fail(at, QLatin1String("expected a hexadecimal digit"));
            return std::nullopt;
        }
        value = value * hexadecimal + digit;
    }
    if (explains()) {
        means(QString::number(value));
    }
    return value;
}

void FieldCursor::means(const QString &text)
{
    if (explains()) {
        m_frame.fields.last().meaning = text;
    }
}

void FieldCursor::fail(int at, const QString &text, FrameVerdict verdict)
{
    if (explains() && m_frame.fields.constLast().fault.isEmpty()) {
        m_frame.fields.last().fault = text;
        m_frame.fields.last().faultAt = at;
    }
    judge(m_frame, verdict, at, text);
    m_fine = m_fine && verdict == FrameVerdict::Mismatch;
}

void FieldCursor::skipRest()
{
    if (left() > 0) {
        take(left(), "not read");
    }
}

} // namespace cnet
