#pragma once

#include "gateway/sinks/json_object.h"

#include <QByteArray>

#include <cmath>
#include <optional>

namespace cnet::gateway {

/** Whether the host that a node waits for is there, by what it tells of itself. */
class HostState
{
public:
    enum class Is { Unknown, Online, Offline };

    /** Another connection: what is known is of another time, or of another broker. */
    void forget() { *this = HostState(); }

    /**
     * Takes what came on the host's topic. What is older than its last word, no JSON of the right
     * form, or more than 4096 bytes, changes nothing.
     */
    void take(const QByteArray &payload)
    {
        if (payload.size() > kMostBytes) {
            return;
        }
        QString unused;
        const QJsonObject told = readJsonObject(payload, unused).value_or(QJsonObject());
        const QJsonValue online = told.value(QLatin1String("online"));
        const QJsonValue time = told.value(QLatin1String("timestamp"));
        if (!online.isBool() || !time.isDouble() || std::fabs(time.toDouble()) > kLatest) {
            return;
        }
        const auto atMs = static_cast<qint64>(time.toDouble());
        if (m_atMs && atMs < *m_atMs) {
            return;
        }
        m_atMs = atMs;
        m_is = online.toBool() ? Is::Online : Is::Offline;
    }

    Is is() const { return m_is; }

private:
    static constexpr int kMostBytes = 4096;
    static constexpr double kLatest = 9007199254740992.0; ///< exact in a JSON number

    Is m_is = Is::Unknown;
    std::optional<qint64> m_atMs; ///< of the last word that counted
};

} // namespace cnet::gateway
