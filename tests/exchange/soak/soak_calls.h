#pragma once

#include <QString>

#include <functional>
#include <utility>
#include <vector>

namespace exchange::soak {

/** One call of the driver to its host. */
struct Call
{
    int device;
    int station;
    QString name;
    int address;
    int seen; ///< what the panel saw of the place within the call; 0 where it is none
    bool operator==(const Call &other) const
    {
        return device == other.device && station == other.station && address == other.address &&
               seen == other.seen && name == other.name;
    }
};

/** Calls in their order. A host may do something within each: so may whoever looks after them. */
class Calls
{
public:
    void push(const Call &call)
    {
        m_calls.push_back(call);
        if (m_within) {
            m_within();
        }
    }
    /** @param within runs within every call */
    void setHandler(std::function<void()> within) { m_within = std::move(within); }

    void clear() { m_calls.clear(); }
    std::size_t size() const { return m_calls.size(); }
    bool operator==(const Calls &other) const { return m_calls == other.m_calls; }

    QString text() const;

private:
    std::vector<Call> m_calls;
    std::function<void()> m_within;
};

} // namespace exchange::soak
