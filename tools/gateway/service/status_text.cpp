#include "gateway/service/status_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include <algorithm>

namespace cnet::gateway {

namespace {

QString textAt(const QJsonObject &json, const char *key)
{
    QString text = json.value(QLatin1String(key)).toString();
    // Names and reasons may hold anything, also what a terminal obeys.
    std::replace_if(
        text.begin(), text.end(),
        [](QChar letter) { return !letter.isPrint() && !letter.isSurrogate(); }, QLatin1Char('?'));
    return text;
}

double numberAt(const QJsonObject &json, const char *key)
{
    return json.value(QLatin1String(key)).toDouble();
}

QString wholeAt(const QJsonObject &json, const char *key)
{
    return QString::number(numberAt(json, key), 'f', 0);
}

QString unknownOr(const QJsonObject &json, const char *key, const char *unit)
{
    const QJsonValue value = json.value(QLatin1String(key));
    return value.isDouble() ? QString::number(value.toDouble(), 'f', 1) + QLatin1String(unit)
                            : QString(QLatin1Char('-'));
}

QString ageText(double ms)
{
    constexpr double kMinuteMs = 60000;
    constexpr double kHourMs = 3600000;
    if (ms < kMinuteMs) {
        return QString::number(ms / 1000, 'f', 1) + QLatin1String(" s");
    }
    return ms < 2 * kHourMs ? QString::number(ms / kMinuteMs, 'f', 0) + QLatin1String(" min")
                            : QString::number(ms / kHourMs, 'f', 1) + QLatin1String(" h");
}

QString sizeText(double bytes)
{
    constexpr double kKilo = 1000;
    return bytes < kKilo * kKilo
               ? QString::number(bytes / kKilo, 'f', 1) + QLatin1String(" kB")
               : QString::number(bytes / (kKilo * kKilo), 'f', 1) + QLatin1String(" MB");
}

/** Rows of which each column is as wide as it needs to be. */
class Table
{
public:
    explicit Table(const QStringList &titles) { m_rows.append(titles); }

    void add(const QStringList &cells) { m_rows.append(cells); }

    QString text() const
    {
        QVector<int> widths(m_rows.first().size(), 0);
        for (const QStringList &row : m_rows) {
            for (int i = 0; i < row.size(); ++i) {
                widths[i] = std::max(widths.at(i), static_cast<int>(row.at(i).size()));
            }
        }
        QString text;
        for (const QStringList &row : m_rows) {
            QString line;
            for (int i = 0; i < row.size(); ++i) {
                line += row.at(i).leftJustified(widths.at(i) + 2);
            }
            text += line.trimmed() + QLatin1Char('\n');
        }
        return text + QLatin1Char('\n');
    }

private:
    QVector<QStringList> m_rows;
};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char('|'));
}

QString linesText(const QJsonArray &lines)
{
    Table table(words("line|open|load|rounds|changes|trouble"));
    Table stations(words("station|state|requests|answers|repeated|no answer|unusable|refused|mean|"
                         "p99"));
    for (const auto &value : lines) {
        const QJsonObject line = value.toObject();
        const bool isOpen = line.value(QLatin1String("open")).toBool();
        table.add({textAt(line, "line"), QLatin1String(isOpen ? "yes" : "no"),
                   unknownOr(line, "load_percent", " %"), wholeAt(line, "rounds"),
                   wholeAt(line, "changes"), textAt(line, "trouble")});
        const QJsonArray all = line.value(QLatin1String("stations")).toArray();
        for (const auto &one : all) {
            const QJsonObject station = one.toObject();
            stations.add({textAt(line, "line") + QLatin1Char('/') + wholeAt(station, "station"),
                          textAt(station, "state"), wholeAt(station, "requests"),
                          wholeAt(station, "answers"), wholeAt(station, "repetitions"),
                          wholeAt(station, "no_answer"), wholeAt(station, "unusable"),
                          wholeAt(station, "refused"),
                          unknownOr(station, "response_mean_ms", " ms"),
                          unknownOr(station, "response_p99_ms", " ms")});
        }
    }
    return table.text() + stations.text();
}

QString sinksText(const QJsonArray &sinks)
{
    Table table(words("sink|ready|values|values/s|waiting|oldest|dropped|trouble"));
    for (const auto &value : sinks) {
        const QJsonObject sink = value.toObject();
        const bool isReady = sink.value(QLatin1String("ready")).toBool();
        table.add({textAt(sink, "sink"), QLatin1String(isReady ? "yes" : "no"),
                   wholeAt(sink, "values"), unknownOr(sink, "values_per_second", ""),
                   wholeAt(sink, "waiting_batches"), ageText(numberAt(sink, "waiting_ms")),
                   wholeAt(sink, "dropped_values"), textAt(sink, "trouble")});
    }
    return table.text();
}

QString ledgerText(const QJsonObject &ledger)
{
    QString text =
        QString::fromLatin1("ledger: %1 batches with %2 changes, %3 of %4")
            .arg(wholeAt(ledger, "batches"), wholeAt(ledger, "values"),
                 sizeText(numberAt(ledger, "bytes")), sizeText(numberAt(ledger, "bytes_limit")));
    if (ledger.contains(QLatin1String("hours_left"))) {
        text += QString::fromLatin1("; room for %1 hours")
                    .arg(numberAt(ledger, "hours_left"), 0, 'f', 1);
    }
    const QString trouble = textAt(ledger, "trouble");
    return text + (trouble.isEmpty() ? QString() : QLatin1String("; ") + trouble) +
           QLatin1Char('\n');
}

QString healthText(const QJsonObject &health)
{
    QString text = QLatin1String("health: ") + textAt(health, "status") + QLatin1Char('\n');
    for (const char *kind : {"reasons", "warnings"}) {
        const QJsonArray all = health.value(QLatin1String(kind)).toArray();
        for (const auto &one : all) {
            text += QLatin1String("  ") + textAt({{QLatin1String("text"), one}}, "text") +
                    QLatin1Char('\n');
        }
    }
    return text;
}

} // namespace

std::optional<QString> statusTextOf(const QByteArray &json)
{
    const QJsonObject status = QJsonDocument::fromJson(json).object();
    if (!status.contains(QLatin1String("lines"))) {
        return std::nullopt;
    }
    return QString::fromLatin1("cnet-gateway %1, runs since %2\n\n")
               .arg(textAt(status, "version"), textAt(status, "started")) +
           linesText(status.value(QLatin1String("lines")).toArray()) +
           sinksText(status.value(QLatin1String("sinks")).toArray()) +
           ledgerText(status.value(QLatin1String("ledger")).toObject()) +
           healthText(status.value(QLatin1String("health")).toObject());
}

} // namespace cnet::gateway
