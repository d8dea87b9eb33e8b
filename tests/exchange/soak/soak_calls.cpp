#include "exchange/soak/soak_calls.h"

namespace exchange::soak {

QString Calls::text() const
{
    QString all;
    for (const Call &call : m_calls) {
        all += QString::fromLatin1("(%1 %2 %3 %4: %5)")
                   .arg(QString::number(call.device), QString::number(call.station), call.name,
                        QString::number(call.address), QString::number(call.seen));
    }
    return all.isEmpty() ? QString::fromLatin1("none") : all;
}

} // namespace exchange::soak
