#include "host/monitor/quality.h"

namespace cnet {

QString qualityText(Quality quality)
{
    switch (quality) {
    case Quality::Good:
        return QLatin1String("good");
    case Quality::Waiting:
        return QLatin1String("waiting for the PLC");
    case Quality::Implausible:
        return QLatin1String("implausible");
    case Quality::Stale:
        return QLatin1String("stale");
    case Quality::Refused:
        return QLatin1String("refused");
    case Quality::NoAnswer:
        return QLatin1String("no answer");
    case Quality::LineDown:
        return QLatin1String("line down");
    case Quality::NeverRead:
        break;
    }
    return QLatin1String("never read");
}

} // namespace cnet
