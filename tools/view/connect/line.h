#pragma once

#include "view/connect/connection.h"

#include "host/driver/driver.h"
#include "host/session.h"

#include <QObject>

#include <memory>

namespace plc {
class Bus;
}

namespace cnet::view {

/**
 * The line that the window talks to: one driver for good, and one session at a time. All pages
 * share it. When it connects anew the session is another one: whoever keeps something of a session
 * lets go of it at sessionEnding() and begins again at sessionBegan().
 *
 * It lives on the thread of the window, as all that is here.
 */
class Line : public QObject
{
    Q_OBJECT

public:
    explicit Line(QObject *parent = nullptr);
    ~Line() override;

    /**
     * Loads the driver. Before everything else.
     * @return one sentence; empty: it is there
     */
    QString prepare();

    /**
     * Ends the session there is and begins another. sessionBegan() comes before this returns.
     * Without effect where prepare() failed.
     */
    void open(const Connection &connection);

    /** Ends the session for good; sessionEnding() comes before this returns. Whoever the line is
     * lent to hears recalled(). Harmless without both.
     */
    void close();

    /**
     * Ends the session there is, so that somebody else can talk, as a scan does: until takeBack(),
     * or until recalled().
     */
    void lend();
    /** Whoever had the line has done with it. Where lend() ended a session, another one begins. */
    void takeBack();
    bool isLent() const { return m_isLent; }

    /** null: none */
    Session *session() const { return m_session.get(); }
    const Connection &connection() const { return m_connection; }
    Driver &driver() { return m_driver; }
    const RegisterCatalog &registers() const { return m_driver.registers(); }

    /** The stations of the simulator; null where this is a line to a real PLC, or none. */
    plc::Bus *simulator() const { return m_bus; }

    /** True while the line is open and the session takes requests. */
    bool isOpen() const;

    /** Its state in words for people: "connected", "lost: ...". */
    QString stateText() const;

Q_SIGNALS:
    void sessionBegan(cnet::Session *session);
    /** It is still there, and is not when all who hear this have returned. */
    void sessionEnding();
    /** Somebody connects or disconnects: whoever the line was lent to is to leave it. */
    void recalled();
    /** isOpen(), isLent(), stateText() or the reason may differ. */
    void stateChanged();
    /** See Session::noticed(). */
    void noticed(const QString &text);

private:
    Driver m_driver;
    Connection m_connection;
    std::unique_ptr<Session> m_session;
    plc::Bus *m_bus = nullptr; ///< of the session's link
    bool m_isLent = false;
    bool m_opensAgain = false; ///< after it was lent
};

} // namespace cnet::view
