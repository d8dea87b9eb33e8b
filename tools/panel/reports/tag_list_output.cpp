#include "panel/reports/tag_list_output.h"

#include "host/tagfile/tag_file.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

#include <algorithm>

namespace cnet::panel {

namespace {

// Texts beyond this width do not push the other columns away.
const int kWidest = 40;

QStringList cellsOf(const Tag &tag)
{
    const QString type = tag.type.text();
    return {tag.name,
            QString::fromLatin1("%1/%2:%3")
                .arg(tag.item.station)
                .arg(tag.item.reg.name, tag.item.addressText(0)),
            tag.count == 1 ? type : QString::fromLatin1("%1*%2").arg(type).arg(tag.count),
            tag.unit,
            tagFieldText(tag, TagColumn::Access),
            tag.group,
            tag.description.simplified()};
}

QByteArray table(const QVector<Tag> &tags)
{
    QVector<QStringList> rows{{QLatin1String("NAME"), QLatin1String("ADDRESS"),
                               QLatin1String("TYPE"), QLatin1String("UNIT"),
                               QLatin1String("ACCESS"), QLatin1String("GROUP"),
                               QLatin1String("DESCRIPTION")}};
    for (const Tag &tag : tags) {
        rows.append(cellsOf(tag));
    }
    QVector<int> widths(rows.first().size(), 0);
    for (const QStringList &row : std::as_const(rows)) {
        for (int i = 0; i < widths.size(); ++i) {
            const int width = std::min(static_cast<int>(row.at(i).size()), kWidest);
            widths[i] = std::max(widths.at(i), width);
        }
    }
    QString text;
    for (const QStringList &row : std::as_const(rows)) {
        QString line;
        for (int i = 0; i < widths.size(); ++i) {
            line += row.at(i).leftJustified(widths.at(i) + 2);
        }
        while (line.endsWith(QLatin1Char(' '))) {
            line.chop(1);
        }
        text += line + QLatin1Char('\n');
    }
    return text.toLocal8Bit();
}

QJsonValue jsonValue(const Tag &tag, TagColumn column)
{
    switch (column) {
    case TagColumn::Station:
        return tag.item.station;
    case TagColumn::Count:
        return tag.count;
    case TagColumn::Scale:
        return tag.scale;
    case TagColumn::Offset:
        return tag.offset;
    case TagColumn::Min:
        return tag.min.value_or(0);
    case TagColumn::Max:
        return tag.max.value_or(0);
    case TagColumn::Deadband:
        return tag.deadband.value_or(0);
    case TagColumn::Texts: {
        QJsonObject texts;
        for (auto it = tag.texts.cbegin(); it != tag.texts.cend(); ++it) {
            texts.insert(QString::number(it.key()), it.value());
        }
        return texts;
    }
    default:
        return tagFieldText(tag, column);
    }
}

QByteArray jsonLine(const Tag &tag)
{
    QJsonObject line{{QLatin1String("event"), QLatin1String("tag")}};
    for (int i = 0; i < kTagColumns; ++i) {
        const auto column = static_cast<TagColumn>(i);
        if (!tagFieldText(tag, column).isEmpty()) {
            line.insert(tagColumnName(column), jsonValue(tag, column));
        }
    }
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray tagListOutput(const QVector<Tag> &tags, OutputFormat format)
{
    if (format != OutputFormat::Json) {
        return format == OutputFormat::Csv ? TagFile::written(tags) : table(tags);
    }
    QByteArray lines;
    for (const Tag &tag : tags) {
        lines += jsonLine(tag);
    }
    return lines;
}

} // namespace cnet::panel
