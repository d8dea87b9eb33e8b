#pragma once

#include <QString>

#include <functional>

namespace cnet {

/** How many drivers may be loaded at a time in one process. */
constexpr int kMostDrivers = 256;

/**
 * A change callback of one driver's own.
 *
 * The driver's callback carries no user pointer, so each copy of the library that is loaded needs a
 * function of its own to tell whose values changed. Not for several threads.
 */
class ChangeSlot
{
public:
    /** The type of the driver's callback. */
    using Function = int (*)(int deviceNo, int stationNo, QString &name, int address);
    using Handler = std::function<void(int station, const QString &name, int address)>;

    ChangeSlot();
    ~ChangeSlot();
    ChangeSlot(const ChangeSlot &) = delete;
    ChangeSlot &operator=(const ChangeSlot &) = delete;

    /** What the driver is to call; nullptr when kMostDrivers are taken. */
    Function function() const;

    /** Called from within the driver: it may read values and must not touch the exchange. */
    void setHandler(Handler handler);

private:
    int m_number;
};

} // namespace cnet
