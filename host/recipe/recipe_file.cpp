#include "host/recipe/recipe_file.h"

#include "host/address/value_text.h"
#include "host/driver/driver_core.h"

#include <QStringList>

#include <algorithm>
#include <tuple>
#include <utility>

namespace cnet {

namespace {

const char kColumnHint[] = "expected station, register, address, count and, behind them, value";

QString withLine(int line, const QString &what)
{
    return QString::fromLatin1("%1: %2").arg(line).arg(what);
}

QStringList textsOf(const CsvFields &fields)
{
    QStringList texts;
    for (const CsvField &field : fields.all) {
        texts.append(field.text);
    }
    // Spreadsheets fill the lines up to the longest one.
    while (!texts.isEmpty() && texts.last().isEmpty()) {
        texts.removeLast();
    }
    return texts;
}

// Spreadsheets of some countries, and some of their settings, divide fields by something else.
QString dividerHint(const QByteArray &header)
{
    if (header.contains(',')) {
        return QString();
    }
    const bool semicolons = header.contains(';');
    return semicolons || header.contains('\t')
               ? QString::fromLatin1("; fields are divided by commas, not by %1")
                     .arg(QLatin1String(semicolons ? "semicolons" : "tabs"))
               : QString();
}

} // namespace

struct RecipeFile::Reading
{
    RecipeUse use;
    int defaultStation;
    const RegisterCatalog &registers;
    const AddressCheck &check;
};

std::optional<RecipeFile> RecipeFile::parse(const QByteArray &content, RecipeUse use,
                                            int defaultStation, const RegisterCatalog &registers,
                                            const AddressCheck &check, QString &error)
{
    const Reading reading{use, defaultStation, registers, check};
    RecipeFile file;
    file.m_csv = CsvFile::read(content, CsvDivider::Comma, CsvQuotes::Literal);
    for (int i = 0; i < file.m_csv.records().size(); ++i) {
        QString what;
        if (!file.readRecord(i, reading, what)) {
            error = withLine(file.m_csv.records().at(i).line, what);
            return std::nullopt;
        }
    }
    if (file.m_items.isEmpty()) {
        const int number = file.m_csv.records().last().line;
        error = withLine(number, QLatin1String("the file has no items; expected a header, for "
                                               "example register,address,count,value, and a line "
                                               "for each item"));
        return std::nullopt;
    }
    return file.findOverlap(error) ? std::nullopt : std::optional<RecipeFile>(file);
}

bool RecipeFile::readRecord(int index, const Reading &reading, QString &error)
{
    const CsvRecord &record = m_csv.records().at(index);
    // Text ends at its first zero byte for some of Qt, and so would a row of values.
    if (record.text.contains('\0')) {
        error = QLatin1String("a zero byte; expected text in UTF-8");
        return false;
    }
    if (record.kind != CsvKind::Fields) {
        return true;
    }
    if (m_header < 0) {
        m_header = index;
        return readHeader(record, reading.use, error);
    }
    RecipeItem item;
    item.line = record.line;
    if (!readItem(textsOf(m_csv.fields(index)), reading, item, error)) {
        return false;
    }
    m_records.append(index);
    m_items.append(item);
    m_words += item.item.count;
    if (m_words > DriverCore::kRecipeWords) {
        error = QString::fromLatin1("more words than the %1 that a recipe may have")
                    .arg(DriverCore::kRecipeWords);
    }
    return m_words <= DriverCore::kRecipeWords;
}

bool RecipeFile::readHeader(const CsvRecord &record, RecipeUse use, QString &error)
{
    static const QStringList names{QLatin1String("station"), QLatin1String("register"),
                                   QLatin1String("address"), QLatin1String("count"),
                                   QLatin1String("value")};
    const QStringList fields = textsOf(m_csv.fields(m_header));
    for (int i = 0; i < fields.size(); ++i) {
        const QString name = fields.at(i).toLower();
        const int column = static_cast<int>(
            names.indexOf(name == QLatin1String("values") || name == QLatin1String("value...")
                              ? QLatin1String("value")
                              : name));
        const bool afterValue = m_places.at(kValue) >= 0;
        if (column < 0 || (afterValue && column != kValue)) {
            error = QString::fromLatin1("%1 column '%2'; %3")
                        .arg(column < 0 ? QLatin1String("unknown") : QLatin1String("misplaced"),
                             quotable(fields.at(i)), QLatin1String(kColumnHint)) +
                    dividerHint(record.text);
            return false;
        }
        if (m_places.at(column) >= 0 && column != kValue) {
            error = QString::fromLatin1("two columns '%1'").arg(name);
            return false;
        }
        m_places[column] = afterValue ? m_places.at(kValue) : i;
    }
    const bool needsValues = use == RecipeUse::Write && m_places.at(kValue) < 0;
    if (m_places.at(kRegister) < 0 || m_places.at(kAddress) < 0 || needsValues) {
        error = QString::fromLatin1("a column is missing; %1").arg(QLatin1String(kColumnHint));
        return false;
    }
    m_columns = static_cast<int>(fields.size());
    return true;
}

bool RecipeFile::readItem(const QStringList &fields, const Reading &reading, RecipeItem &item,
                          QString &error)
{
    const int valuePlace = m_places.at(kValue);
    const QStringList values = valuePlace < 0 ? QStringList() : fields.mid(valuePlace);
    if (valuePlace < 0 && fields.size() > m_columns) {
        error = QString::fromLatin1("more fields than the header has columns");
        return false;
    }
    const auto field = [&](Column column) {
        const int place = m_places.at(column);
        return place < 0 ? QString() : quotable(fields.value(place));
    };
    QString text = field(kRegister) + QLatin1Char(':') + field(kAddress);
    if (!field(kStation).isEmpty()) {
        text.prepend(field(kStation) + QLatin1Char('/'));
    }
    const QString count = field(kCount);
    const QString given = QString::number(values.size());
    if (count.isEmpty() && values.isEmpty()) {
        error = QString::fromLatin1("'%1': expected a count or values").arg(quotable(text));
        return false;
    }
    text += QLatin1Char('*') + (count.isEmpty() ? given : count);
    if (!readAddresses(text, field(kRegister), reading, item.item, error)) {
        return false;
    }
    const bool mayLack = reading.use == RecipeUse::Read && values.isEmpty();
    if (!mayLack && values.size() != item.item.count) {
        error = QString::fromLatin1("'%1': expected %2 values, found %3")
                    .arg(quotable(text))
                    .arg(item.item.count)
                    .arg(given);
        return false;
    }
    return readValues(values, item, error);
}

// An item has its station and its count within, but here both have columns of their own.
bool RecipeFile::readAddresses(const QString &text, const QString &registerName,
                               const Reading &reading, Item &item, QString &error)
{
    if (reading.registers.find(registerName) == nullptr) {
        error = QString::fromLatin1("the driver has no register '%1', it has %2")
                    .arg(quotable(registerName), reading.registers.names().join(QLatin1Char(' ')));
        return false;
    }
    const auto parsed = parseItem(text, reading.defaultStation, reading.registers, error);
    if (!parsed) {
        return false;
    }
    item = *parsed;
    // The driver moves other data than meant when it transfers bits or contacts.
    if (item.reg.isBit()) {
        error = QString::fromLatin1("'%1': a recipe holds words; bits and contacts are written one "
                                    "by one")
                    .arg(quotable(text));
        return false;
    }
    return reading.check(item, error);
}

bool RecipeFile::readValues(const QStringList &values, RecipeItem &item, QString &error)
{
    for (const QString &text : values) {
        const auto value = parseValue(text, false);
        if (!value) {
            error = QString::fromLatin1("'%1' is no value of %2, which is %3")
                        .arg(quotable(text), item.item.reg.name, valueHint(false));
            return false;
        }
        item.values.append(*value);
    }
    return true;
}

// Two values for one address: which of them the PLC gets would depend on the order of the blocks.
bool RecipeFile::findOverlap(QString &error) const
{
    QVector<const RecipeItem *> sorted;
    for (const RecipeItem &item : m_items) {
        sorted.append(&item);
    }
    const auto place = [](const RecipeItem *item) {
        return std::make_tuple(item->item.station, item->item.reg.name, item->item.start,
                               item->line);
    };
    std::sort(sorted.begin(), sorted.end(), [&](const RecipeItem *left, const RecipeItem *right) {
        return place(left) < place(right);
    });
    for (int i = 1; i < sorted.size(); ++i) {
        const RecipeItem *first = sorted.at(i - 1);
        const RecipeItem *second = sorted.at(i);
        if (first->item.station == second->item.station &&
            first->item.reg.name == second->item.reg.name &&
            second->item.start < first->item.start + first->item.count) {
            if (first->line > second->line) {
                std::swap(first, second);
            }
            error = withLine(second->line, QString::fromLatin1("'%1' overlaps '%2' of line %3")
                                               .arg(second->item.text(), first->item.text())
                                               .arg(first->line));
            return true;
        }
    }
    return false;
}

QByteArray RecipeFile::filled(const QVector<QVector<quint16>> &values) const
{
    CsvFile csv = m_csv;
    const bool lacksColumn = m_places.at(kValue) < 0;
    if (lacksColumn) {
        // A spreadsheet may have put an empty field in its place.
        csv.setFields(m_header, m_columns, {QLatin1String("value")});
    }
    const int first = lacksColumn ? m_columns : m_places.at(kValue);
    for (int i = 0; i < m_items.size() && i < values.size(); ++i) {
        const CsvFields before = m_csv.fields(m_records.at(i));
        QStringList texts;
        for (int j = 0; j < values.at(i).size(); ++j) {
            const QString like = before.at(first + j).text;
            const QString text = valueTextLike(values.at(i).at(j), like);
            texts.append(text == like ? QString() : text);
        }
        csv.setFields(m_records.at(i), first, texts);
    }
    return csv.content();
}

} // namespace cnet
