#pragma once

/// Address arithmetic on numbers that a host may choose freely. An overflow wraps around, as in the
/// registers of the panels' processors, and is never undefined.

inline int wrapAdd(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

inline int wrapSub(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

inline int wrapMul(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

/// @return  `value` without its fraction, clamped to the range of an int
inline int truncToInt(double value)
{
    if (value >= 2147483647.0) {
        return 2147483647;
    }
    return value <= -2147483648.0 ? -2147483647 - 1 : static_cast<int>(value);
}
