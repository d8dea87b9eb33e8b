#include "panel/reports/identify_output.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "panel/output/typed_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace cnet::panel {

namespace {

const int kBitsOfWord = 16;
const int kBitsOfGroup = 4;

// "0100 1101 0000 0000", bit 15 first.
QString bitsText(quint16 word)
{
    QString text;
    for (int bit = kBitsOfWord - 1; bit >= 0; --bit) {
        text += QLatin1Char((word >> bit & 1) != 0 ? '1' : '0');
        text += bit % kBitsOfGroup == 0 && bit > 0 ? QLatin1String(" ") : QLatin1String("");
    }
    return text;
}

QString wordLines(const ReadResult &result)
{
    QString lines;
    for (int i = 0; i < result.item.count; ++i) {
        Item word = result.item;
        word.start += i;
        word.count = 1;
        lines += QString::fromLatin1("%1  %2  %3\n")
                     .arg(word.text(), valueText(result.values.at(i), false).leftJustified(12),
                          bitsText(result.values.at(i)));
    }
    return lines;
}

// The bits stand beside their words; sixteen lines more would hide the rest.
QByteArray text(const ReadResult &result, const QVector<PossibleReading> &all, Readings readings)
{
    QVector<PossibleReading> shown;
    int width = 0;
    for (const PossibleReading &reading : all) {
        const bool isBit = reading.tag.type.kind == ValueKind::Bit;
        if (!isBit && (reading.isPlausible || readings == Readings::All)) {
            shown.append(reading);
            width = std::max(width, static_cast<int>(typedItemText(reading.tag).size()));
        }
    }
    QString lines = wordLines(result) + QLatin1Char('\n');
    for (const PossibleReading &reading : shown) {
        lines += typedItemText(reading.tag).leftJustified(width + 2) + reading.valuesText();
        lines += reading.isPlausible ? QLatin1String("\n")
                                     : QString::fromLatin1("  (%1)\n").arg(reading.doubt);
    }
    Item first = result.item;
    first.count = 1;
    return (lines + QString::fromLatin1("%1@bit0 to %1@bit15\n").arg(first.text())).toLocal8Bit();
}

QByteArray jsonLine(const PossibleReading &reading)
{
    QJsonArray values;
    for (const TypedValue &value : reading.values) {
        values.append(jsonValue(value.value));
    }
    QJsonObject line{{QLatin1String("event"), QLatin1String("reading")},
                     {QLatin1String("item"), typedItemText(reading.tag)},
                     {QLatin1String("type"), reading.tag.type.text()},
                     {QLatin1String("values"), values},
                     {QLatin1String("plausible"), reading.isPlausible}};
    if (!reading.isPlausible) {
        line.insert(QLatin1String("doubt"), reading.doubt);
    }
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray csvRow(const PossibleReading &reading)
{
    return QString::fromLatin1("%1,%2,%3,%4,")
               .arg(csvField(typedItemText(reading.tag)), reading.tag.type.text(),
                    QLatin1String(reading.isPlausible ? "yes" : "no"), reading.doubt)
               .toUtf8() +
           csvField(reading.valuesText()).toUtf8() + '\n';
}

} // namespace

QByteArray identifyOutput(const ReadResult &result, OutputFormat format, Readings readings)
{
    const QVector<PossibleReading> all = possibleReadings(result.item, result.values);
    if (format == OutputFormat::Text) {
        return text(result, all, readings);
    }
    QByteArray lines = format == OutputFormat::Csv ? "item,type,plausible,doubt,values\n" : "";
    for (const PossibleReading &reading : all) {
        lines += format == OutputFormat::Csv ? csvRow(reading) : jsonLine(reading);
    }
    return lines;
}

} // namespace cnet::panel
