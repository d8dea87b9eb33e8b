#pragma once

#include "host/driver/driver_session.h"
#include "host/exchange/exchange.h"
#include "simulation/link_sim.h"

#include <QStringList>

namespace cnet {

/** The driver, an exchange and two simulated stations whose values stay as they are. */
struct SimPanel
{
    explicit SimPanel(const DriverFunctions &functions,
                      const DriverProperties &properties = DriverProperties())
        : link({1, 2}, 0)
        , driver(functions)
        , exchange(functions, link, settings())
    {
        for (auto &unit : link.bus().units()) {
            unit.second.ramps.clear();
        }
        driver.start(properties);
        QObject::connect(&exchange, &Exchange::sent, &exchange, [this](const QByteArray &frame) {
            frames.append(QString::fromLatin1(frame.mid(1, frame.size() - 4)));
        });
    }

    void open()
    {
        exchange.start();
        link.open();
    }

    plc::Memory &memory(int station = 1) { return link.bus().find(station)->station.memory(); }
    plc::Faults &faults(int station = 1) { return link.bus().find(station)->faults; }

    static ExchangeSettings settings()
    {
        ExchangeSettings settings;
        settings.timeoutMs = 20;
        settings.quietMs = 1;
        return settings;
    }

    LinkSim link;
    DriverSession driver;
    Exchange exchange;
    QStringList frames; ///< sent, without ENQ, EOT and block check
};

} // namespace cnet
