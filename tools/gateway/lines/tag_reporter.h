#pragma once

#include "gateway/change/change.h"
#include "gateway/config/gateway_config.h"

#include "host/tag/tag_values.h"
#include "host/tagfile/tag_monitor.h"
#include "host/time/clock.h"

#include <QObject>

#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace cnet::gateway {

/**
 * Decides what of the watched tags is told: a value that changed by its tag's dead band, no sooner
 * than the least interval allows; one that does not change, again after the longest; and a quality
 * always and at once.
 */
class TagReporter : public QObject
{
    Q_OBJECT

public:
    using Taker = std::function<void(const Change &change)>;
    using LineCause = std::function<QString()>;

    /**
     * @param line name of the line
     * @param tags what is watched, changed by setTags() alone; must outlive this object
     * @param clock must outlive this object
     * @param cause says why the line is down, in words
     */
    TagReporter(const QString &line, TagMonitor &tags, const ReportRules &rules, Clock &clock,
                Taker taker, LineCause cause);

    /**
     * Watches these from now on. What stays the same is not told again; what is not watched any
     * more is told to be stale.
     */
    TagDiff setTags(const TagSet &tags, const ReportRules &rules);

private:
    /** One value of a tag, and what was told of it. */
    struct Reported
    {
        std::shared_ptr<const ChangeSource> source;
        int tag = 0;
        int index = 0; ///< in the tag
        TypedValue value;
        Quality quality = Quality::NeverRead;
        qint64 toldMs = 0; ///< on the clock; of no meaning before the first time
        qint64 dueMs = -1; ///< when it is looked at again; negative: when something changes
    };

    /** Why a value is looked at. */
    enum class Reason { MayDiffer, Due };

    void addTag(int tag);
    /** @return by their numbers, values of which nothing new can be told */
    std::vector<bool> take(const std::vector<Reported> &before, const TagSet &tagsBefore);
    void tellOfGone(const Reported &told);
    void lookAtTag(int tag);
    void look(int number, const TagValue &now, Reason reason);
    void tell(int number, const TagValue &now, bool hasChanged);
    qint64 timeOf(const ItemState &state, bool hasChanged, Quality quality) const;
    void setDue(int number, qint64 dueMs);
    void setAlarm();
    void lookAtDue();

    QString m_line;
    TagMonitor &m_tags;
    ReportRules m_rules;
    Clock &m_clock;
    Taker m_taker;
    LineCause m_lineCause;
    std::vector<Reported> m_values;         ///< those of a tag behind those of the tag before it
    QVector<int> m_firstValues;             ///< of each tag: its first value's number
    std::set<std::pair<qint64, int>> m_due; ///< when, and number of the value
    std::unique_ptr<Alarm> m_alarm;
};

} // namespace cnet::gateway
