#pragma once

#include "host/session.h"
#include "panel/options/link_settings.h"
#include "panel/output/statistics_file.h"
#include "panel/system/messages.h"
#include "panel/system/stop_signals.h"

#include <QEventLoop>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace cnet {
class LinkSim;
}

namespace cnet::panel {

/**
 * Runs the session of one command: the event loop runs until finish() is called, signals request
 * the end, and the session's notices are printed. A command starts its job, follows it, and
 * finishes.
 */
class CommandSession : public QObject
{
    Q_OBJECT

public:
    /**
     * @param driver loaded
     * @param stations that the simulated line has, where it is used
     * @param messages must outlive this object
     */
    CommandSession(Driver &driver, const LinkSettings &settings, const QVector<int> &stations,
                   Messages &messages);
    ~CommandSession() override;

    Session &session() { return m_session; }
    const Session &session() const { return m_session; }

    /** Puts more stations on the simulated line; on any other they are there or not. */
    void addStations(const QVector<int> &stations);

    /**
     * Opens the link and runs the event loop until finish().
     * @return the exit code: that of finish(), or kNoLink when the link cannot be opened;
     * kOutputLost when all was fine but the session's numbers could not be stored
     */
    int run();

    /** Ends run(); the first call decides. */
    void finish(int exitCode);

    /** Runs until the job ends; one that is kept waiting by a lost link is cancelled. */
    int run(Job &job);

Q_SIGNALS:
    /** The user wants the program to end; the command decides with which exit code. */
    void stopRequested();

private:
    void trace();

    Messages &m_messages;
    QPointer<LinkSim> m_simulated; ///< the session's; null: it has another line
    Session m_session;
    StopSignals m_stopSignals;
    std::unique_ptr<StatisticsFile> m_statistics; ///< null: nobody wants it
    QTimer m_lostLimit;
    QEventLoop m_loop;
    bool m_finished = false;
    int m_exitCode = 0;
};

/**
 * The link of the settings, not opened yet, with the capture that they ask for.
 * @param stations that the simulated line has
 * @param messages must outlive the link: says what becomes of the capture
 * @param simulated receives the simulated line, where it is used; null: nobody wants it
 */
std::unique_ptr<Link> linkFor(const LinkSettings &settings, const QVector<int> &stations,
                              Messages &messages, QPointer<LinkSim> *simulated = nullptr);

/** The stations of a list of items, each once. */
QVector<int> stationsOf(const QVector<Item> &items);

} // namespace cnet::panel
