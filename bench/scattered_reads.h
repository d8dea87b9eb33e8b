#pragma once

#include "cyclic_exchange.h"

namespace bench {

/** A screen being redrawn: each step gets 100 words spread over an area. */
class ScatteredReads
{
public:
    static constexpr int kItems = 100;

    explicit ScatteredReads(const Area &area);

    void step()
    {
        unsigned char word[2];
        for (const Place &place : m_places) {
            intf_getData(place.station, m_registerName, place.address, 1, word);
        }
    }

private:
    struct Place
    {
        int station;
        int address;
    };

    CyclicExchange m_exchange;
    QString m_registerName;
    QVector<Place> m_places;
};

} // namespace bench
