#pragma once

/// Names for the numbers that host and driver exchange. The functions take and return `int`, and
/// the values never change, so a host may also use plain numbers. Needs neither Qt nor another
/// header.

/// What `intf_checkAddr` and `intf_checkAddrValidity` return.
enum AddressCode {
    kAddressValid = 0,       ///< use the number that was returned
    kAddressWrongKind = 1,   ///< a bit register used as words, or vice versa
    kAddressOutOfRange = 2,  ///< below the lowest address, or extending past the highest
    kAddressUnknownName = 3, ///< register not listed
    kAddressMalformed = 4,   ///< the text does not fit the register's format
    kAddressWrongType = 5,   ///< data type not allowed for a 32-bit register; this driver has none
    kAddressReadOnly = 6     ///< writing to a read-only register; this driver has none
};

/// What `intf_dealRcvFrame` returns. After a bad answer the host discards what is still on the
/// line.
enum AnswerResult {
    kAnswerUnexpected = 0, ///< no frame was in flight: nothing was done
    kAnswerGood = 1,       ///< accepted: ask for the next frame
    kAnswerGivenUp = 2,    ///< bad, and the last try: the next frame belongs to another job
    kAnswerResend = 8      ///< bad: the next frame is the same one again
};

/// What `intf_multiCopy` returns.
enum SeriesResult {
    kSeriesUnknownName = 0, ///< register not listed: nothing was made
    kSeriesComplete = 1,    ///< every address was made
    kSeriesClamped = 2      ///< some lie beyond the highest address and were set to it, or the
                            ///< series ended early: check the length of the lists
};

/// Intervals of `intf_multiCopy` that are not counted in units.
enum SeriesInterval {
    kIntervalWord = -1,      ///< one word; one unit in a bit register
    kIntervalDoubleWord = -2 ///< two words; one unit in a bit register
};

/// The fourth text of `intf_getRegDiscription`, in decimal: the width of a unit.
enum RegisterWidthCode {
    kWidthBit = 0,       ///< a bit or contact: its value is one byte, 0 or 1
    kWidthWord = 1,      ///< a word: its value is two bytes, the low one first
    kWidthDoubleWord = 2 ///< a double word; no register of this driver
};

/// The fifth text of `intf_getRegDiscription`, in decimal: how the panel may access the register.
enum RegisterAccessCode {
    kAccessRead = 0,      ///< show values only
    kAccessReadWrite = 1, ///< show and write values: every register of this driver
    kAccessWrite = 2      ///< write values only
};

/// Smallest size in bytes of the block that the host shares with the driver.
enum { kSharedBlockSize = 60117 };

/// Positions in the shared block of the bytes that request a recipe transfer. Hold the block's
/// mutex while accessing them, and request only one transfer at a time.
enum RecipeRequestByte {
    kRecipeWriteByte = 60115, ///< write the recipe buffer to the PLC
    kRecipeReadByte = 60116   ///< read the PLC's values into the recipe buffer
};

/// The value that requests a transfer. The driver resets the byte to 0 when the transfer is over.
enum { kRecipeRequested = 1 };
