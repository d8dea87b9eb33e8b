#pragma once

#include <QMetaType>
#include <QString>

namespace cnet {

/** Why a request came to nothing. */
struct Failure
{
    enum Kind {
        None,
        Refused,   ///< the station said no; `code` tells why
        NoAnswer,  ///< nothing came
        BadAnswer, ///< something came that could not be used
        LineDown,  ///< the line is not open
        Cancelled, ///< somebody wanted it no more
        Mismatch,  ///< what was read back is not what was written
    };

    Kind kind = None;
    int code = 0;      ///< of Refused: the PLC's error code
    bool sent = false; ///< the request went out, so a PLC may have carried it out
    QString detail;    ///< of Mismatch and Cancelled: what is to be known besides

    bool isNone() const { return kind == None; }

    /** In words: "no answer", "refused: 1132, no such device, or address outside the device". */
    QString text() const;

    /** True when the station was given up, so that asking it more is of no use now. */
    bool isGone() const { return kind == NoAnswer || kind == BadAnswer; }

    bool operator==(const Failure &other) const
    {
        return kind == other.kind && code == other.code && sent == other.sent &&
               detail == other.detail;
    }
    bool operator!=(const Failure &other) const { return !(*this == other); }
};

} // namespace cnet

Q_DECLARE_METATYPE(cnet::Failure)
