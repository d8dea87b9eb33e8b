#pragma once

#include "host/driver/driver.h"
#include "host/exchange/exchange_report.h"
#include "host/jobs/read_job.h"
#include "host/jobs/write_job.h"
#include "host/link/link.h"
#include "host/monitor/monitor.h"
#include "host/recipe/recipe_job.h"
#include "host/session_options.h"
#include "host/statistics/statistics.h"
#include "host/time/clock.h"

#include <QObject>
#include <QSet>

#include <memory>

namespace cnet {

/**
 * Talks to the stations on one line, with one driver and one link, for all users in a program.
 * Monitors and jobs of several users share it and none disturbs another.
 *
 * It lives on the event loop of its thread; all calls and signals are there, and none waits.
 * Several sessions may share a thread, each with a driver of its own.
 */
class Session : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Closed,  ///< not opened yet, or closed for good
        Opening, ///< the line was never open
        Open,
        Lost, ///< it was open, and is opened again when it can be
    };

    /**
     * @param driver loaded, of this session alone; must outlive it
     * @param link to the PLCs, not opened yet; see makeLink()
     */
    Session(Driver &driver, std::unique_ptr<Link> link,
            const SessionOptions &options = SessionOptions(), QObject *parent = nullptr);

    /** The same with a clock of the caller's, which must outlive the session. */
    Session(Driver &driver, std::unique_ptr<Link> link, const SessionOptions &options, Clock &clock,
            QObject *parent = nullptr);
    ~Session() override;

    /** Opens the line, and reopens it whenever it is lost. stateChanged() follows. Once only. */
    void open();

    /** Ends all jobs and closes the line for good; what monitors show is not good any more. */
    void close();

    State state() const { return m_state; }
    /** Why the line is not open; empty while it is. */
    QString lineError() const { return m_lineError; }
    QString linkName() const { return m_link->name(); }
    const SessionOptions &options() const { return m_options; }

    /**
     * Watches items from now on, until the monitor is deleted.
     * @param items whose addresses were checked; may be empty, and changed by Monitor::setItems()
     */
    Monitor *monitor(const QVector<Item> &items = {});

    /** Reads items once. @param items whose addresses were checked */
    ReadJob *read(const QVector<Item> &items);

    /** Writes values, in the order given. @param assignments whose addresses were checked */
    WriteJob *write(const QVector<Assignment> &assignments,
                    ReadBack readBack = ReadBack::OnFailure);

    /**
     * Transfers a recipe.
     * @param items checked, of which no two overlap; with values where they are written
     */
    RecipeJob *transfer(const QVector<RecipeItem> &items, RecipeDirection direction,
                        Verify verify = Verify::Yes);

    /** What is known of each station that was asked anything. */
    const QMap<int, StationCounters> &stations() const { return statistics().stations(); }

    /**
     * The numbers of the line, its stations and the blocks that were asked for, since it was first
     * open. What is watched makes no difference to them.
     */
    const Statistics &statistics() const;

    /** Counts all of these from 0 again. */
    void resetStatistics();

    /** Rounds in which every block of the monitored items was read or given up. */
    int rounds() const;

    /** Milliseconds on the clock that ages are taken from. */
    qint64 nowMs() const { return m_clock.nowMs(); }

Q_SIGNALS:
    void stateChanged(cnet::Session::State state);
    /** The line could not be opened, for the first time or again; see lineError(). */
    void openFailed();
    /** A station has stopped or resumed answering; see stations(). */
    void stationChanged(int station);
    /** One line of text for the user: a station comes or goes, an address is refused, the line is
     * lost. */
    void noticed(const QString &text);
    void requestSent(const QByteArray &frame);
    void exchangeEnded(const cnet::ExchangeReport &report);
    /** An answer came after its time-out, and was not used. */
    void answeredLate(int station, const QByteArray &answer, double lateMs);
    /** An answer is, byte for byte, the one before it to another request. It is not used, and the
     * request is sent again behind a fence; its exchange has not ended. @param tookMs since it was
     * sent */
    void answerDoubted(int station, const QByteArray &answer, double tookMs);
    void roundEnded(int rounds);

private:
    void wireLink();
    void wireTalk();
    void setState(State state, const QString &error);
    void handleStation(int station);
    void handleLate(int station, const QByteArray &answer, double lateMs);
    void notice(const QString &text);

    struct Works;

    Driver &m_driver;
    SessionOptions m_options;
    Clock &m_clock;
    std::unique_ptr<Link> m_link;
    std::unique_ptr<Works> m_works; ///< what programs need not know of
    State m_state = State::Closed;
    bool m_ended = false; ///< closed for good
    QString m_lineError;
    qint64 m_lostAtMs = 0;
    QSet<int> m_toldSlow; ///< stations for which a longer time-out was suggested
};

} // namespace cnet
