#pragma once

#include "host/address/address.h"

#include <QHash>
#include <QString>

namespace cnet {

/** A run of addresses of one register, as a request names it. */
struct AddressRange
{
    int station = 0;
    QString registerName;
    int start = 0;
    int count = 0;

    bool operator==(const AddressRange &other) const
    {
        return station == other.station && start == other.start && count == other.count &&
               registerName == other.registerName;
    }

    /** For messages: "D_W:100*10", and "M_bit:3.5*1" for the driver's bit 53. */
    QString text() const
    {
        const bool isBit = registerName.endsWith(QLatin1String("_bit"));
        const QString first =
            isBit ? QString::fromLatin1("%1.%2").arg(start / kBitsPerWord).arg(start % kBitsPerWord)
                  : QString::number(start);
        return QString::fromLatin1("%1:%2*%3").arg(registerName, first).arg(count);
    }
};

// Qt 5 hashes to uint, Qt 6 to size_t.
using HashValue = decltype(::qHash(0));

inline HashValue qHash(const AddressRange &range, HashValue seed = 0)
{
    const int numbers = range.station << 24 ^ range.start << 8 ^ range.count;
    return ::qHash(range.registerName, seed) ^ ::qHash(numbers, seed);
}

} // namespace cnet
