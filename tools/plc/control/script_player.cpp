#include "plc/control/script_player.h"

#include <algorithm>

namespace plc {

namespace {

/** A timer runs no longer than this at a stretch. */
constexpr qint64 kLongestWaitMs = 3600000;

} // namespace

ScriptPlayer::ScriptPlayer(const ControlTarget &target, std::vector<ScriptLine> lines,
                           Report report, QObject *parent)
    : QObject(parent)
    , m_target(target)
    , m_schedule(std::move(lines))
    , m_report(std::move(report))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ScriptPlayer::play);
}

void ScriptPlayer::play()
{
    const qint64 nowMs = m_target.nowMs();
    while (const auto line = m_schedule.takeDue(nowMs)) {
        m_report(*line, runCommand(line->command, m_target));
    }
    if (const auto next = m_schedule.nextMs()) {
        const qint64 waitMs = std::max<qint64>(*next - m_target.nowMs(), 0);
        m_timer.start(static_cast<int>(std::min(waitMs, kLongestWaitMs)));
    }
}

} // namespace plc
