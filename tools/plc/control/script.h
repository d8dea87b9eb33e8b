#pragma once

#include "plc/control/commands.h"
#include "plc/setup/memory_file.h"

#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace plc {

/** One line of a script: a command and when it runs. */
struct ScriptLine
{
    int number = 0;     ///< in the file, from 1
    qint64 atMs = 0;    ///< since the start of the program
    qint64 everyMs = 0; ///< above 0: again and again after this time
    QString command;
};

/**
 * Reads a script. Each line is a command with its time in front: "at 5s" counts from the start,
 * "after 200ms" from the time of the line above; "every 1s" runs it again and again, for the first
 * time a second after the line above; without any it runs together with the line above. A line with
 * "every" is none that times count from. Blank lines and comments behind "#" are left alone.
 *
 * @param mistakes receives every mistake of the file; also what its commands would be refused for
 * @param target what it is to run on; nothing happens to it
 */
std::vector<ScriptLine> parseScript(const QStringList &lines, const ControlTarget &target,
                                    Mistakes &mistakes);

/** A number and its unit, "200ms", "1.5s", "2m" or "1h", up to 1000 hours. @return milliseconds */
std::optional<qint64> parseDuration(const QString &text);

/** Which lines are due when. It has no clock. */
class ScriptSchedule
{
public:
    explicit ScriptSchedule(std::vector<ScriptLine> lines);

    /** When the next line is due; nothing if there is none any more. */
    std::optional<qint64> nextMs() const;

    /**
     * Takes the line that is due next. Repetitions that were missed are left out.
     * @return nothing if none is due at time nowMs
     */
    std::optional<ScriptLine> takeDue(qint64 nowMs);

private:
    std::vector<ScriptLine> m_lines;
    std::set<std::pair<qint64, std::size_t>> m_due; ///< time, and place in the file
};

} // namespace plc
