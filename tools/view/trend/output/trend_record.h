#pragma once

#include "view/trend/output/row_time.h"

#include "host/monitor/quality.h"

#include <QFile>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace cnet::view {

/**
 * Writes samples to a file without end, as rows of time, name, value and quality, and keeps to a
 * bound: when the file has half of it, it takes the place of the older part, whose samples are gone
 * then. A row is on the disk after a second at the latest.
 */
class TrendRecord : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kLeastBound = 256 * 1024;

    explicit TrendRecord(QObject *parent = nullptr);
    ~TrendRecord() override;

    /**
     * Begins a file, or goes on with one that a recording made.
     * @param mostBytes of both parts; less than kLeastBound is taken as that
     * @param error receives one sentence when this fails: not to be written, another file, or
     * one that is recorded to elsewhere
     */
    bool start(const QString &path, qint64 mostBytes, QString &error);

    /** Writes what waits. Harmless where none runs. */
    void stop();

    bool isRunning() const { return m_file.isOpen(); }
    QString path() const { return m_file.fileName(); }

    /** Where the older part of a recording is: "press.csv" has "press.older.csv". */
    static QString olderPath(const QString &path);

    /** @param value not a number: nothing is known. Harmless where none runs. */
    void add(const QString &name, qint64 atMs, double value, Quality quality);

    /** Writes what waits now. */
    void flush();

Q_SIGNALS:
    /** The disk does not take any more; the recording has ended. @param text a sentence */
    void failed(const QString &text);

private:
    bool turn();
    void fail(const QString &reason);

    QFile m_file;
    std::unique_ptr<QLockFile> m_lock; ///< against other windows
    QByteArray m_waiting;
    QTimer m_timer;
    qint64 m_mostBytes = 0;
    RowTime m_time;
};

} // namespace cnet::view
