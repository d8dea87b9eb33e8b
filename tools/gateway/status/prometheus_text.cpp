#include "gateway/status/prometheus_text.h"

#include <cmath>

namespace cnet::gateway {

namespace {

constexpr double kExactWhole = 9007199254740992.0; // 2^53

QByteArray escaped(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    bytes.replace('\\', "\\\\");
    bytes.replace('"', "\\\"");
    bytes.replace('\n', "\\n");
    return bytes;
}

QByteArray numberText(double value)
{
    if (std::isinf(value)) {
        return value > 0 ? "+Inf" : "-Inf";
    }
    // Counters stay readable, and exact: six digits would hide what came last.
    if (std::floor(value) == value && std::abs(value) < kExactWhole) {
        return QByteArray::number(static_cast<qint64>(value));
    }
    return QByteArray::number(value, 'g', 15);
}

} // namespace

void PrometheusText::begin(const char *name, const char *type, const char *help)
{
    m_name = name;
    m_text += QByteArray("# HELP ") + name + ' ' + help + '\n';
    m_text += QByteArray("# TYPE ") + name + ' ' + type + '\n';
}

void PrometheusText::add(const Labels &labels, double value, const char *suffix)
{
    m_text += m_name + suffix;
    char divider = '{';
    for (const auto &label : labels) {
        m_text += divider;
        m_text += QByteArray(label.first) + "=\"" + escaped(label.second) + '"';
        divider = ',';
    }
    if (divider == ',') {
        m_text += '}';
    }
    m_text += ' ' + numberText(value) + '\n';
}

} // namespace cnet::gateway
