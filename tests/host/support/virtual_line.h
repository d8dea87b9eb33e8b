#pragma once

#include "host/link/link.h"
#include "host/support/virtual_clock.h"

#include <plc/stations/bus.h>

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <functional>
#include <random>

namespace cnet {

/** What a virtual line does to the answers of its stations. Chances in percent. */
struct LineManners
{
    int requestMs = 5; ///< the request's way
    int lowMs = 5;     ///< an answer takes from here
    int highMs = 5;    ///< to here; each station answers in turn
    int lost = 0;      ///< requests that never arrive
    int lostAnswers = 0;
    int repeated = 0; ///< answers that come once more, at any time before the station's next
    int damaged = 0;  ///< answers with one character changed
    int cut = 0;      ///< answers that end early
    int noise = 0;    ///< bytes that are no answer before one
    int split = 0;    ///< answers that come in two parts
};

/** A line in virtual time that ends in simulated stations. */
class VirtualLine : public Link
{
    Q_OBJECT

public:
    explicit VirtualLine(VirtualClock &clock, quint32 seed = 1)
        : m_clock(clock)
        , m_random(seed)
    {}

    plc::Bus bus;
    LineManners manners;
    QHash<int, LineManners> mannersOf; ///< of single stations
    QList<QByteArray> sent;            ///< when `keepsSent`
    bool keepsSent = false;
    qint64 requests = 0;
    std::function<void(plc::Unit &unit)> beforeAnswer;       ///< a PLC goes on living
    std::function<bool(const QByteArray &request)> swallows; ///< it never arrives
    bool opensFine = true;
    bool breaksWhenUsed = false; ///< it is lost by the next send()

    void open() override
    {
        later(m_clock.nowNs() + VirtualClock::kNsPerMs, [this] {
            if (opensFine) {
                m_open = true;
                Q_EMIT opened();
            } else {
                Q_EMIT failed(QLatin1String("no such device"));
            }
        });
    }
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    QString name() const override { return QLatin1String("virtual line"); }

    void breakDown(const char *reason = "unplugged")
    {
        m_open = false;
        ++m_life;
        Q_EMIT failed(QLatin1String(reason));
    }

    void send(const QByteArray &bytes) override
    {
        ++requests;
        if (keepsSent) {
            sent.append(bytes);
        }
        const int station = bytes.mid(1, 2).toInt(nullptr, 16);
        const LineManners now = mannersOf.value(station, manners);
        if (breaksWhenUsed) {
            breaksWhenUsed = false;
            breakDown();
        }
        if (!m_open || happens(now.lost) || (swallows && swallows(bytes))) {
            return;
        }
        const int life = m_life;
        const qint64 arrivesNs = m_clock.nowNs() + now.requestMs * VirtualClock::kNsPerMs;
        later(arrivesNs, [this, bytes, station, now, life] {
            plc::Unit *const unit = bus.find(station);
            if (unit == nullptr || life != m_life) {
                return;
            }
            if (beforeAnswer) {
                beforeAnswer(*unit);
            }
            const QByteArray answer = unit->station.answer(bytes);
            if (!answer.isEmpty() && !happens(now.lostAnswers)) {
                deliver(station, answer, now);
            }
        });
    }

private:
    bool happens(int percent) { return percent > 0 && between(1, 100) <= percent; }
    int between(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, std::max(low, high))(m_random);
    }

    // The line may be gone by then.
    void later(qint64 ns, const std::function<void()> &what)
    {
        m_clock.at(ns, [self = QPointer<VirtualLine>(this), what] {
            if (self) {
                what();
            }
        });
    }

    // A station sends one thing after the other.
    void put(int station, int delayMs, const QByteArray &bytes)
    {
        qint64 &free = m_freeNs[station];
        free = std::max(free, m_clock.nowNs()) + delayMs * VirtualClock::kNsPerMs;
        const int life = m_life;
        later(free, [this, bytes, life] {
            if (m_open && life == m_life) {
                Q_EMIT received(bytes);
            }
        });
    }

    void deliver(int station, QByteArray answer, const LineManners &now)
    {
        if (happens(now.noise)) {
            put(station, 0, QByteArray(between(1, 5), '\x7f'));
        }
        if (happens(now.damaged)) {
            const int at = between(1, static_cast<int>(answer.size()) - 1);
            answer[at] = static_cast<char>(answer.at(at) == '5' ? '6' : '5');
        }
        if (happens(now.cut)) {
            answer.truncate(between(1, static_cast<int>(answer.size()) - 1));
        }
        const int parts = happens(now.split) ? between(1, static_cast<int>(answer.size())) : 0;
        put(station, between(now.lowMs, now.highMs), answer.mid(0, parts > 0 ? parts : -1));
        if (parts > 0 && parts < answer.size()) {
            put(station, between(0, 10), answer.mid(parts));
        }
        if (happens(now.repeated)) {
            put(station, between(0, now.highMs), answer);
        }
    }

    VirtualClock &m_clock;
    std::mt19937 m_random;
    bool m_open = false;
    int m_life = 0;
    QHash<int, qint64> m_freeNs; ///< when each station has sent all that it has
};

} // namespace cnet
