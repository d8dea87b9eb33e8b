#pragma once

#include "view/simulator/simulator_page.h"
#include "view/support/watched_line.h"

namespace cnet::view {

constexpr int kStation = 1;

/** The page of the simulator, and its line from the other side. */
class SimulatedLine : protected WatchedLine
{
protected:
    void begin()
    {
        m_page.reset();
        WatchedLine::begin();
        m_page = std::make_unique<SimulatorPage>(*m_line);
        m_simulator = &m_page->simulator();
    }
    int read() const { return m_tags->state(0).values.at(0).value; }

    std::unique_ptr<SimulatorPage> m_page;
    Simulator *m_simulator = nullptr;
};

} // namespace cnet::view
