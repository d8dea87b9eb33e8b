#include "gateway/lines/line_set.h"

#include <algorithm>
#include <utility>

namespace cnet::gateway {

LineSet::LineSet(Clock &clock, LinkMaker makeLink, TagReporter::Taker changes,
                 StatusReporter::Taker statuses, const Say &say)
    : m_clock(clock)
    , m_makeLink(std::move(makeLink))
    , m_changes(std::move(changes))
    , m_statuses(std::move(statuses))
    , m_say(say)
{}

GatewayLine *LineSet::find(const LineConfig &config) const
{
    const auto found = std::find_if(m_lines.begin(), m_lines.end(), [&config](const auto &line) {
        return line->name() == config.name && line->fits(config);
    });
    return found == m_lines.end() ? nullptr : found->get();
}

QStringList LineSet::prepare(const QVector<LineConfig> &lines)
{
    m_plans.clear();
    QStringList mistakes;
    for (const LineConfig &config : lines) {
        Plan plan;
        plan.config = config;
        plan.kept = find(config);
        if (plan.kept != nullptr) {
            plan.tags = plan.kept->readTags(config, mistakes);
        } else {
            plan.fresh = std::make_unique<GatewayLine>(config, m_makeLink(config), m_clock,
                                                       m_changes, m_statuses, m_say);
            mistakes += plan.fresh->prepare();
        }
        m_plans.push_back(std::move(plan));
    }
    if (!mistakes.isEmpty()) {
        m_plans.clear();
    }
    return mistakes;
}

void LineSet::apply()
{
    std::vector<std::unique_ptr<GatewayLine>> before = std::exchange(m_lines, {});
    for (Plan &plan : m_plans) {
        for (auto &line : before) {
            if (line && line.get() == plan.kept) {
                plan.fresh = std::move(line);
            }
        }
    }
    // First of all: a device may have another line's name now.
    for (const auto &line : before) {
        if (line) {
            line->close(QLatin1String("the line was taken out of the configuration"));
        }
    }
    for (Plan &plan : m_plans) {
        m_lines.push_back(std::move(plan.fresh));
        if (plan.kept != nullptr) {
            m_lines.back()->reload(plan.config, plan.tags);
        } else {
            m_lines.back()->open();
        }
    }
    m_plans.clear();
}

void LineSet::close(const QString &cause)
{
    for (const auto &line : m_lines) {
        line->close(cause);
    }
}

} // namespace cnet::gateway
