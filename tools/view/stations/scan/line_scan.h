#pragma once

#include "view/connect/line.h"

#include "host/scan/scan.h"

#include <QObject>

#include <memory>

namespace cnet::view {

/**
 * Scans the line that the window talks to. Nobody else may talk meanwhile, so the session is closed
 * before, and begun again afterwards with the same connection if there was one. Where somebody
 * connects or disconnects meanwhile the scan ends with what it has.
 */
class LineScan : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,       ///< none was started yet
        Running,    ///<
        Complete,   ///<
        Cancelled,  ///< by cancel(), or by somebody who connected or disconnected
        LineFailed, ///< the line could not be opened, or was lost; see lineError()
    };

    /** @param line must outlive this object */
    explicit LineScan(Line &line, QObject *parent = nullptr);
    /** What runs is given up; the line stays closed. */
    ~LineScan() override;

    /**
     * Closes the line and begins; stateChanged() follows. Without effect while one runs.
     * @param options with one station at least
     */
    void start(const ScanOptions &options);

    /** Ends it with what was found so far. Harmless where none runs. */
    void cancel();

    State state() const { return m_state; }
    bool isRunning() const { return m_state == State::Running; }
    /** Of the last scan. */
    const QVector<FoundStation> &found() const { return m_found; }
    QString lineError() const { return m_lineError; }

    /** The connection that a station found by the last scan has. */
    Connection connectionTo(const FoundStation &found) const;

Q_SIGNALS:
    void stateChanged();
    void trying(const cnet::LineSettings &line);
    void progressed(int done, int total);
    /** found() has changed. */
    void foundChanged();

private:
    void takeFound();
    void finish();

    Line &m_line;
    std::unique_ptr<Scan> m_scan; ///< null: none runs
    Connection m_connection;
    bool m_cancelled = false;
    State m_state = State::Idle;
    QVector<FoundStation> m_found;
    QString m_lineError;
};

} // namespace cnet::view
