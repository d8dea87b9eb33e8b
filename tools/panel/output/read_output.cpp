#include "panel/output/read_output.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"
#include "panel/output/typed_output.h"

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

// No field of a plain item holds a comma or a quotation mark, so none is quoted.
QByteArray csvRows(const ReadResult &result, NamedTags named)
{
    QString rows;
    for (int i = 0; i < result.item.count; ++i) {
        const QString value = result.known.at(i) ? QString::number(result.values.at(i)) : QString();
        rows += QString::fromLatin1("%1,%2,%3,%4%5\n")
                    .arg(result.item.station)
                    .arg(result.item.reg.name, result.item.addressText(i), value,
                         csvNames(Tag(), named));
    }
    return rows.toLatin1();
}

QVector<TagValue> valuesOf(const ReadResult &result, const Tag &tag)
{
    return readTag(tag, result.values, result.known, Quality::Good);
}

QByteArray typedLines(const ReadResult &result, const Tag &tag)
{
    const QVector<TagValue> values = valuesOf(result, tag);
    QString lines;
    for (int i = 0; i < values.size(); ++i) {
        lines += QString::fromLatin1("%1  %2\n")
                     .arg(tagText(tag, i), shownText(tag, values.at(i).value));
    }
    return lines.toLocal8Bit();
}

QByteArray typedRows(const ReadResult &result, const Tag &tag, NamedTags named)
{
    const QVector<TagValue> values = valuesOf(result, tag);
    QString rows;
    for (int i = 0; i < values.size(); ++i) {
        rows += QString::fromLatin1("%1,%2,%3,")
                    .arg(QString::number(tag.item.station), tag.item.reg.name,
                         tag.item.addressText(i * tag.type.unitsPerValue())) +
                csvValue(tag, values.at(i).value) + csvNames(tag, named) + QLatin1Char('\n');
    }
    return rows.toUtf8();
}

QByteArray jsonLine(const ReadResult &result, const Tag &tag)
{
    QJsonArray values;
    for (int i = 0; i < result.item.count; ++i) {
        values.append(result.known.at(i) ? QJsonValue(result.values.at(i)) : QJsonValue());
    }
    QJsonObject line{{QLatin1String("event"), QLatin1String("value")},
                     {QLatin1String("item"), typedItemText(tag)},
                     {QLatin1String("station"), result.item.station},
                     {QLatin1String("register"), result.item.reg.name},
                     {QLatin1String("address"), result.item.addressText(0)},
                     {QLatin1String("count"), tag.count},
                     {QLatin1String("values"), values},
                     {QLatin1String("good"), isAllGood({result}, {tag})}};
    addNames(line, tag);
    if (!isPlain(tag)) {
        addTypedValues(line, tag, valuesOf(result, tag));
    }
    if (!result.isGood()) {
        line.insert(QLatin1String("failure"), result.failure.text());
    }
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

bool isAllGood(const QVector<ReadResult> &results, const QVector<Tag> &tags)
{
    for (int i = 0; i < results.size(); ++i) {
        const QVector<TagValue> values = valuesOf(results.at(i), tags.at(i));
        if (!results.at(i).isGood() || !firstFault(values).isEmpty()) {
            return false;
        }
    }
    return true;
}

QByteArray readOutput(const QVector<ReadResult> &results, const QVector<Tag> &tags,
                      OutputFormat format)
{
    const NamedTags named = namedTags(tags);
    QByteArray text;
    if (format == OutputFormat::Csv) {
        text = "station,register,address,value";
        text += named == NamedTags::Some ? ",name,unit\n" : "\n";
    }
    for (int i = 0; i < results.size(); ++i) {
        const ReadResult &result = results.at(i);
        const Tag &tag = tags.at(i);
        if (format == OutputFormat::Json) {
            text += jsonLine(result, tag);
        } else if (format == OutputFormat::Csv) {
            text += isPlain(tag) ? csvRows(result, named) : typedRows(result, tag, named);
        } else {
            text += isPlain(tag) ? textLines(result) : typedLines(result, tag);
        }
    }
    return text;
}

} // namespace cnet::panel
