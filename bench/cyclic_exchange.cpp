#include "cyclic_exchange.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

namespace {

const int kBitsOfWord = 16;

QList<KEY_ADDRESS> keysOf(const Area &area)
{
    QList<KEY_ADDRESS> keys;
    for (int station = 1; station <= area.stations; ++station) {
        for (int word = 0; word < area.units / area.stations; word += area.blockWords) {
            keys.append(area.view == View::Words ? key(station, "D_W", word, area.blockWords)
                                                 : key(station, "D_bit", word * kBitsOfWord,
                                                       area.blockWords * kBitsOfWord));
        }
    }
    return keys;
}

} // namespace

void monitor(const Area &area)
{
    QList<KEY_ADDRESS> keys = keysOf(area);
    const int blocks = intf_addrMerge(keys);
    if (blocks * area.blockWords != area.units) {
        std::fprintf(stderr, "%d units were merged into %d blocks\n", area.units, blocks);
        std::exit(EXIT_FAILURE);
    }
}

CyclicExchange::CyclicExchange(const Area &area, quint16 flip)
    : m_answers(area.stations, area.blockWords, flip)
    , m_blocks(area.units / area.blockWords)
{
    monitor(area);
    for (int i = 0; i < 2 * m_blocks; ++i) {
        step();
    }
}

} // namespace bench
