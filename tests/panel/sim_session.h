#pragma once

#include "host/session.h"
#include "simulation/link_sim.h"

#include <QStringList>

namespace cnet {

/** A session with two simulated stations whose values stay as they are. */
class SimSession
{
public:
    explicit SimSession(Driver &driver)
        : m_link(new LinkSim({1, 2}, 0))
        , session(driver, std::unique_ptr<Link>(m_link))
    {
        for (auto &unit : m_link->bus().units()) {
            unit.second.motions.clear();
        }
        QObject::connect(&session, &Session::requestSent, &session,
                         [this](const QByteArray &frame) { frames.append(frame); });
    }

    plc::Memory &memory(int station) { return m_link->bus().find(station)->station.memory(); }

private:
    LinkSim *m_link; ///< the session's

public:
    Session session;
    QList<QByteArray> frames; ///< sent
};

} // namespace cnet
