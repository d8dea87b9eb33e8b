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

// Spreadsheets put a byte order mark at the beginning of a file.
QString lineText(const QByteArray &line)
{
    QString text = QString::fromUtf8(line);
    if (text.startsWith(QChar(QChar::ByteOrderMark))) {
        text.remove(0, 1);
    }
    return text.trimmed();
}

QStringList fieldsOf(const QString &line)
{
    QStringList fields = line.split(QLatin1Char(','));
    for (QString &field : fields) {
        field = field.trimmed();
    }
    // Spreadsheets fill the lines up to the longest one.
    while (!fields.isEmpty() && fields.last().isEmpty()) {
        fields.removeLast();
    }
    return fields;
}

// Spreadsheets of some countries, and some of their settings, divide fields by something else.
QString dividerHint(const QString &header)
{
    if (header.contains(QLatin1Char(','))) {
        return QString();
    }
    const bool semicolons = header.contains(QLatin1Char(';'));
    return semicolons || header.contains(QLatin1Char('\t'))
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
    file.m_lines = content.split('\n');
    int number = 0;
    for (const QByteArray &line : std::as_const(file.m_lines)) {
        ++number;
        QString what;
        if (!file.readLine(line, number, reading, what)) {
            error = withLine(number, what);
            return std::nullopt;
        }
    }
    if (file.m_items.isEmpty()) {
        error = withLine(number, QLatin1String("the file has no items; expected a header, for "
                                               "example register,address,count,value, and a line "
                                               "for each item"));
        return std::nullopt;
    }
    return file.findOverlap(error) ? std::nullopt : std::optional<RecipeFile>(file);
}

bool RecipeFile::readLine(const QByteArray &line, int number, const Reading &reading,
                          QString &error)
{
    // Text ends at its first zero byte for some of Qt, and so would a row of values.
    if (line.contains('\0')) {
        error = QLatin1String("a zero byte; expected text in UTF-8");
        return false;
    }
    const QString text = lineText(line);
    if (text.isEmpty() || text.startsWith(QLatin1Char('#'))) {
        return true;
    }
    if (m_headerLine == 0) {
        m_headerLine = number;
        return readHeader(text, reading.use, error);
    }
    RecipeItem item;
    item.line = number;
    if (!readItem(text, reading, item, error)) {
        return false;
    }
    m_items.append(item);
    m_words += item.item.count;
    if (m_words > DriverCore::kRecipeWords) {
        error = QString::fromLatin1("more words than the %1 that a recipe may have")
                    .arg(DriverCore::kRecipeWords);
    }
    return m_words <= DriverCore::kRecipeWords;
}

bool RecipeFile::readHeader(const QString &line, RecipeUse use, QString &error)
{
    static const QStringList names{QLatin1String("station"), QLatin1String("register"),
                                   QLatin1String("address"), QLatin1String("count"),
                                   QLatin1String("value")};
    const QStringList fields = fieldsOf(line);
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
                    dividerHint(line);
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

bool RecipeFile::readItem(const QString &line, const Reading &reading, RecipeItem &item,
                          QString &error)
{
    const QStringList fields = fieldsOf(line);
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
        error = QString::fromLatin1("'%1': expected a count or values").arg(text);
        return false;
    }
    text += QLatin1Char('*') + (count.isEmpty() ? given : count);
    if (!readAddresses(text, field(kRegister), reading, item.item, error)) {
        return false;
    }
    const bool mayLack = reading.use == RecipeUse::Read && values.isEmpty();
    if (!mayLack && values.size() != item.item.count) {
        error = QString::fromLatin1("'%1': expected %2 values, found %3")
                    .arg(text)
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
                    .arg(registerName, reading.registers.names().join(QLatin1Char(' ')));
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
                    .arg(text);
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

QByteArray RecipeFile::filledLine(const QByteArray &line, const QVector<quint16> &values) const
{
    const bool hasReturn = line.endsWith('\r');
    QList<QByteArray> fields = (hasReturn ? line.left(line.size() - 1) : line).split(',');
    const int first = m_places.at(kValue) < 0 ? m_columns : m_places.at(kValue);
    while (fields.size() < first + values.size()) {
        fields.append(QByteArray());
    }
    for (int i = 0; i < values.size(); ++i) {
        QByteArray &field = fields[first + i];
        field = valueTextLike(values.at(i), QString::fromUtf8(field)).toUtf8();
    }
    return fields.join(',') + (hasReturn ? "\r" : "");
}

QByteArray RecipeFile::filled(const QVector<QVector<quint16>> &values) const
{
    QList<QByteArray> lines = m_lines;
    if (m_places.at(kValue) < 0) {
        QByteArray &header = lines[m_headerLine - 1];
        const bool hasReturn = header.endsWith('\r');
        // A spreadsheet may have put an empty field in its place.
        QList<QByteArray> names = (hasReturn ? header.left(header.size() - 1) : header).split(',');
        names = names.mid(0, m_columns) + QList<QByteArray>{"value"} + names.mid(m_columns + 1);
        header = names.join(',') + (hasReturn ? "\r" : "");
    }
    for (int i = 0; i < m_items.size() && i < values.size(); ++i) {
        QByteArray &line = lines[m_items.at(i).line - 1];
        line = filledLine(line, values.at(i));
    }
    return lines.join('\n');
}

} // namespace cnet
