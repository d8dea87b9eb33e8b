#include "merge.h"

namespace bench {

namespace {

const int kStations = 8;
const int kDataRegisters = 10000;
// Coprime to the number of registers, so all of them are visited before the first one is repeated.
const int kStride = 7919;

KEY_ADDRESS keyAt(Spread spread, int index)
{
    switch (spread) {
    case Spread::Scattered:
        return key(1 + index % kStations, "D_W", index * kStride % kDataRegisters, 1);
    case Spread::Bits:
        return key(1, "D_bit", index, 1);
    case Spread::Clustered:
        break;
    }
    return key(1, "D_W", index, 1);
}

} // namespace

Merge::Merge(Spread spread, int keys, Begin begin)
{
    for (int i = 0; i < keys; ++i) {
        m_keys.append(keyAt(spread, i));
    }
    if (begin == Begin::Merged) {
        step();
    }
}

} // namespace bench
