#include "view/recipes/sheet/recipe_sheet.h"

#include <QHash>

#include <algorithm>

namespace cnet::view {

namespace {

/** What stands in the lines of a file. */
struct Lines
{
    QHash<int, QStringList> values; ///< of each line; the fields behind the others are values
    QHash<int, QString> notes;      ///< of each line below a comment
};

Lines linesOf(const QByteArray &content)
{
    const CsvFile csv = CsvFile::read(content, CsvDivider::Comma, CsvQuotes::Literal);
    Lines lines;
    QString note;
    for (const CsvRecord &record : csv.records()) {
        if (record.kind == CsvKind::Comment) {
            note = QString::fromUtf8(record.text).trimmed().mid(1).trimmed();
            continue;
        }
        if (record.kind == CsvKind::Fields) {
            QStringList texts;
            const CsvFields fields = splitCsv(record.text, record.line, csv.dialect());
            for (const CsvField &field : fields.all) {
                texts.append(field.text);
            }
            // Spreadsheets fill lines up to the longest one.
            while (!texts.isEmpty() && texts.last().isEmpty()) {
                texts.removeLast();
            }
            lines.values.insert(record.line, texts);
            lines.notes.insert(record.line, note);
        }
        note.clear();
    }
    return lines;
}

// People write "number, speed, pressure" above three values.
QString noteOf(const QString &note, int word, int count)
{
    const QStringList parts = note.split(QLatin1Char(','));
    return parts.size() == count ? parts.at(word).trimmed() : note;
}

} // namespace

std::optional<RecipeSheet> RecipeSheet::read(const QByteArray &content,
                                             const RecipeReading &reading,
                                             QVector<Finding> &mistakes)
{
    const auto file = readRecipe(content, reading, mistakes);
    if (!file) {
        return std::nullopt;
    }
    RecipeSheet sheet(*file);
    sheet.m_content = content;
    sheet.m_station = reading.station;
    const Lines lines = linesOf(content);
    for (int i = 0; i < file->items().size(); ++i) {
        const RecipeItem &item = file->items().at(i);
        const QStringList fields = lines.values.value(item.line);
        const auto firstValue = static_cast<int>(fields.size() - item.values.size());
        for (int word = 0; word < item.item.count; ++word) {
            SheetRow row;
            row.item = i;
            row.word = word;
            row.address = QString::fromLatin1("%1/%2:%3")
                              .arg(item.item.station)
                              .arg(item.item.reg.name, item.item.addressText(word));
            row.note = noteOf(lines.notes.value(item.line), word, item.item.count);
            if (word < item.values.size()) {
                row.written = fields.value(firstValue + word);
                row.value = item.values.at(word);
            }
            sheet.m_rows.append(row);
        }
    }
    return sheet;
}

QVector<RecipeItem> RecipeSheet::itemsWith(const QVector<std::optional<quint16>> &values) const
{
    QVector<RecipeItem> items = m_file.items();
    int row = 0;
    for (RecipeItem &item : items) {
        item.values.clear();
        bool isWhole = true;
        for (int word = 0; word < item.item.count; ++word, ++row) {
            const auto value = row < values.size() ? values.at(row) : std::nullopt;
            isWhole = isWhole && value.has_value();
            item.values.append(value.value_or(0));
        }
        if (!isWhole) {
            item.values.clear();
        }
    }
    return items;
}

QByteArray RecipeSheet::contentWith(const QVector<std::optional<quint16>> &values) const
{
    const auto isSame = [&](const SheetRow &row) {
        const auto index = &row - m_rows.constData();
        return index < values.size() && values.at(static_cast<int>(index)) == row.value;
    };
    if (std::all_of(m_rows.cbegin(), m_rows.cend(), isSame)) {
        return m_content;
    }
    QVector<QVector<quint16>> ofItems;
    for (const RecipeItem &item : itemsWith(values)) {
        ofItems.append(item.values);
    }
    return m_file.filled(ofItems);
}

int RecipeSheet::firstHalfFilled(const QVector<std::optional<quint16>> &values) const
{
    int first = 0;
    for (const RecipeItem &item : m_file.items()) {
        int given = 0;
        for (int word = 0; word < item.item.count; ++word) {
            given += values.value(first + word).has_value() ? 1 : 0;
        }
        if (given > 0 && given < item.item.count) {
            return first;
        }
        first += item.item.count;
    }
    return -1;
}

} // namespace cnet::view
