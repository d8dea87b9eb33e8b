#include "gateway/lines/tag_reporter.h"

#include "host/tag/typed_item.h"

#include <QHash>

#include <algorithm>
#include <tuple>
#include <utility>

namespace cnet::gateway {

namespace {

// A value that waits for the PLC is not what the PLC has. What comes of it is known soon.
constexpr qint64 kWaitingMs = 100;

// What a value was told to be still holds.
bool meansTheSame(const Tag &before, const Tag &now)
{
    const auto meaning = [](const Tag &tag) {
        return std::tie(tag.item.station, tag.item.reg.name, tag.item.start, tag.item.count,
                        tag.count, tag.scale, tag.offset, tag.unit, tag.texts);
    };
    return meaning(before) == meaning(now) && before.type.text() == now.type.text();
}

} // namespace

qint64 TagReporter::timeOf(const ItemState &state, bool hasChanged, Quality quality) const
{
    const bool isGood = quality == Quality::Good || quality == Quality::Implausible;
    if (hasChanged && state.changedAtMs > 0) {
        return state.changedAtMs;
    }
    return isGood && state.readAtMs > 0 ? state.readAtMs : m_clock.wallMs();
}

TagReporter::TagReporter(const QString &line, TagMonitor &tags, const ReportRules &rules,
                         Clock &clock, Taker taker, LineCause cause)
    : m_line(line)
    , m_tags(tags)
    , m_rules(rules)
    , m_clock(clock)
    , m_taker(std::move(taker))
    , m_lineCause(std::move(cause))
    , m_alarm(clock.makeAlarm())
{
    for (int tag = 0; tag < tags.tags().all().size(); ++tag) {
        addTag(tag);
    }
    connect(&tags, &TagMonitor::valuesChanged, this, [this](const QVector<int> &changed) {
        for (const int tag : changed) {
            lookAtTag(tag);
        }
    });
    connect(&tags, &TagMonitor::tagStateChanged, this, &TagReporter::lookAtTag);
    connect(m_alarm.get(), &Alarm::fired, this, &TagReporter::lookAtDue);
}

TagDiff TagReporter::setTags(const TagSet &tags, const ReportRules &rules)
{
    const std::vector<Reported> before = std::exchange(m_values, {});
    const TagSet tagsBefore = m_tags.tags();
    m_firstValues.clear();
    m_due.clear();
    m_rules = rules;
    TagDiff diff = m_tags.setTags(tags);
    for (int tag = 0; tag < m_tags.tags().all().size(); ++tag) {
        addTag(tag);
    }
    const std::vector<bool> settled = take(before, tagsBefore);
    // Where only the meaning is another one, the monitor has nothing to tell.
    int looked = -1;
    for (std::size_t number = 0; number < settled.size(); ++number) {
        const int tag = m_values.at(number).tag;
        if (!settled.at(number) && tag != looked) {
            lookAtTag(tag);
            looked = tag;
        }
    }
    setAlarm();
    return diff;
}

std::vector<bool> TagReporter::take(const std::vector<Reported> &before, const TagSet &tagsBefore)
{
    std::vector<bool> settled(m_values.size(), false);
    QHash<QString, int> numbers;
    for (int number = 0; number < static_cast<int>(m_values.size()); ++number) {
        numbers.insert(m_values.at(static_cast<size_t>(number)).source->tag, number);
    }
    for (const Reported &old : before) {
        const auto found = numbers.constFind(old.source->tag);
        if (found == numbers.cend()) {
            tellOfGone(old);
            continue;
        }
        Reported &now = m_values.at(static_cast<size_t>(*found));
        const Tag &tag = m_tags.tags().all().at(now.tag);
        if (meansTheSame(tagsBefore.all().at(old.tag), tag)) {
            now.source = old.source;
            now.value = old.value;
            now.quality = old.quality;
            now.toldMs = old.toldMs;
            setDue(*found, m_rules.longestMs > 0 ? now.toldMs + m_rules.longestMs : -1);
            settled.at(static_cast<std::size_t>(*found)) =
                old.quality == Quality::Good && old.dueMs < 0;
        }
    }
    return settled;
}

void TagReporter::tellOfGone(const Reported &told)
{
    if (told.quality == Quality::NeverRead) {
        return;
    }
    Change change;
    change.source = told.source;
    change.value = told.value.value;
    change.quality = Quality::Stale;
    change.cause = QLatin1String("not watched any more");
    change.atMs = m_clock.wallMs();
    m_taker(change);
}

void TagReporter::addTag(int tag)
{
    const Tag &own = m_tags.tags().all().at(tag);
    m_firstValues.append(static_cast<int>(m_values.size()));
    for (int index = 0; index < own.count; ++index) {
        auto source = std::make_shared<ChangeSource>();
        source->line = m_line;
        source->station = own.item.station;
        source->tag = tagText(own, index);
        source->unit = own.unit;
        source->type = own.type;
        source->scale = own.scale;
        source->offset = own.offset;
        Reported value;
        value.source = source;
        value.tag = tag;
        value.index = index;
        m_values.push_back(value);
    }
}

void TagReporter::lookAtTag(int tag)
{
    const QVector<TagValue> values = readTag(m_tags.tags().all().at(tag), m_tags.state(tag));
    for (int index = 0; index < values.size(); ++index) {
        look(m_firstValues.at(tag) + index, values.at(index), Reason::MayDiffer);
    }
}

void TagReporter::look(int number, const TagValue &now, Reason reason)
{
    if (now.quality == Quality::Waiting) {
        setDue(number, m_clock.nowMs() + kWaitingMs);
        setAlarm();
        return;
    }
    const Reported &told = m_values.at(static_cast<size_t>(number));
    const bool hasChanged = isChange(m_tags.tags().all().at(told.tag), told.value, now.value);
    const qint64 passedMs = m_clock.nowMs() - told.toldMs;
    const bool isDue = hasChanged && passedMs >= m_rules.leastMs;
    if (isDue || now.quality != told.quality) {
        tell(number, now, hasChanged);
    } else if (hasChanged) {
        setDue(number, told.toldMs + m_rules.leastMs);
    } else if (reason == Reason::Due && m_rules.longestMs > 0) {
        if (passedMs >= m_rules.longestMs) {
            tell(number, now, hasChanged);
        } else {
            setDue(number, told.toldMs + m_rules.longestMs);
        }
    }
    setAlarm();
}

void TagReporter::tell(int number, const TagValue &now, bool hasChanged)
{
    Reported &told = m_values.at(static_cast<size_t>(number));
    told.value = now.value;
    told.quality = now.quality;
    told.toldMs = m_clock.nowMs();
    setDue(number, m_rules.longestMs > 0 ? told.toldMs + m_rules.longestMs : -1);
    Change change;
    change.source = told.source;
    change.value = now.value.value;
    change.quality = told.quality;
    change.atMs = timeOf(m_tags.state(told.tag), hasChanged, told.quality);
    if (told.quality == Quality::Implausible) {
        change.cause = faultText(now.value.fault);
    } else if (told.quality == Quality::LineDown) {
        change.cause = m_lineCause();
    } else if (told.quality != Quality::Good) {
        change.cause = m_tags.state(told.tag).reason();
    }
    m_taker(change);
}

void TagReporter::setDue(int number, qint64 dueMs)
{
    Reported &told = m_values.at(static_cast<size_t>(number));
    if (told.dueMs >= 0) {
        m_due.erase({told.dueMs, number});
    }
    told.dueMs = dueMs;
    if (dueMs >= 0) {
        m_due.insert({dueMs, number});
    }
}

void TagReporter::setAlarm()
{
    if (!m_due.empty()) {
        m_alarm->set(static_cast<int>(std::max<qint64>(0, m_due.begin()->first - m_clock.nowMs())));
    }
}

void TagReporter::lookAtDue()
{
    // Those of an array are mostly due together: it is read once.
    int tag = -1;
    QVector<TagValue> values;
    while (!m_due.empty() && m_due.begin()->first <= m_clock.nowMs()) {
        const int number = m_due.begin()->second;
        setDue(number, -1);
        const Reported &told = m_values.at(static_cast<size_t>(number));
        if (told.tag != tag) {
            tag = told.tag;
            values = readTag(m_tags.tags().all().at(tag), m_tags.state(tag));
        }
        look(number, values.at(told.index), Reason::Due);
    }
    setAlarm();
}

} // namespace cnet::gateway
