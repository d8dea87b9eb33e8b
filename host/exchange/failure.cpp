#include "host/exchange/failure.h"

#include "host/wire/frame_words.h"

namespace cnet {

QString Failure::text() const
{
    switch (kind) {
    case Refused:
        return QLatin1String("refused: ") + refusalInWords(code);
    case NoAnswer:
        return QLatin1String("no answer");
    case BadAnswer:
        return QLatin1String("no usable answer");
    case LineDown:
        return QLatin1String("the line is down");
    case Cancelled:
        return detail.isEmpty() ? QLatin1String("cancelled") : detail;
    case Mismatch:
        return detail;
    case None:
        break;
    }
    return QString();
}

} // namespace cnet
