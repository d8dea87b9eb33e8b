#include "gateway/postgresql/copy_text.h"

#include "gateway/postgresql/month.h"

#include <QDateTime>

#include <array>
#include <charconv>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
// The longest: a fraction with sign, 17 digits, point and exponent.
constexpr size_t kLongestNumber = 32;

template <typename Number>
void append(QByteArray &lines, Number number)
{
    std::array<char, kLongestNumber> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    lines.append(digits.data(), static_cast<int>(end - digits.data()));
}

} // namespace

QByteArray copyField(const QString &text)
{
    QByteArray field;
    for (const char byte : text.toUtf8()) {
        switch (byte) {
        case '\0':
            break;
        case '\\':
            field.append("\\\\");
            break;
        case '\t':
            field.append("\\t");
            break;
        case '\n':
            field.append("\\n");
            break;
        case '\r':
            field.append("\\r");
            break;
        default:
            field.append(byte);
        }
    }
    return field;
}

void CopyText::addTime(qint64 ms)
{
    const qint64 storable = storableTime(ms);
    if (storable / kSecondMs != m_second) {
        m_second = storable / kSecondMs;
        m_secondText = QDateTime::fromSecsSinceEpoch(m_second, Qt::UTC)
                           .toString(QLatin1String("yyyy-MM-dd HH:mm:ss."))
                           .toLatin1();
    }
    m_lines.append(m_secondText);
    const int rest = static_cast<int>(storable % kSecondMs);
    m_lines.append(static_cast<char>('0' + rest / 100));
    m_lines.append(static_cast<char>('0' + rest / 10 % 10));
    m_lines.append(static_cast<char>('0' + rest % 10));
    m_lines.append("+00\t");
}

void CopyText::addNumber(qint64 number)
{
    append(m_lines, number);
    m_lines.append('\t');
}

void CopyText::addValue(const Scalar &value)
{
    if (const auto *whole = std::get_if<qint64>(&value)) {
        append(m_lines, *whole);
        m_lines.append("\t\\N\t\\N\n");
    } else if (const auto *fraction = std::get_if<double>(&value)) {
        append(m_lines, *fraction);
        m_lines.append("\t\\N\t\\N\n");
    } else if (const auto *large = std::get_if<quint64>(&value)) {
        append(m_lines, *large);
        m_lines.append("\t\\N\t\\N\n");
    } else if (const auto *truth = std::get_if<bool>(&value)) {
        m_lines.append(*truth ? "\\N\t\\N\tt\n" : "\\N\t\\N\tf\n");
    } else if (const auto *text = std::get_if<QString>(&value)) {
        m_lines.append("\\N\t").append(copyField(*text)).append("\t\\N\n");
    } else {
        m_lines.append("\\N\t\\N\t\\N\n");
    }
}

void CopyText::add(const Change &change, qint64 tag, qint64 state)
{
    addTime(change.atMs);
    addNumber(tag);
    addNumber(state);
    addValue(change.value);
}

QByteArray CopyText::finish()
{
    QByteArray lines;
    lines.swap(m_lines);
    m_lines.reserve(static_cast<int>(lines.size()));
    return lines;
}

} // namespace cnet::gateway
