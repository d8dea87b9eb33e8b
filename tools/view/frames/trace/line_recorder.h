#pragma once

#include "view/connect/line.h"
#include "view/frames/trace/frame_model.h"

#include <QObject>
#include <QTimer>
#include <QVector>

namespace cnet::view {

/**
 * Writes down what goes over a line, whichever session there is, and hands it to a table a few
 * times a second. The table may be held for a while; what comes meanwhile is kept, as far as a
 * table would keep it.
 */
class LineRecorder : public QObject
{
    Q_OBJECT

public:
    /** @param line,model must outlive this object */
    LineRecorder(Line &line, FrameModel &model, QObject *parent = nullptr);

    /** Holds the table as it is, or lets it go on with what came meanwhile. */
    void setPaused(bool paused);
    bool isPaused() const { return m_paused; }

    /** Empties the table and counts from 0 again. */
    void clear();

    /** Exchanges that went over the line, and rows with a fault among theirs. */
    qint64 total() const { return m_total; }
    qint64 faulty() const { return m_faulty; }
    /** Exchanges that the table has not seen yet, and will. */
    int waiting() const { return m_waiting.exchanges(); }

    /** What the line was called last; empty: there was none. */
    QString lineName() const { return m_lineName; }

    /** Hands over at once, unless it is paused. */
    void flush();

    // What a session says, in its order.

    void noteRequest(const QByteArray &frame);
    void noteEnd(const ExchangeReport &report);
    void noteLate(int station, const QByteArray &answer, double lateMs);
    void noteDoubted(int station, const QByteArray &answer, double tookMs);

Q_SIGNALS:
    /** total() and the like are different. A few times a second. */
    void counted();

private:
    /** A request that has not ended. */
    struct Open
    {
        qint64 number;
        QByteArray frame;
    };

    void begin(Session *session);
    void end();
    void append(FrameRow row);
    FrameRow *find(qint64 number);
    qint64 takeOpen(const QByteArray &frame);
    void leaveOpen(const Open &open);
    qint64 requestOfLate(int station, const QByteArray &answer, qint64 askedNs);

    Line &m_line;
    FrameModel &m_model;
    QTimer m_timer;
    FrameLog m_waiting;
    QVector<qint64> m_changed; ///< rows of the model that are to be touched
    QVector<Open> m_open;
    QByteArray m_failed;    ///< the request that may be sent again
    Open m_doubted{-1, {}}; ///< the request that is to be sent again behind a fence; -1: none
    QString m_lineName;
    qint64 m_total = 0;
    qint64 m_faulty = 0;
    bool m_paused = false;
};

} // namespace cnet::view
