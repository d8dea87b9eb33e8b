#include "gateway/change/write_request.h"

namespace cnet::gateway {

QString outcomeText(WriteAnswer::Outcome outcome)
{
    switch (outcome) {
    case WriteAnswer::Outcome::Taken:
        return QLatin1String("taken");
    case WriteAnswer::Outcome::Refused:
        return QLatin1String("refused");
    case WriteAnswer::Outcome::NoAnswer:
        return QLatin1String("no answer");
    case WriteAnswer::Outcome::Superseded:
        break;
    }
    return QLatin1String("superseded");
}

} // namespace cnet::gateway
