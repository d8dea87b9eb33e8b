#include "panel/runs/one_off.h"

#include <utility>

namespace cnet::panel {

namespace {

const int kLongestFrame = 256;
// Beside time-outs: opening a connection (5 s), and a line that is never quiet (2 s).
const int kSlackMs = 8000;

} // namespace

QVector<int> stationsOf(const QVector<Item> &items)
{
    QVector<int> stations;
    for (const Item &item : items) {
        if (!stations.contains(item.station)) {
            stations.append(item.station);
        }
    }
    return stations;
}

OneOff::OneOff(const DriverFunctions &functions, const LinkSettings &settings,
               const QVector<int> &stations, Messages &messages)
    : m_session(functions, settings, stations, messages)
{
    const auto restart = [this] { m_limit.start(limitMs()); };
    m_limit.setSingleShot(true);
    QObject::connect(&m_session.exchange(), &Exchange::sent, &m_session, restart);
    QObject::connect(&m_session.exchange(), &Exchange::ended, &m_session, restart);
    QObject::connect(&m_limit, &QTimer::timeout, &m_session, [this] {
        m_giveUp(m_session.linkLost().isEmpty() ? QLatin1String("no end was reported")
                                                : QLatin1String("the link is lost"));
    });
    QObject::connect(&m_session, &Session::stopRequested, &m_session, [this] {
        m_stopped = true;
        m_giveUp(QLatin1String("interrupted"));
    });
}

void OneOff::onGiveUp(std::function<void(const QString &)> giveUp)
{
    m_giveUp = std::move(giveUp);
}

// One exchange takes its time-out at most; after it the line may be kept quiet for two more.
int OneOff::limitMs() const
{
    const int exchanges = 4;
    return exchanges * m_session.exchange().timeoutFor(kLongestFrame, kLongestFrame) + kSlackMs;
}

int OneOff::run()
{
    m_limit.start(limitMs());
    const int exitCode = m_session.run();
    m_limit.stop();
    return exitCode;
}

} // namespace cnet::panel
