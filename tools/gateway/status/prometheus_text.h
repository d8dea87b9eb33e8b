#pragma once

#include <QByteArray>
#include <QString>

#include <initializer_list>
#include <utility>

namespace cnet::gateway {

/**
 * Writes numbers in Prometheus's text format, version 0.0.4. All samples of a metric stand
 * together, behind what it means.
 */
class PrometheusText
{
public:
    using Labels = std::initializer_list<std::pair<const char *, QString>>;

    /**
     * Begins a metric. Each has a name of its own.
     * @param name in base units: "cnet_gateway_ledger_bytes"; a counter's ends with "_total"
     * @param type "gauge", "counter" or "histogram"
     * @param help what it means, in one line
     */
    void begin(const char *name, const char *type, const char *help);

    /** A sample of it. @param suffix behind the name, for the parts of a histogram */
    void add(const Labels &labels, double value, const char *suffix = "");

    const QByteArray &text() const { return m_text; }

private:
    QByteArray m_name;
    QByteArray m_text;
};

} // namespace cnet::gateway
