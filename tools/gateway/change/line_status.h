#pragma once

#include <QMetaType>
#include <QString>

#include <optional>

namespace cnet::gateway {

/** How a line, or one of its stations, does. It takes the place of what was told of it before. */
struct LineStatus
{
    enum class State { Good, Bad };

    QString line;
    std::optional<int> station; ///< 0 to 31; nothing: the line itself
    State state = State::Bad;
    QString cause;   ///< why it is bad, in words; empty when it is good
    qint64 atMs = 0; ///< since when: milliseconds since 1970 in UTC
};

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::LineStatus)
