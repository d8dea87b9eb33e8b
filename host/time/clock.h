#pragma once

#include <QObject>

#include <memory>

namespace cnet {

constexpr qint64 kNsPerMs = 1000000;

/** A single-shot timer, to be used on its own thread. */
class Alarm : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** @param ms milliseconds from now, 0 or more; what was set before is forgotten */
    virtual void set(int ms) = 0;

    /** fired() does not follow any more; without effect where nothing is set. */
    virtual void cancel() = 0;

Q_SIGNALS:
    /** Once for each set() that was neither cancelled nor replaced; never from within set(). */
    void fired();
};

/**
 * The time, as the library takes it: handed in from outside, so that hours of a line's life can be
 * tested in seconds.
 */
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    /** Nanoseconds from any zero; never falling, whatever happens to the wall clock. */
    virtual qint64 nowNs() const = 0;

    /** For people: milliseconds since 1970 in UTC. It may jump either way. */
    virtual qint64 wallMs() const = 0;

    virtual std::unique_ptr<Alarm> makeAlarm() = 0;

    qint64 nowMs() const { return nowNs() / 1000000; }
};

} // namespace cnet
