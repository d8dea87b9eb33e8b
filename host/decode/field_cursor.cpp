#include "host/decode/field_cursor.h"

#include <algorithm>

namespace cnet {

namespace {

bool isHexDigit(char letter)
{
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F') ||
           (letter >= 'a' && letter <= 'f');
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
    const int taken = std::min(count, left());
    FrameField field;
    field.offset = m_position;
    field.length = taken;
    field.name = QLatin1String(name);
    m_frame.fields.append(field);
    m_position += taken;
    if (taken < count) {
        fail(m_position, taken == 0 ? QString::fromLatin1("the %1 is missing").arg(field.name)
                                    : QString::fromLatin1("the %1 has %2 of %3 characters")
                                          .arg(field.name)
                                          .arg(taken)
                                          .arg(count));
    }
    return m_frame.bytes.mid(field.offset, taken);
}

std::optional<int> FieldCursor::takeHex(int digits, const char *name)
{
    const int offset = m_position;
    const QByteArray text = take(digits, name);
    if (text.size() < digits) {
        return std::nullopt;
    }
    const auto wrong = std::find_if_not(text.cbegin(), text.cend(), isHexDigit);
    if (wrong != text.cend()) {
        fail(offset + static_cast<int>(wrong - text.cbegin()),
             QLatin1String("expected a hexadecimal digit"));
        return std::nullopt;
    }
    const int value = text.toInt(nullptr, 16);
    means(QString::number(value));
    return value;
}

void FieldCursor::means(const QString &text)
{
    m_frame.fields.last().meaning = text;
}

void FieldCursor::fail(int at, const QString &text, FrameVerdict verdict)
{
    FrameField &field = m_frame.fields.last();
    if (field.fault.isEmpty()) {
        field.fault = text;
        field.faultAt = at;
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
