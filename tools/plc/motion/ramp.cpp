#include "plc/motion/ramp.h"

#include <algorithm>

namespace plc {

void Ramp::advance(Memory &memory, qint64 nowMs)
{
    const qint64 step = std::max<qint64>(nowMs, 0) / std::max(stepMs, 1);
    if (step == current) {
        return;
    }
    current = step;
    const qint64 span = std::max(high - low, 0) + 1;
    for (int i = 0; i < count; ++i) {
        const Point point{first.device, first.kind, first.address + i};
        if (!memory.setValue(point, static_cast<quint16>(low + (step + i) % span))) {
            return;
        }
    }
}

} // namespace plc
