#include "view/frames/trace/frame_model.h"

#include "view/frames/trace/frame_words.h"

#include "host/decode/frame_text.h"
#include "host/wire/frame_words.h"

#include <QFont>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

// More of a frame no column is wide enough for.
constexpr int kBytesInTable = 64;
constexpr int kBatches = 40; // in which the rows of a full table go

QString bytesStart(const QByteArray &bytes)
{
    return bytes.size() <= kBytesInTable
               ? hexText(bytes)
               : hexText(bytes.left(kBytesInTable)) + QLatin1String(" ...");
}

} // namespace

int FrameModel::batch() const
{
    return std::max(1, m_mostExchanges / kBatches);
}

// What is too much goes before the new ones come, so that there never is too much.
void FrameModel::add(FrameLog rows)
{
    if (rows.isEmpty()) {
        return;
    }
    if (rows.first() != m_log.end()) {
        show(std::move(rows));
        return;
    }
    const int excess = m_log.exchanges() + rows.exchanges() - m_mostExchanges;
    if (excess > 0) {
        removeOldest(std::max(excess, batch()));
    }
    beginInsertRows({}, m_log.size(), m_log.size() + rows.size() - 1);
    m_log.append(std::move(rows));
    endInsertRows();
}

void FrameModel::removeOldest(int exchanges)
{
    const int rows = m_log.rowsOfOldest(exchanges);
    if (rows > 0) {
        beginRemoveRows({}, 0, rows - 1);
        m_log.removeOldest(rows);
        endRemoveRows();
    }
}

void FrameModel::show(FrameLog rows)
{
    beginResetModel();
    m_log = std::move(rows);
    m_meanings.clear();
    m_marked = -1;
    endResetModel();
}

void FrameModel::touch(const QVector<qint64> &numbers)
{
    for (const qint64 number : numbers) {
        if (m_log.find(number) != nullptr) {
            m_meanings.remove(number);
            const int row = static_cast<int>(number - m_log.first());
            Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
        }
    }
}

void FrameModel::mark(qint64 number)
{
    const qint64 before = std::exchange(m_marked, number);
    if (before == number) {
        return;
    }
    for (const qint64 request : {before, number}) {
        const FrameRow *const row = m_log.find(request);
        if (row != nullptr) {
            repaint({request, row->answer, row->late});
        }
    }
}

void FrameModel::repaint(const QVector<qint64> &numbers)
{
    for (const qint64 number : numbers) {
        if (m_log.find(number) != nullptr) {
            const int row = static_cast<int>(number - m_log.first());
            Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1),
                               {Qt::FontRole, Qt::BackgroundRole});
        }
    }
}

QString FrameModel::meaning(qint64 number) const
{
    if (const QString *const known = m_meanings.object(number)) {
        return *known;
    }
    const FrameRow *const row = m_log.find(number);
    if (row == nullptr) {
        return {};
    }
    QString text =
        row->bytes.isEmpty() ? QString() : frameSummary(m_log.decode(number, Detail::Summary));
    m_meanings.insert(number, new QString(text));
    return text;
}

QString FrameModel::line(int row) const
{
    QStringList columns;
    const FrameRow &its = m_log.at(row);
    for (int column = 0; column < ColumnCount; ++column) {
        columns << (column == Bytes ? hexText(its.bytes) : text(its, column, numberAt(row)));
    }
    return columns.join(QLatin1Char('\t'));
}

void FrameModel::setLook(const QPalette &palette)
{
    m_palette = palette;
    m_icons.fill(QIcon());
    if (m_log.size() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(m_log.size() - 1, ColumnCount - 1),
                           {Qt::DecorationRole, Qt::BackgroundRole});
    }
}

int FrameModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_log.size();
}

int FrameModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant FrameModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_log.size()) {
        return {};
    }
    const FrameRow &row = m_log.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column(), numberAt(index.row()));
    case Qt::DecorationRole:
        return index.column() == Result && row.faults != FrameFaults() ? QVariant(icon(row.faults))
                                                                       : QVariant();
    case Qt::BackgroundRole:
        return background(row);
    case Qt::FontRole:
        return font(row);
    case Qt::ToolTipRole:
        return hint(row, numberAt(index.row()));
    case Qt::TextAlignmentRole:
        return index.column() == Station || index.column() == Response
                   ? QVariant::fromValue<int>(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant();
    default:
        return {};
    }
}

QString FrameModel::text(const FrameRow &row, int column, qint64 number) const
{
    switch (column) {
    case Time:
        return timeWords(row);
    case Way:
        return wayWords(row);
    case Station:
        return row.station < 0 ? QString() : QString::number(row.station);
    case Kind:
        return kindWords(row.kind);
    case Meaning:
        return meaning(number);
    case Bytes:
        return bytesStart(row.bytes);
    case Response:
        return responseWords(row);
    case Result:
        return resultWords(row);
    default:
        return {};
    }
}

QVariant FrameModel::background(const FrameRow &row) const
{
    if (row.faults != FrameFaults()) {
        return washColour(toneOf(row.faults), m_palette);
    }
    return m_marked >= 0 && row.request == m_marked ? QVariant(washColour(Tone::Good, m_palette))
                                                    : QVariant();
}

QVariant FrameModel::font(const FrameRow &row) const
{
    if (m_marked < 0 || row.request != m_marked) {
        return {};
    }
    QFont bold;
    bold.setBold(true);
    return bold;
}

const QIcon &FrameModel::icon(FrameFaults faults) const
{
    const Tone tone = toneOf(faults);
    QIcon &icon = m_icons.at(tone == Tone::Bad ? 0 : tone == Tone::Waiting ? 1 : 2);
    if (icon.isNull()) {
        icon = faultIcon(faults, m_palette);
    }
    return icon;
}

QString FrameModel::hint(const FrameRow &row, qint64 number) const
{
    QStringList lines{meaning(number)};
    if (row.packet > 0) {
        lines << tr("packet %1 of the file").arg(row.packet);
    }
    lines << resultWords(row);
    if (row.faults == FrameFaults()) {
        lines << row.note;
    }
    lines.removeAll(QString());
    // A comment of a file may look like markup.
    return lines.isEmpty() ? QString()
                           : QLatin1String("<p>") +
                                 lines.join(QLatin1Char('\n'))
                                     .toHtmlEscaped()
                                     .replace(QLatin1Char('\n'), QLatin1String("<br>")) +
                                 QLatin1String("</p>");
}

QVariant FrameModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Time:
        return tr("Time");
    case Way:
        return tr("Frame");
    case Station:
        return tr("Station");
    case Kind:
        return tr("Kind");
    case Meaning:
        return tr("What it says");
    case Bytes:
        return tr("Bytes");
    case Response:
        return tr("Response");
    case Result:
        return tr("Result");
    default:
        return {};
    }
}

} // namespace cnet::view
