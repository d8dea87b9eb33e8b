#include "exchange/soak/soak_tally.h"

#include "plc/exchange_text.h"

namespace exchange::soak {

namespace {

constexpr int kNameWidth = 58;

const std::array<const char *, static_cast<std::size_t>(Event::Count)> kEventNames = {
    "writes queued",
    "writes acknowledged",
    "writes given up",
    "writes cut off by a new start",
    "condition reads queued",
    "condition reads done",
    "condition reads given up",
    "condition reads cut off by a new start",
    "cyclic reads done",
    "cyclic reads given up",
    "recipes written",
    "recipes read",
    "recipe transfers given up",
    "values changed by a PLC",
    "stations gone away",
    "new starts of communication",
    "new screens",
    "writes and readings asked for within a call",
    "answers while no frame was out",
    "times with nothing to send",
};

const std::array<const char *, static_cast<std::size_t>(Excuse::Count)> kExcuseNames = {
    "write replaced by a newer one of its place",
    "write replaced: 513 waited",
    "condition read folded into one that waited",
    "condition read replaced: 513 waited",
    "condition read dropped with one that was given up",
    "end of a write took a newer value for confirmed",
    "write acknowledged by the answer to another request",
    "read answered by the answer to another request",
    "write given up that the PLC had carried out",
    "several bits beyond the end of their word, not sent",
    "several bits in two words, refused by every PLC",
    "word put back as it was read before its bits were written",
    "write of 59 or 60 words, longer than a PLC's frame",
    "recipe transfer begun where another one was",
    "at rest: panel's value shown, writes that are not sent",
    "at rest: panel's value shown, write displaced",
    "at rest: panel's value shown, second mark of a bit left",
    "at rest: block refused by a PLC that has not all of it",
    "at rest: station that is not there",
};

QString line(const QString &name, long long count)
{
    return QLatin1String("  ") + name.leftJustified(kNameWidth) +
           QString::number(count).rightJustified(12) + QLatin1Char('\n');
}

template <typename Names, typename Counts>
QString lines(const Names &names, const Counts &counts)
{
    QString text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += line(QLatin1String(names[i]), counts[i]);
    }
    return text;
}

} // namespace

QString Tally::report() const
{
    QString text = QLatin1String("jobs and events\n") + lines(kEventNames, m_events);
    text += QLatin1String("faults\n");
    for (std::size_t i = 0; i < m_faults.size(); ++i) {
        text += line(plc::faultName(static_cast<plc::FaultKind>(i)), m_faults[i]);
    }
    return text + QLatin1String("rules that excused something\n") + lines(kExcuseNames, m_excuses);
}

} // namespace exchange::soak
