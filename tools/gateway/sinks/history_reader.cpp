#include "gateway/sinks/history_reader.h"

namespace cnet::gateway {

namespace {

// What the tag's type makes of what the file has: a truth is kept as a number.
Scalar typed(const ValueType &type, const Scalar &kept)
{
    const auto *whole = std::get_if<qint64>(&kept);
    if (whole != nullptr && (type.kind == ValueKind::Bool || type.kind == ValueKind::Bit)) {
        return *whole != 0;
    }
    const auto *text = std::get_if<QString>(&kept);
    bool isLarge = false;
    const quint64 large = text == nullptr ? 0 : text->toULongLong(&isLarge);
    if (isLarge && type.kind != ValueKind::String) {
        return large;
    }
    return kept;
}

// The index of an array stands in brackets, which are no pattern here.
QString globOf(QString name)
{
    return name.replace(QLatin1Char('['), QLatin1String("[[]"));
}

HistoryRow rowOf(const Statement &read)
{
    QString error;
    HistoryRow row;
    row.line = read.text(0);
    row.tag.item.station = static_cast<int>(read.number(1));
    row.tag.name = read.text(2);
    row.tag.unit = read.text(3);
    row.tag.type = parseValueType(read.text(4), error).value_or(ValueType());
    row.tag.scale = read.real(5);
    row.tag.offset = read.real(6);
    row.atMs = read.number(7);
    row.value.value = typed(row.tag.type, read.scalar(8));
    row.quality = read.text(9);
    row.reason = read.text(10);
    return row;
}

} // namespace

StoreError HistoryReader::open(const QString &path)
{
    return m_database.openToRead(path);
}

bool HistoryReader::hasTag(const HistoryQuery &query)
{
    Statement find(m_database, "SELECT 1 FROM tag WHERE (name GLOB ?1 OR name GLOB ?1 || '[[]*')"
                               " AND (?2 = '' OR line = ?2)");
    find.bind(1, globOf(query.tag)).bind(2, query.line);
    return find.step() == Statement::Step::Row;
}

QStringList HistoryReader::tags()
{
    QStringList names;
    Statement read(m_database, "SELECT DISTINCT name FROM tag ORDER BY name");
    while (read.step() == Statement::Step::Row) {
        names.append(read.text(0));
    }
    return names;
}

StoreError HistoryReader::read(const HistoryQuery &query,
                               const std::function<bool(const HistoryRow &)> &taker)
{
    Statement read(m_database,
                   "SELECT line, station, name, unit, type, scale, shift, time_ms, value, quality,"
                   " reason FROM tag JOIN change ON change.tag = tag.id"
                   " JOIN state ON state.id = change.state"
                   " WHERE (name GLOB ?1 OR name GLOB ?1 || '[[]*') AND (?2 = '' OR line = ?2)"
                   " AND time_ms >= ?3 AND time_ms < ?4 ORDER BY time_ms, change.id");
    read.bind(1, globOf(query.tag)).bind(2, query.line).bind(3, query.fromMs).bind(4, query.toMs);
    Statement::Step step = read.step();
    while (step == Statement::Step::Row) {
        if (!taker(rowOf(read))) {
            return StoreError();
        }
        step = read.step();
    }
    return step == Statement::Step::Failed ? m_database.error() : StoreError();
}

} // namespace cnet::gateway
