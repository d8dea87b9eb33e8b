#include "view/frames/trace/frame_filter.h"

#include "view/frames/trace/frame_words.h"

#include "host/text/byte_text.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

// A text that is shorter is a number or a word rather than bytes.
constexpr int kLeastHex = 2;
// A turn of the event loop should be over before anybody notices.
constexpr int kTurnMs = 8;

} // namespace

FrameFilter::FrameFilter(QObject *parent)
    : QAbstractProxyModel(parent)
{
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &FrameFilter::look);
}

void FrameFilter::setFrames(FrameModel *model)
{
    stop();
    beginResetModel();
    if (m_frames != nullptr) {
        m_frames->disconnect(this);
    }
    m_frames = model;
    setSourceModel(model);
    m_shown.clear();
    m_known = 0;
    endResetModel();
    if (model == nullptr) {
        return;
    }
    connect(model, &QAbstractItemModel::rowsInserted, this, &FrameFilter::takeInserted);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex &, int /*first*/, int last) { takeRemoving(last); });
    connect(model, &QAbstractItemModel::rowsRemoved, this, &FrameFilter::takeRemoved);
    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles) {
                takeChanged(first.row(), last.row(), roles);
            });
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        stop();
        beginResetModel();
        m_shown.clear();
    });
    connect(model, &QAbstractItemModel::modelReset, this, [this] {
        m_known = m_frames->log().end(); // what is there comes when it was looked at
        endResetModel();
        begin();
    });
    m_known = model->log().end();
    begin();
}

FrameFilter::Search FrameFilter::searchFor(const FrameQuery &query)
{
    Search search{query, {}, {}};
    const QByteArray characters = query.text.toLatin1();
    if (QString::fromLatin1(characters) == query.text) {
        search.characters = characters;
    }
    const ByteText hex = readHexText(query.text);
    if (hex.isFine() && hex.bytes.size() >= kLeastHex) {
        search.hex = hex.bytes;
    }
    return search;
}

void FrameFilter::setQuery(const FrameQuery &query)
{
    if (query == m_wanted.query) {
        return;
    }
    m_wanted = searchFor(query);
    begin();
}

void FrameFilter::stop()
{
    m_turn.stop();
    m_isSearching = false;
}

void FrameFilter::begin()
{
    m_found.clear();
    if (m_frames != nullptr) {
        m_next = m_frames->log().first();
        m_isSearching = true;
        m_turn.start();
        look(); // few rows are done at once
    } else {
        m_isSearching = false;
        m_inForce = m_wanted;
    }
}

void FrameFilter::look()
{
    takeInserted();
    if (m_isSearching) {
        search();
    }
    if (!m_isSearching && m_known == m_frames->log().end()) {
        m_turn.stop();
    }
}

void FrameFilter::search()
{
    QElapsedTimer turn;
    turn.start();
    const FrameLog &log = m_frames->log();
    m_next = std::max(m_next, log.first());
    do {
        const qint64 end = std::min(log.end(), m_next + kRowsAtOnce);
        for (; m_next < end; ++m_next) {
            if (accepts(m_wanted, m_next)) {
                m_found.push_back(m_next);
            }
        }
    } while (m_next < log.end() && turn.elapsed() < kTurnMs);
    if (m_next == log.end()) {
        finish();
    }
}

// A row after the other would take the table long to follow.
void FrameFilter::finish()
{
    m_isSearching = false;
    Q_EMIT aboutToShow();
    beginResetModel();
    m_inForce = m_wanted;
    m_shown = std::exchange(m_found, Numbers());
    m_known = m_next;
    endResetModel();
    Q_EMIT shown();
}

bool FrameFilter::accepts(const Search &search, qint64 number) const
{
    const FrameQuery &query = search.query;
    if (query.isAll()) {
        return true;
    }
    const FrameLog &log = m_frames->log();
    const FrameRow &row = *log.find(number);
    if ((query.station && row.station != *query.station) ||
        (query.kind && row.kind != *query.kind)) {
        return false;
    }
    const FrameRow *const partner = log.partner(row, number);
    const FrameFaults faults = row.faults | (partner != nullptr ? partner->faults : FrameFaults());
    if (query.faultsOnly && faults == FrameFaults()) {
        return false;
    }
    return query.text.isEmpty() || hasText(search, row, number) ||
           (partner != nullptr &&
            hasText(search, *partner, row.request == number ? row.answer : row.request));
}

// The cheap ways first.
bool FrameFilter::hasText(const Search &search, const FrameRow &row, qint64 number) const
{
    const QString &text = search.query.text;
    return (!search.characters.isEmpty() && row.bytes.contains(search.characters)) ||
           (!search.hex.isEmpty() && row.bytes.contains(search.hex)) ||
           resultWords(row).contains(text, Qt::CaseInsensitive) ||
           row.note.contains(text, Qt::CaseInsensitive) ||
           m_frames->meaning(number).contains(text, Qt::CaseInsensitive);
}

// They always come last, and many of them when a line is fast: the rest has its turn.
void FrameFilter::takeInserted()
{
    QElapsedTimer turn;
    turn.start();
    const FrameLog &log = m_frames->log();
    Numbers accepted;
    m_known = std::max(m_known, log.first());
    do {
        const qint64 end = std::min(log.end(), m_known + kRowsAtOnce);
        for (; m_known < end; ++m_known) {
            if (accepts(m_inForce, m_known)) {
                accepted.push_back(m_known);
            }
        }
    } while (m_known < log.end() && turn.elapsed() < kTurnMs);
    if (m_known < log.end()) {
        m_turn.start();
    }
    if (!accepted.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(accepted.size()) - 1);
        m_shown.insert(m_shown.end(), accepted.begin(), accepted.end());
        endInsertRows();
    }
}

// They always are the oldest.
void FrameFilter::takeRemoving(int last)
{
    m_going = placeOf(m_frames->numberAt(last) + 1);
    if (m_going > 0) {
        beginRemoveRows({}, 0, m_going - 1);
    }
}

void FrameFilter::takeRemoved()
{
    const int gone = std::exchange(m_going, 0);
    if (gone > 0) {
        m_shown.erase(m_shown.begin(), m_shown.begin() + gone);
        endRemoveRows();
    }
    m_found.erase(m_found.begin(),
                  std::lower_bound(m_found.begin(), m_found.end(), m_frames->log().first()));
}

// What only looks different is found as before.
void FrameFilter::takeChanged(int first, int last, const QVector<int> &roles)
{
    if (roles.isEmpty()) {
        for (int row = first; row <= last; ++row) {
            takeChange(m_frames->numberAt(row));
        }
    }
    const int from = placeOf(m_frames->numberAt(first));
    const int to = placeOf(m_frames->numberAt(last) + 1) - 1;
    if (from <= to) {
        Q_EMIT dataChanged(index(from, 0), index(to, columnCount() - 1), roles);
    }
}

void FrameFilter::takeChange(qint64 number)
{
    if (isSearching() && number < m_next && isIn(m_found, number) != accepts(m_wanted, number)) {
        const auto at = std::lower_bound(m_found.begin(), m_found.end(), number);
        if (at != m_found.end() && *at == number) {
            m_found.erase(at);
        } else {
            m_found.insert(at, number);
        }
    }
    if (number >= m_known) {
        return; // it has its turn
    }
    const int place = placeOf(number);
    const bool was = isIn(m_shown, number);
    const bool is = accepts(m_inForce, number);
    if (was && !is) {
        beginRemoveRows({}, place, place);
        m_shown.erase(m_shown.begin() + place);
        endRemoveRows();
    } else if (is && !was) {
        beginInsertRows({}, place, place);
        m_shown.insert(m_shown.begin() + place, number);
        endInsertRows();
    }
}

bool FrameFilter::isIn(const Numbers &numbers, qint64 number)
{
    return std::binary_search(numbers.begin(), numbers.end(), number);
}

/** The first row whose number is this or a later one. */
int FrameFilter::placeOf(qint64 number) const
{
    return static_cast<int>(std::lower_bound(m_shown.begin(), m_shown.end(), number) -
                            m_shown.begin());
}

QModelIndex FrameFilter::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex FrameFilter::parent(const QModelIndex & /*child*/) const
{
    return {};
}

int FrameFilter::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int FrameFilter::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_frames == nullptr ? 0 : static_cast<int>(FrameModel::ColumnCount);
}

QVariant FrameFilter::headerData(int section, Qt::Orientation orientation, int role) const
{
    return m_frames != nullptr ? m_frames->headerData(section, orientation, role) : QVariant();
}

QModelIndex FrameFilter::mapToSource(const QModelIndex &proxyIndex) const
{
    if (!proxyIndex.isValid() || m_frames == nullptr || proxyIndex.row() >= rowCount()) {
        return {};
    }
    const qint64 number = m_shown.at(static_cast<size_t>(proxyIndex.row()));
    const qint64 row = number - m_frames->log().first();
    return row < 0 ? QModelIndex() : m_frames->index(static_cast<int>(row), proxyIndex.column());
}

QModelIndex FrameFilter::mapFromSource(const QModelIndex &sourceIndex) const
{
    if (!sourceIndex.isValid() || m_frames == nullptr) {
        return {};
    }
    const qint64 number = m_frames->numberAt(sourceIndex.row());
    return isIn(m_shown, number) ? index(placeOf(number), sourceIndex.column()) : QModelIndex();
}

} // namespace cnet::view
