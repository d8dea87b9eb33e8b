#pragma once

#include "exchange/virtual_line.h"
#include "support/driver_fixture.h"

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <map>

Q_DECLARE_METATYPE(KEY_ADDRESS)
Q_DECLARE_METATYPE(_RCP_VAR_PRO)
Q_DECLARE_METATYPE(plc::FaultKind)

namespace exchange {

using Values = QList<int>; ///< words, or 0 and 1 for bits and contacts
using Keys = QList<KEY_ADDRESS>;

/** So many numbers, each by `step` above the one before. */
inline Values numbers(int count, int first, int step)
{
    Values all;
    for (int i = 0; i < count; ++i) {
        all += first + i * step;
    }
    return all;
}

/** Milliseconds of the line's own clock. */
struct HostTiming
{
    int timeoutMs = 300; ///< for an answer, from handing over its request
    int quietMs = 1000;  ///< silence after which the line counts as empty
    int idleMs = 10;     ///< pause when the driver has nothing to send
};

/** What became of the frames. Each frame is one answer, resend, giving up or unexpected answer. */
struct HostCounts
{
    qint64 frames = 0;     ///< frames that the driver handed out, resends included
    qint64 answers = 0;    ///< good ones
    qint64 resends = 0;    ///< bad answers after which the same frame goes out again
    qint64 givenUp = 0;    ///< bad answers that ended a job
    qint64 unexpected = 0; ///< answers that the driver had no frame for
    qint64 timeouts = 0;   ///< deadlines that passed before the answer was complete
    qint64 idle = 0;       ///< times that the driver had nothing to send
};

/** One frame and its answer. */
struct Turn
{
    qint64 sentMs = 0;
    QByteArray request;
    QByteArray answer;   ///< what the driver was given
    int result = 0;      ///< of intf_dealRcvFrame
    QString description; ///< the driver's text for it
};

/** The recipe request bytes. */
enum class Recipe { Write, Read };

/**
 * A panel with its line and its PLCs, of which station 1 is there and is meant where no station is
 * named: owns what the driver is given, runs the request-reply loop
 * and looks at both ends.
 *
 * It collects an answer as a good host does (see AnswerFinder), gives it a time limit, and empties
 * the line after each bad one. Time is virtual, nothing sleeps. The driver is one for the process,
 * so there is one host at a time.
 */
class HostLoop
{
public:
    static constexpr int kStation = 1;
    static constexpr const char *kUsualProperties = "7#0#0#3#60";

    /** @param properties device, cache-only, spare, retries, block words */
    explicit HostLoop(const char *properties = kUsualProperties);
    ~HostLoop();
    HostLoop(const HostLoop &) = delete;
    HostLoop &operator=(const HostLoop &) = delete;

    /** Starts communication anew, whatever is in flight. */
    void start(const char *properties = kUsualProperties);

    HostTiming timing;

    // The line's other end.
    VirtualLine &line() { return m_line; }
    /** Adds a PLC, or replaces the one of this number. */
    plc::Unit &addStation(int station, plc::Model model = plc::Model::Full);
    /** A PLC that was added. */
    plc::Unit &unit(int station = kStation);
    plc::Memory &memory(int station = kStation) { return unit(station).station.memory(); }
    /** Station 1 refuses its next requests. */
    void refuse(int times) { unit().faults.add({plc::FaultKind::Refuse, 0x1132, 0x1132, times}); }
    void setPlc(const char *regName, int address, const Values &values, int station = kStation);
    Values inPlc(const char *regName, int address, int count = 1, int station = kStation);
    /**
     * What the panel has changed in a PLC: every word and contact that is not as setPlc() has set
     * it, or 0, as "D_W 100=7". A write that went astray shows as well as one that did not arrive.
     */
    QStringList plcChanges(int station = kStation);

    // The panel.
    /** @return number of block reads. */
    int monitor(const Keys &keys);
    /** monitor(), and the first readings. @return what settle() returns */
    bool show(const Keys &keys)
    {
        monitor(keys);
        return settle();
    }
    void write(const char *regName, int address, const Values &values, int station = kStation);
    /** One write for each value. */
    void writeEach(const char *regName, int address, const Values &values)
    {
        for (const int value : values) {
            write(regName, address++, {value});
        }
    }
    void readOnce(const char *regName, int address, int count, int station = kStation);
    Values inPanel(const char *regName, int address, int count = 1, int station = kStation) const;

    // Recipes.
    int setRecipe(const QVector<_RCP_VAR_PRO> &items);
    void request(Recipe direction, bool on = true);
    bool isRequested(Recipe direction);
    void setRecipeWords(int offset, const Values &values);
    Values recipeWords(int offset, int count) const;

    // The loop.
    /** Asks the driver for a frame and sends it. @return false, after a pause, where it has none.
     */
    bool send();
    /** Collects the answer and hands it over. @return the driver's result. */
    int receive();
    /** send() and receive(). @return false where there was nothing to send. */
    bool turn();
    /** So many turns, the idle ones included. @return the results, -1 for an idle turn. */
    QList<int> turns(int count);
    /**
     * Runs until no job waits and every cyclic block was asked for once more.
     * @return false where that takes more turns than `most`.
     */
    bool settle(int most = 5000);

    // What was seen.
    const HostCounts &counts() const { return m_counts; }
    const QList<Turn> &log() const { return m_log; }
    /** The log for the eye: each frame with its time, its answer and what the driver made of it. */
    QString logText() const;
    /** The requests of the log, each as the text between ENQ and EOT. */
    QStringList requests() const;
    /** The driver's callbacks since the start or forget(): "device station name address". */
    static QStringList calls() { return DriverFixture::calls(); }
    /** Runs within every callback; an empty function for none. */
    static void setCallbackHandler(const std::function<void(const QString &call)> &handler);
    /** Empties log, counts and callbacks. */
    void forget();

    /**
     * Every place that is monitored or was written where the panel's view is not what the PLC
     * holds, as "1 D_W 100: panel 5, PLC 7". Places of stations that are not there are left out.
     */
    QStringList differences();
    /** settle() and differences(); where it does not settle, the text that says so. */
    QStringList differencesAtRest();

private:
    struct Place
    {
        int station;
        QString regName;
        int address;
        int count;
        bool operator==(const Place &other) const;
    };

    void remember(const Place &place);
    static Values inPanel(const Place &place);
    void judge(int result);
    bool jobsWait();

    DriverFixture m_fixture;
    VirtualLine m_line;
    QList<Place> m_places;
    std::map<int, plc::Memory> m_set; ///< what the PLCs hold but for what the panel has written
    FRAME_PRO m_frame{};
    Turn m_turn;
    QList<Turn> m_log;
    HostCounts m_counts;
};

/** The PLC's name for an address of a register: "M_bit" 35 is bit 3 of M word 2. */
plc::Point pointOf(const QString &regName, int address);

/** A range that the panel shows. Bits and contacts are marked as such. */
KEY_ADDRESS key(const char *regName, int address, int count = 1, int station = HostLoop::kStation);

/** An item of the recipe of device 7. @param offset word of the recipe buffer. */
_RCP_VAR_PRO recipeItem(const char *regName, int address, int count, int offset,
                        int station = HostLoop::kStation);

/** Texts for comparison with QStringList results. */
QStringList texts(std::initializer_list<const char *> lines);

} // namespace exchange
