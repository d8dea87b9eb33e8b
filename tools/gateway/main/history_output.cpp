#include "gateway/main/history_output.h"

#include "gateway/toml/time_text.h"

#include "host/monitor/quality.h"
#include "host/tag/value_format.h"
#include "host/text/csv_field.h"
#include "host/value/json_value.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace cnet::gateway {

namespace {

QString csvLine(const HistoryRow &row)
{
    // A text stands as it is, and what is not known is empty.
    const auto *text = std::get_if<QString>(&row.value.value);
    const QString known = row.value.isKnown() ? typedText(row.tag, row.value) : QString();
    const QStringList fields{utcText(row.atMs),
                             row.line,
                             QString::number(row.tag.item.station),
                             row.tag.name,
                             text != nullptr ? *text : known,
                             row.tag.unit,
                             row.quality,
                             row.reason};
    return QString::fromUtf8(csvRecord(fields, CsvDialect())) + QLatin1Char('\n');
}

QString jsonLine(const HistoryRow &row)
{
    QJsonObject line{{QLatin1String("time"), utcText(row.atMs)},
                     {QLatin1String("line"), row.line},
                     {QLatin1String("station"), row.tag.item.station},
                     {QLatin1String("tag"), row.tag.name},
                     {QLatin1String("value"), jsonValue(row.value.value)},
                     {QLatin1String("quality"), row.quality}};
    if (!row.tag.unit.isEmpty()) {
        line.insert(QLatin1String("unit"), row.tag.unit);
    }
    if (!row.reason.isEmpty()) {
        line.insert(QLatin1String("reason"), row.reason);
    }
    return QString::fromUtf8(QJsonDocument(line).toJson(QJsonDocument::Compact)) +
           QLatin1Char('\n');
}

QString textLine(const HistoryRow &row)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(row.atMs);
    QString line = local.toString(QLatin1String("yyyy-MM-dd HH:mm:ss.zzz")) + QLatin1String("  ") +
                   row.tag.name + QLatin1String("  ") + shownText(row.tag, row.value);
    if (row.quality != qualityText(Quality::Good)) {
        line += QString::fromLatin1("  (%1%2)")
                    .arg(row.quality,
                         row.reason.isEmpty() ? QString() : QLatin1String(": ") + row.reason);
    }
    return line + QLatin1Char('\n');
}

} // namespace

QString historyHeader(HistoryFormat format)
{
    return format == HistoryFormat::Csv
               ? QLatin1String("time,line,station,tag,value,unit,quality,reason\n")
               : QString();
}

QString historyLine(HistoryFormat format, const HistoryRow &row)
{
    switch (format) {
    case HistoryFormat::Csv:
        return csvLine(row);
    case HistoryFormat::Json:
        return jsonLine(row);
    case HistoryFormat::Text:
        break;
    }
    return textLine(row);
}

} // namespace cnet::gateway
