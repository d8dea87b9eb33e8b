#pragma once

#include "plc/control/script.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace plc {

/** Runs a script on the event loop. */
class ScriptPlayer : public QObject
{
    Q_OBJECT

public:
    /** Is told what became of each line. */
    using Report = std::function<void(const ScriptLine &line, const Reply &reply)>;

    /** @param target must outlive the player; it needs a clock. */
    ScriptPlayer(const ControlTarget &target, std::vector<ScriptLine> lines, Report report,
                 QObject *parent = nullptr);

    /** From now on every line runs in time, on the event loop: a line may end the program. */
    void start() { m_timer.start(0); }

private:
    void play();

    const ControlTarget &m_target;
    ScriptSchedule m_schedule;
    Report m_report;
    QTimer m_timer;
};

} // namespace plc
