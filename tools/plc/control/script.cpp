#include "plc/control/script.h"

#include <algorithm>

namespace plc {

namespace {

constexpr double kLongestHours = 1000;
constexpr int kShortestEveryMs = 10;

const char *const kTimeExpected =
    "expected a time of up to 1000 hours with its unit, for example 200ms, 1.5s, 2m or 1h";

/** Takes the first word off the text. */
QString takeWord(QString &text)
{
    const auto blank = text.indexOf(QLatin1Char(' '));
    QString word = blank < 0 ? text : text.left(blank);
    text = blank < 0 ? QString() : text.mid(blank + 1);
    return word;
}

/**
 * Takes the time off the front of a command, if one is there.
 * @param aboveMs the time of the line above
 * @return what is wrong with it; empty: nothing
 */
QString readTime(ScriptLine &line, qint64 aboveMs)
{
    QString rest = line.command;
    const QString word = takeWord(rest);
    line.atMs = aboveMs;
    const bool every = word == QLatin1String("every");
    if (word != QLatin1String("at") && word != QLatin1String("after") && !every) {
        return {};
    }
    const QString text = takeWord(rest);
    const std::optional<qint64> time = parseDuration(text);
    if (!time) {
        return QString::fromLatin1("\"%1\": %2").arg(text, QLatin1String(kTimeExpected));
    }
    if (every && *time < kShortestEveryMs) {
        return QString::fromLatin1("\"%1\": expected 10ms or more").arg(text);
    }
    line.atMs = word == QLatin1String("at") ? *time : aboveMs + *time;
    line.everyMs = every ? *time : 0;
    line.command = rest;
    return rest.isEmpty() ? QString::fromLatin1("expected a command behind the time") : QString();
}

} // namespace

std::optional<qint64> parseDuration(const QString &text)
{
    static const struct
    {
        const char *name;
        double ms;
    } kUnits[] = {{"ms", 1}, {"s", 1000}, {"m", 60000}, {"h", 3600000}};
    const auto *const letter = std::find_if(text.begin(), text.end(), [](QChar character) {
        return character != QLatin1Char('.') &&
               (character < QLatin1Char('0') || character > QLatin1Char('9'));
    });
    const auto digits = static_cast<int>(letter - text.begin());
    for (const auto &unit : kUnits) {
        if (text.mid(digits) != QLatin1String(unit.name)) {
            continue;
        }
        bool ok = false;
        const double value = text.left(digits).toDouble(&ok) * unit.ms;
        if (ok && value <= kLongestHours * 3600000) {
            return static_cast<qint64>(value);
        }
    }
    return std::nullopt;
}

std::vector<ScriptLine> parseScript(const QStringList &lines, const ControlTarget &target,
                                    Mistakes &mistakes)
{
    std::vector<ScriptLine> script;
    Bus bus = target.bus->trial();
    ControlTarget trial;
    trial.bus = &bus;
    if (target.save) {
        trial.save = [] { return std::nullopt; };
    }
    qint64 aboveMs = 0;
    for (int i = 0; i < lines.size(); ++i) {
        if (isRemark(lines.at(i))) {
            continue;
        }
        ScriptLine line;
        line.number = i + 1;
        line.command = lines.at(i).simplified();
        QString error = readTime(line, aboveMs);
        if (error.isEmpty()) {
            error = runCommand(line.command, trial).error;
        }
        if (!error.isEmpty()) {
            mistakes.add(line.number, error);
        }
        aboveMs = line.everyMs > 0 ? aboveMs : line.atMs;
        script.push_back(line);
    }
    return script;
}

ScriptSchedule::ScriptSchedule(std::vector<ScriptLine> lines)
    : m_lines(std::move(lines))
{
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        m_due.insert({m_lines[i].atMs, i});
    }
}

std::optional<qint64> ScriptSchedule::nextMs() const
{
    return m_due.empty() ? std::nullopt : std::optional<qint64>(m_due.begin()->first);
}

std::optional<ScriptLine> ScriptSchedule::takeDue(qint64 nowMs)
{
    if (m_due.empty() || m_due.begin()->first > nowMs) {
        return std::nullopt;
    }
    const auto [dueMs, index] = *m_due.begin();
    m_due.erase(m_due.begin());
    const ScriptLine &line = m_lines[index];
    if (line.everyMs > 0) {
        const qint64 missed = (nowMs - dueMs) / line.everyMs;
        m_due.insert({dueMs + (missed + 1) * line.everyMs, index});
    }
    return line;
}

} // namespace plc
