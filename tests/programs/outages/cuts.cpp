#include "outages/cuts.h"

#include <algorithm>

namespace {

using Part = Plant::Part;

// Longer than the gateway waits for a broker that has confirmed nothing.
const int kLongSilenceMs = 6500;
const int kDayS = 24 * 60 * 60;

} // namespace

Cuts::Cuts(Plant &plant, quint64 seed, Which which)
    : m_plant(plant)
    , m_random(seed)
{
    m_clock.start();
    m_kinds = {
        killOf("gateway killed", 7, Part::Gateway),           killOf("PLC killed", 7, Part::Plc),
        dropOf("connection to the PLC", 9, Part::Plc),        silenceOf("PLC silent", 5, Part::Plc),
        {"clock stepped", 8, [this] { return stepClock(); }},
    };
    if (which == Which::All) {
        const std::vector<Kind> more = {
            killOf("broker killed", 8, Part::Broker),
            killOf("database killed", 4, Part::Database),
            dropOf("connection to the broker", 9, Part::Broker),
            dropOf("connection to the database", 7, Part::Database),
            silenceOf("broker silent", 7, Part::Broker),
            silenceOf("database silent", 4, Part::Database),
            {"broker hangs", 5, [this] { return hang(); }},
            {"disk full", 8, [this] { return fillDisk(); }},
        };
        m_kinds.insert(m_kinds.end(), more.begin(), more.end());
    }
}

QString Cuts::cutOne()
{
    std::vector<int> weights;
    for (const Kind &kind : m_kinds) {
        weights.push_back(kind.weight);
    }
    for (int tries = 0; tries < 200; ++tries) {
        const Kind &kind = m_kinds[m_random.weighed(weights)];
        if (kind.cut()) {
            ++m_counts[QLatin1String(kind.name)];
            return QLatin1String(kind.name);
        }
    }
    return QString();
}

void Cuts::downFor(int leastMs, int mostMs, const std::function<bool()> &heal)
{
    m_down.push_back({m_clock.elapsed() + m_random.between(leastMs, mostMs), heal});
}

bool Cuts::heal()
{
    bool isFine = true;
    const qint64 nowMs = m_clock.elapsed();
    std::vector<Down> due;
    const auto isDue = [nowMs](const Down &down) { return down.untilMs <= nowMs; };
    std::copy_if(m_down.begin(), m_down.end(), std::back_inserter(due), isDue);
    m_down.erase(std::remove_if(m_down.begin(), m_down.end(), isDue), m_down.end());
    for (const Down &down : due) {
        isFine = down.heal() && isFine;
    }
    return isFine;
}

bool Cuts::healAll()
{
    for (Down &down : m_down) {
        down.untilMs = 0;
    }
    return heal();
}

Cuts::Kind Cuts::killOf(const char *name, int weight, Part part)
{
    return {name, weight, [this, part] {
                // A gateway that ended by itself comes to light with its next start.
                if (!m_plant.isAlive(part) && part != Part::Gateway) {
                    return false;
                }
                if (part == Part::Gateway && m_isFull) {
                    return false;
                }
                m_plant.kill(part);
                downFor(0, 900, [this, part] { return m_plant.revive(part); });
                return true;
            }};
}

Cuts::Kind Cuts::dropOf(const char *name, int weight, Part part)
{
    return {name, weight, [this, part] {
                const bool isThere = m_plant.relay(part).isConnected();
                m_plant.relay(part).drop();
                return isThere;
            }};
}

Cuts::Kind Cuts::silenceOf(const char *name, int weight, Part part)
{
    return {name, weight, [this, part] {
                if (m_isSilent[part]) {
                    return false;
                }
                m_isSilent[part] = true;
                m_plant.relay(part).setSilent(true);
                const bool isLong = m_random.chance(15);
                downFor(isLong ? kLongSilenceMs : 50, isLong ? kLongSilenceMs : 1500, [this, part] {
                    m_isSilent[part] = false;
                    m_plant.relay(part).setSilent(false);
                    return true;
                });
                return true;
            }};
}

bool Cuts::hang()
{
    if (m_isHanging || !m_plant.isAlive(Part::Broker)) {
        return false;
    }
    m_isHanging = true;
    m_plant.hangBroker(true);
    downFor(50, 1200, [this] {
        m_isHanging = false;
        m_plant.hangBroker(false);
        return true;
    });
    return true;
}

bool Cuts::fillDisk()
{
    if (m_isFull || !m_plant.isAlive(Part::Gateway)) {
        return false;
    }
    m_isFull = true;
    m_plant.limitFiles(m_random.chance(40) ? 0 : m_random.below(400000));
    downFor(50, 1500, [this] {
        m_isFull = false;
        m_plant.limitFiles(-1);
        return m_plant.isAlive(Part::Gateway) || m_plant.revive(Part::Gateway);
    });
    return true;
}

bool Cuts::stepClock()
{
    return m_plant.setClock(m_random.chance(30) ? m_random.between(-3, 3)
                                                : m_random.between(-kDayS, kDayS));
}
