#pragma once

#include "view/connect/line.h"

#include "plc/setup/apply.h"
#include "plc/stations/bus.h"

#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet::view {

/** A motion or a fault that is on. */
struct SimulatorAction
{
    enum class Kind { Motion, Fault };

    Kind kind = Kind::Motion;
    int station = 0;
    plc::Motion motion; ///< of Motion
    plc::Fault fault;   ///< of Fault; with the times that are left
};

/**
 * What people do to the simulated PLC. Each session has a PLC of its own; the motions and faults
 * that are on when one ends are on again when the next one begins.
 */
class Simulator : public QObject
{
    Q_OBJECT

public:
    static constexpr int kAllStations = -1;

    /** @param line must outlive this object */
    explicit Simulator(Line &line, QObject *parent = nullptr);

    /** True while there is a simulated PLC. */
    bool isThere() const { return m_line.simulator() != nullptr; }
    /** True while the window talks to a PLC that is not simulated. */
    bool isRealPlc() const { return m_line.session() != nullptr && !isThere(); }

    QVector<int> stations() const;

    // Each of these returns why it cannot be done, in a sentence; empty: it is done.

    /** @param text "D_W:100=5,6" @param station kAllStations or one */
    QString set(int station, const QString &text);
    /** @param text "D_W:100-119=0..9999@1000" */
    QString move(int station, plc::MotionKind kind, const QString &text);
    /** @param text "delay=50..200*3@10%" */
    QString cause(int station, const QString &text);

    /** The value there is now. @param text "D_W:100"; nothing: no such address */
    std::optional<int> value(int station, const QString &text) const;

    /** Whether a fault of this kind may still fire. @param station kAllStations: in any */
    bool has(int station, plc::FaultKind kind) const;

    /** All motions and faults that are on, by station; motions first. */
    QVector<SimulatorAction> actions() const;

    /** Ends one of actions(). One that is over already is no matter. */
    void remove(const SimulatorAction &action);
    /** Ends all faults of a kind. @param station kAllStations: in all */
    void removeFaults(int station, plc::FaultKind kind);
    /** Ends all motions and faults. Values stay as they are. */
    void allOff();

    /** The motions and faults that are on, or will be when there is a simulated PLC again. */
    QJsonObject saved() const;
    /** Takes the place of what is on. What is not understood is left out. */
    void restore(const QJsonObject &state);

Q_SIGNALS:
    /** There is another simulated PLC, or none. */
    void plcChanged();
    /** actions() has changed, other than by faults whose times are over. */
    void actionsChanged();

private:
    struct Kept
    {
        QStringList motions;
        QStringList faults;
    };

    Kept kept() const;
    void apply(const Kept &again);
    template <typename Setting>
    QString applied(int station, const plc::Parsed<Setting> &parsed);

    Line &m_line;
    Kept m_kept; ///< for the next session
};

/** The registers of a simulated PLC: words first, then bits, then contacts. */
QStringList simulatorRegisters();

} // namespace cnet::view
