#include "panel/output/read_output.h"

#include "host/address/value_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace cnet::panel {

namespace {

QString knownText(const ReadResult &result, int offset)
{
    return result.known.at(offset) ? valueText(result.values.at(offset), result.item.reg.isBit())
                                   : QLatin1String("-");
}

// Adjacent addresses that were not read share a line: the reason is the same for all of them.
QByteArray textLines(const ReadResult &result)
{
    QString lines;
    for (int i = 0; i < result.item.count;) {
        Item part = result.item;
        part.start += i;
        part.count = 1;
        while (!result.known.at(i) && i + part.count < result.item.count &&
               !result.known.at(i + part.count)) {
            ++part.count;
        }
        lines += QString::fromLatin1("%1  %2\n").arg(part.text(), knownText(result, i));
        i += part.count;
    }
    return lines.toLocal8Bit();
}

// No field ever holds a comma or a quotation mark, so none is quoted.
QByteArray csvRows(const ReadResult &result)
{
    QString rows;
    for (int i = 0; i < result.item.count; ++i) {
        const QString value = result.known.at(i) ? QString::number(result.values.at(i)) : QString();
        rows += QString::fromLatin1("%1,%2,%3,%4\n")
                    .arg(result.item.station)
                    .arg(result.item.reg.name, result.item.addressText(i), value);
    }
    return rows.toLatin1();
}

QByteArray jsonLine(const ReadResult &result)
{
    QJsonArray values;
    for (int i = 0; i < result.item.count; ++i) {
        values.append(result.known.at(i) ? QJsonValue(result.values.at(i)) : QJsonValue());
    }
    QJsonObject line{{QLatin1String("event"), QLatin1String("value")},
                     {QLatin1String("item"), result.item.text()},
                     {QLatin1String("station"), result.item.station},
                     {QLatin1String("register"), result.item.reg.name},
                     {QLatin1String("address"), result.item.addressText(0)},
                     {QLatin1String("count"), result.item.count},
                     {QLatin1String("values"), values},
                     {QLatin1String("good"), result.isGood()}};
    if (!result.isGood()) {
        line.insert(QLatin1String("failure"), result.failure.text());
    }
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray readOutput(const QVector<ReadResult> &results, OutputFormat format)
{
    QByteArray text = format == OutputFormat::Csv ? "station,register,address,value\n" : "";
    for (const ReadResult &result : results) {
        text += format == OutputFormat::Json  ? jsonLine(result)
                : format == OutputFormat::Csv ? csvRows(result)
                                              : textLines(result);
    }
    return text;
}

} // namespace cnet::panel
