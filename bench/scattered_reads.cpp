#include "scattered_reads.h"

namespace bench {

namespace {

// Prime, and larger than any area: the addresses are spread over it in no particular order.
const qint64 kStride = 1000003;

} // namespace

ScatteredReads::ScatteredReads(const Area &area)
    : m_exchange(area, 0)
    , m_registerName(QLatin1String("D_W"))
{
    const int unitsOfStation = area.units / area.stations;
    for (int i = 0; i < kItems; ++i) {
        const int address = static_cast<int>(i * kStride % unitsOfStation);
        m_places.append({1 + i % area.stations, address});
    }
}

} // namespace bench
