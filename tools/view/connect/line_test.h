#pragma once

#include "view/connect/connection.h"

#include "host/scan/scan.h"
#include "host/time/system_clock.h"

#include <QObject>

#include <memory>

namespace cnet::view {

/**
 * Tries a connection without touching what is connected: which stations answer, and how fast. It
 * only reads, and asks the connection's own station first.
 */
class LineTest : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Begins; ends the test before, if that still runs. */
    void start(const Connection &connection);
    /** Ends it with what was found so far. */
    void cancel();
    bool isRunning() const { return m_scan != nullptr; }

Q_SIGNALS:
    /** What is known by now, in words for people. */
    void said(const QString &text);
    /** @param found true where a station answered */
    void ended(const QString &text, bool found);

private:
    void end();
    QString foundText() const;

    Connection m_connection;
    SystemClock m_clock;
    std::unique_ptr<Scan> m_scan;
};

} // namespace cnet::view
