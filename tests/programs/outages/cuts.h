#pragma once

#include "outages/plant.h"
#include "support/random.h"

#include <QElapsedTimer>
#include <QMap>

#include <functional>
#include <vector>

/** Cuts at random what a gateway depends on, and the gateway; each comes back after some time. */
class Cuts
{
public:
    enum class Which {
        All,
        WhileSinksAreAway ///< what does not concern broker and database, nor the history
    };

    /** @param plant must outlive this object */
    Cuts(Plant &plant, quint64 seed, Which which);

    /** Does one cut. @return what it was, for people; nothing when everything is cut */
    QString cutOne();

    /** Brings back whose time has come. @return false when something did not come back */
    bool heal();
    bool healAll();

    /** How often each has been done. */
    const QMap<QString, int> &counts() const { return m_counts; }

private:
    struct Kind
    {
        const char *name;
        int weight;
        std::function<bool()> cut; ///< @return false when there is nothing to cut
    };
    struct Down
    {
        qint64 untilMs;
        std::function<bool()> heal;
    };

    Kind killOf(const char *name, int weight, Plant::Part part);
    Kind dropOf(const char *name, int weight, Plant::Part part);
    Kind silenceOf(const char *name, int weight, Plant::Part part);
    bool hang();
    bool fillDisk();
    bool stepClock();
    void downFor(int leastMs, int mostMs, const std::function<bool()> &heal);

    Plant &m_plant;
    Random m_random;
    std::vector<Kind> m_kinds;
    std::vector<Down> m_down;
    QMap<QString, int> m_counts;
    QElapsedTimer m_clock;
    bool m_isHanging = false;
    bool m_isFull = false;
    QMap<Plant::Part, bool> m_isSilent;
};
