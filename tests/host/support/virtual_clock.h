#pragma once

#include "host/time/clock.h"

#include <functional>
#include <map>
#include <utility>

namespace cnet {

/** A clock that a test moves on: what is due happens in order, as fast as it goes. */
class VirtualClock : public Clock
{
public:
    static constexpr qint64 kNsPerMs = 1000000;

    qint64 nowNs() const override { return m_nowNs; }
    qint64 wallMs() const override { return 1700000000000 + m_nowNs / kNsPerMs; }

    std::unique_ptr<Alarm> makeAlarm() override { return std::make_unique<VirtualAlarm>(*this); }

    using Ticket = std::multimap<qint64, std::function<void()>>::iterator;

    Ticket at(qint64 ns, std::function<void()> what)
    {
        return m_due.emplace(std::max(ns, m_nowNs), std::move(what));
    }
    Ticket after(qint64 ms, std::function<void()> what)
    {
        return at(m_nowNs + ms * kNsPerMs, std::move(what));
    }
    void forget(Ticket ticket) { m_due.erase(ticket); }

    /** Lets the next thing happen. @return false: nothing is due, or not until then */
    bool step(qint64 untilNs)
    {
        if (m_due.empty() || m_due.begin()->first > untilNs) {
            m_nowNs = std::max(m_nowNs, untilNs);
            return false;
        }
        m_nowNs = m_due.begin()->first;
        const std::function<void()> what = std::move(m_due.begin()->second);
        m_due.erase(m_due.begin());
        what();
        return true;
    }

    void runFor(qint64 ms)
    {
        const qint64 untilNs = m_nowNs + ms * kNsPerMs;
        while (step(untilNs)) {
        }
    }

    /** @return false when it did not become true within so many milliseconds */
    bool runUntil(const std::function<bool()> &done, qint64 ms)
    {
        const qint64 untilNs = m_nowNs + ms * kNsPerMs;
        while (!done()) {
            if (!step(untilNs)) {
                return done();
            }
        }
        return true;
    }

private:
    class VirtualAlarm : public Alarm
    {
    public:
        explicit VirtualAlarm(VirtualClock &clock)
            : m_clock(clock)
        {}
        ~VirtualAlarm() override { cancel(); }
        VirtualAlarm(const VirtualAlarm &) = delete;
        VirtualAlarm &operator=(const VirtualAlarm &) = delete;

        void set(int ms) override
        {
            cancel();
            m_set = true;
            m_ticket = m_clock.after(ms, [this] {
                m_set = false;
                Q_EMIT fired();
            });
        }

        void cancel() override
        {
            if (m_set) {
                m_clock.forget(m_ticket);
                m_set = false;
            }
        }

    private:
        VirtualClock &m_clock;
        Ticket m_ticket;
        bool m_set = false;
    };

    std::multimap<qint64, std::function<void()>> m_due;
    qint64 m_nowNs = 0;
};

} // namespace cnet
