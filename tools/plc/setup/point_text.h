#pragma once

#include "plc/memory/point.h"
#include "plc/setup/text_error.h"

#include <QString>

#include <optional>

namespace plc {

/** Words are given as whole numbers with or without a sign. */
constexpr int kHighestWord = 0xFFFF;
constexpr int kLowestWord = -0x8000;

/** Consecutive addresses of one station or of all. */
struct Range
{
    int station = -1; ///< negative: all stations
    Point first;
    int count = 1; ///< 1 or more
};

/**
 * Parses a register and an address, in the notation of the panel: "D_W:100", "M_bit:3.5", "TX:7".
 * Word registers are D_W C_W T_W K_W P_W F_W L_W M_W. The bits of a word, written WORD.BIT with
 * both numbers decimal, are D_bit K_bit P_bit F_bit L_bit M_bit. Contacts are TX and CX.
 */
Parsed<Point> parsePoint(const QString &text);

/** "[STATION/]REGISTER:FIRST", "...:FIRST-LAST" or "...:FIRST*COUNT". */
Parsed<Range> parseRange(const QString &text);

/** As parsePoint() takes it. */
QString pointText(const Point &point);

/** As parseRange() takes it: "2/D_W:100-119". */
QString rangeText(const Range &range);

/** A whole number without sign, of decimal digits only. */
std::optional<int> parseDigits(const QString &text);

/** A whole number with an optional sign, or hexadecimal behind "0x". */
std::optional<qint64> parseNumber(const QString &text);

} // namespace plc
