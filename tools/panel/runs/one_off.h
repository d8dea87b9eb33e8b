#pragma once

#include "host/address/item.h"
#include "panel/runs/command_session.h"

#include <QTimer>

#include <functional>

namespace cnet::panel {

/** The stations of a list of items, each once. */
QVector<int> stationsOf(const QVector<Item> &items);

/**
 * A session of a command that does one thing and ends, with a limit to waiting: it ends by itself
 * when nothing was sent or answered for a while, as when the link is lost for good or the driver
 * owes a report that never comes.
 */
class OneOff
{
public:
    OneOff(const DriverFunctions &functions, const LinkSettings &settings,
           const QVector<int> &stations, Messages &messages);
    OneOff(const OneOff &) = delete;
    OneOff &operator=(const OneOff &) = delete;

    Session &session() { return m_session; }

    /**
     * @param giveUp called with the reason when waiting is over, or when the user asks for the end.
     * It is to end the session.
     */
    void onGiveUp(std::function<void(const QString &reason)> giveUp);

    /** True when giving up was asked for by the user, and not by the limit. */
    bool isStopped() const { return m_stopped; }

    /** Opens the link and runs until the session is finished. @return its exit code */
    int run();

private:
    int limitMs() const;

    Session m_session;
    QTimer m_limit;
    bool m_stopped = false;
    std::function<void(const QString &reason)> m_giveUp;
};

} // namespace cnet::panel
