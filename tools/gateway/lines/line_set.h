#pragma once

#include "gateway/lines/gateway_line.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace cnet::gateway {

/** The lines of a gateway. Others may take their place while it runs. */
class LineSet
{
public:
    using LinkMaker = std::function<std::unique_ptr<Link>(const LineConfig &line)>;

    /** @param clock must outlive this object */
    LineSet(Clock &clock, LinkMaker makeLink, TagReporter::Taker changes,
            StatusReporter::Taker statuses, const Say &say);

    /**
     * Gets everything ready for these lines, and changes nothing of what runs.
     * @return what is wrong, a line each; none: apply() may follow
     */
    QStringList prepare(const QVector<LineConfig> &lines);

    /**
     * Begins what is new, goes on with what has the same link and session, and ends the rest: by
     * what prepare() was told last.
     */
    void apply();

    /** Ends all. @param cause in words */
    void close(const QString &cause);

    /** In the order of the configuration. */
    const std::vector<std::unique_ptr<GatewayLine>> &all() const { return m_lines; }

private:
    /** What becomes of one line. */
    struct Plan
    {
        LineConfig config;
        GatewayLine *kept = nullptr; ///< goes on with `tags`; null: `fresh` begins
        TagSet tags;                 ///< of `kept`
        std::unique_ptr<GatewayLine> fresh;
    };

    GatewayLine *find(const LineConfig &config) const;

    Clock &m_clock;
    LinkMaker m_makeLink;
    TagReporter::Taker m_changes;
    StatusReporter::Taker m_statuses;
    Say m_say;
    std::vector<std::unique_ptr<GatewayLine>> m_lines;
    std::vector<Plan> m_plans;
};

} // namespace cnet::gateway
