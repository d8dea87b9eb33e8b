#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

/**
 * A serial server between the panel and the PLC: both talk to it, and neither sees what becomes of
 * the other. It lives on the event loop; see runUntilEnd().
 */
class Relay : public QObject
{
    Q_OBJECT

public:
    /** @param plc "127.0.0.1:40339" */
    explicit Relay(QString plc);

    /** For --link. */
    QString link() const;

    /**
     * What becomes of the answer to a request: its bytes as they go on, empty for none. Asked when
     * all of the answer is there.
     */
    std::function<QByteArray(const QByteArray &request, const QByteArray &answer)> onAnswer;

    /** Every request of the panel, in order, from ENQ to the block check. */
    const QList<QByteArray> &requests() const { return m_requests; }

    /** How many requests hold these characters. */
    int count(const char *part) const;

    /** The PLC's own line breaks; the panel's does not. It is connected to again with the next
     * request. */
    void plcGone() { m_plcLine.abort(); }

private:
    void take();
    void answer();

    QTcpServer m_server;
    QTcpSocket *m_panel = nullptr;
    QTcpSocket m_plcLine;
    QString m_plc;
    QByteArray m_asked;
    QByteArray m_answered;
    QList<QByteArray> m_requests;
};
