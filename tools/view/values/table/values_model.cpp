#include "view/values/table/values_model.h"

#include "view/look/fixed_font.h"

#include <QDateTime>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

// Faster than this nobody reads.
constexpr int kTellingMs = 40;
// More single rows than this are told of as one range: views and proxies take long for each.
constexpr int kMostRuns = 64;

} // namespace

ValuesModel::ValuesModel(WatchedTags &tags, QObject *parent)
    : QAbstractTableModel(parent)
    , m_tags(tags)
    , m_writer(tags)
    , m_fixed(fixedFont(QGuiApplication::font()))
{
    m_clock.start();
    m_telling.setSingleShot(true);
    m_telling.setInterval(kTellingMs);
    connect(&m_telling, &QTimer::timeout, this, &ValuesModel::tellChanges);
    connect(&m_writer, &ValueWriter::noted, this, &ValuesModel::takeNote);
    connect(&tags, &WatchedTags::tagsChanged, this, &ValuesModel::rebuild);
    connect(&tags, &WatchedTags::valuesChanged, this, [this](const QVector<int> &changed) {
        for (const int tag : changed) {
            takeIn(tag);
        }
    });
    connect(&tags, &WatchedTags::stateChanged, this, &ValuesModel::takeIn);
    connect(&tags.line(), &Line::sessionBegan, this, &ValuesModel::forgetOtherPlc);
    rebuild();
}

int ValuesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ValuesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kValueColumns;
}

bool ValuesModel::isRow(const QModelIndex &index) const
{
    return index.isValid() && checkIndex(index) &&
           m_rows.at(index.row()).tag < m_tags.tags().all().size();
}

Qt::ItemFlags ValuesModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (isRow(index)) {
        flags |= Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
        const bool isValue = index.column() == static_cast<int>(ValueColumn::Value);
        if (isValue && m_rows.at(index.row()).isWritable) {
            flags |= Qt::ItemIsEditable;
        }
    }
    return flags;
}

bool ValuesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !value.isValid() || !isRow(index) ||
        !flags(index).testFlag(Qt::ItemIsEditable)) {
        return false;
    }
    const QString key = m_rows.at(index.row()).key;
    m_writer.write(key, tagOf(index.row()), value.toString());
    return true;
}

Tag ValuesModel::tagOf(int row) const
{
    return valueTag(wholeTagOf(row), m_rows.at(row).index);
}

void ValuesModel::rebuild()
{
    beginResetModel();
    const QVector<ValueRow> before = std::exchange(m_rows, {});
    const QHash<QString, int> known = std::exchange(m_rowsByKey, {});
    m_firstRows.clear();
    m_changed.clear();
    const QVector<Tag> &all = m_tags.tags().all();
    for (int tag = 0; tag < all.size(); ++tag) {
        m_firstRows.append(static_cast<int>(m_rows.size()));
        for (int index = 0; index < all.at(tag).count; ++index) {
            ValueRow row = rowOf(all.at(tag), tag, index);
            const int old = known.value(row.key, -1);
            if (old >= 0) {
                const ValueRow &same = before.at(old);
                row.now = same.now;
                row.changedAtMs = same.changedAtMs;
                row.freshAtMs = same.freshAtMs;
                row.least = same.least;
                row.greatest = same.greatest;
                row.write = same.write;
            }
            m_rowsByKey.insert(row.key, static_cast<int>(m_rows.size()));
            m_rows.append(row);
        }
    }
    for (int tag = 0; tag < all.size(); ++tag) {
        takeIn(tag);
    }
    endResetModel();
}

void ValuesModel::takeIn(int tag)
{
    if (tag < 0 || tag >= m_firstRows.size() || tag >= m_tags.tags().all().size()) {
        return;
    }
    const QVector<TagValue> values = m_tags.values(tag);
    const qint64 changedAtMs = m_tags.state(tag).changedAtMs;
    for (int i = 0; i < values.size(); ++i) {
        const int number = m_firstRows.at(tag) + i;
        if (number >= m_rows.size() || m_rows.at(number).tag != tag) {
            return;
        }
        ValueRow &row = m_rows[number];
        const TagValue &now = values.at(i);
        const bool differs = row.now.value != now.value;
        if (!differs && row.now.quality == now.quality && row.now.units == now.units) {
            continue;
        }
        if (differs && now.value.isKnown()) {
            row.changedAtMs = changedAtMs;
            if (row.now.value.isKnown()) { // the first reading is no change
                row.freshAtMs = m_clock.elapsed();
                m_freshAtMs = row.freshAtMs;
            }
        }
        row.now = now;
        widen(row);
        markChanged(number);
    }
}

void ValuesModel::markChanged(int row)
{
    m_changed.append(row);
    if (!m_telling.isActive()) {
        m_telling.start();
    }
}

void ValuesModel::tellChanges()
{
    QVector<int> changed = std::exchange(m_changed, {});
    std::sort(changed.begin(), changed.end());
    changed.erase(std::unique(changed.begin(), changed.end()), changed.end());
    if (changed.isEmpty()) {
        return;
    }
    QVector<QPair<int, int>> runs;
    for (const int row : std::as_const(changed)) {
        if (!runs.isEmpty() && runs.last().second + 1 == row) {
            runs.last().second = row;
        } else {
            runs.append({row, row});
        }
    }
    if (runs.size() > kMostRuns) {
        runs = {{changed.first(), changed.last()}};
    }
    for (const auto &run : std::as_const(runs)) {
        tellRows(run.first, run.second);
    }
    if (isAnyFresh()) {
        Q_EMIT freshened();
    }
}

void ValuesModel::tellRows(int first, int last)
{
    if (last < m_rows.size()) { // whoever was told before may have taken tags away
        Q_EMIT dataChanged(index(first, static_cast<int>(ValueColumn::Value)),
                           index(last, static_cast<int>(ValueColumn::Max)));
    }
}

void ValuesModel::takeNote(const QString &key, const WriteNote &note)
{
    const int row = m_rowsByKey.value(key, -1);
    if (row >= 0) { // else it was taken away meanwhile
        m_rows[row].write = note;
        const QModelIndex cell = index(row, static_cast<int>(ValueColumn::Write));
        Q_EMIT dataChanged(cell, cell);
    }
}

void ValuesModel::resetExtremes()
{
    for (ValueRow &row : m_rows) {
        row.least = Scalar();
        row.greatest = Scalar();
        widen(row);
    }
    if (!m_rows.isEmpty()) {
        Q_EMIT dataChanged(index(0, static_cast<int>(ValueColumn::Min)),
                           index(rowCount() - 1, static_cast<int>(ValueColumn::Max)));
    }
}

// What another PLC had, or took, says nothing about this one.
void ValuesModel::forgetOtherPlc()
{
    const Connection &now = m_tags.line().connection();
    const auto before = std::exchange(m_plc, now);
    if (!before || (before->text() == now.text() && before->station == now.station)) {
        return;
    }
    for (ValueRow &row : m_rows) {
        row.changedAtMs = 0;
        row.freshAtMs = -1;
        row.least = Scalar();
        row.greatest = Scalar();
        row.write = WriteNote();
    }
    if (!m_rows.isEmpty()) {
        tellRows(0, rowCount() - 1);
    }
}

bool ValuesModel::isAnyFresh() const
{
    return m_clock.elapsed() - m_freshAtMs < kFadeMs;
}

double ValuesModel::freshness(const ValueRow &row) const
{
    const qint64 sinceMs = m_clock.elapsed() - row.freshAtMs;
    return row.freshAtMs < 0 || sinceMs >= kFadeMs ? 0 : 1 - static_cast<double>(sinceMs) / kFadeMs;
}

qint64 ValuesModel::ageMs(const ValueRow &row) const
{
    const ItemState &state = m_tags.state(row.tag);
    if (const Session *const session = m_tags.line().session(); session != nullptr) {
        return state.ageMs(session->nowMs());
    }
    return state.readAtMs == 0
               ? ItemState::kNeverRead
               : std::max<qint64>(0, QDateTime::currentMSecsSinceEpoch() - state.readAtMs);
}

} // namespace cnet::view
