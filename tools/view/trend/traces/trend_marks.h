#pragma once

#include <QAbstractTableModel>
#include <QObject>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace cnet::view {

/** One of two cursors that go over all panes. */
enum class Cursor { A, B };

/** Where the cursors are. */
class Cursors : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Its time in ms since the epoch; nothing: it is not shown. */
    std::optional<double> at(Cursor cursor) const { return m_at[index(cursor)]; }
    bool isShown(Cursor cursor) const { return at(cursor).has_value(); }

    /** Shows it there, and makes it the one that keys move. */
    void place(Cursor cursor, double atMs);

    /** The one that keys move; nothing: none. */
    std::optional<Cursor> active() const { return m_active; }
    void setActive(std::optional<Cursor> cursor);

    /** Neither is shown. */
    void hide();

    /** The earlier and the later one; nothing where not both are shown. */
    std::optional<std::array<double, 2>> between() const;

Q_SIGNALS:
    void changed();

private:
    static size_t index(Cursor cursor) { return cursor == Cursor::A ? 0 : 1; }

    std::array<std::optional<double>, 2> m_at;
    std::optional<Cursor> m_active;
};

/** A note at a time. */
struct Marker
{
    qint64 atMs = 0; ///< since the epoch
    QString note;
};

/** All notes, in the order of their times, as a table of time and note that can be edited. */
class Markers : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Note, kColumns };
    static constexpr int kMostMarkers = 1000;
    static constexpr int kLongestNote = 500;

    using QAbstractTableModel::QAbstractTableModel;

    const std::vector<Marker> &all() const { return m_markers; }

    /** @return its row; -1: there are too many */
    int add(const Marker &marker);
    void removeAt(int row);
    void clear();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    /** Any of them is different, or not there any more. */
    void changed();

private:
    std::vector<Marker> m_markers;
};

/** "14:03:07.250", the local time. */
QString clockText(double atMs);

} // namespace cnet::view
