#pragma once

/// The numbers that host and driver hand each other, by name. The functions take and return `int`,
/// and each number stays what it is, so a host may write it itself. Needs neither Qt nor another
/// header.

/// What `intf_checkAddr` and `intf_checkAddrValidity` return.
enum AddressCode {
    kAddressValid = 0,       ///< use the number that came back
    kAddressWrongKind = 1,   ///< a bit register used as words, or the reverse
    kAddressOutOfRange = 2,  ///< below the lowest address, or running past the highest
    kAddressUnknownName = 3, ///< register not listed
    kAddressMalformed = 4,   ///< the text does not fit the register's format
    kAddressWrongType = 5,   ///< data type not allowed for a 32-bit register; this driver has none
    kAddressReadOnly = 6     ///< writing to a read-only register; this driver has none
};

/// What `intf_dealRcvFrame` returns. After a bad answer the host empties the line.
enum AnswerResult {
    kAnswerUnexpected = 0, ///< no frame was out: nothing was done
    kAnswerGood = 1,       ///< taken: ask for the next frame
    kAnswerGivenUp = 2,    ///< bad, and the last try: the job is over, the next frame is another's
    kAnswerResend = 8      ///< bad: the next frame is the same one
};

/// What `intf_multiCopy` returns.
enum SeriesResult {
    kSeriesUnknownName = 0, ///< register not listed: nothing was made
    kSeriesComplete = 1,    ///< every address was made
    kSeriesClamped = 2      ///< some lie beyond the highest address and were set to it, or the
                            ///< series ended early: look at the length of what came
};

/// Intervals of `intf_multiCopy` that are no numbers of units.
enum SeriesInterval {
    kIntervalWord = -1,      ///< a word on; one unit in a bit register
    kIntervalDoubleWord = -2 ///< two words on; one unit in a bit register
};

/// The fourth text of `intf_getRegDiscription`, in decimal: how wide a unit is.
enum RegisterWidthCode {
    kWidthBit = 0,       ///< a bit or contact: its value is one byte, 0 or 1
    kWidthWord = 1,      ///< a word: its value is two bytes, the low one first
    kWidthDoubleWord = 2 ///< a double word; no register of this driver has them
};

/// The fifth text of `intf_getRegDiscription`, in decimal: what the panel may do.
enum RegisterAccessCode {
    kAccessRead = 0,      ///< show values only
    kAccessReadWrite = 1, ///< show and write them, as with every register of this driver
    kAccessWrite = 2      ///< write them only
};

/// Size in bytes of the block that the host shares with the driver; a larger one will do.
enum { kSharedBlockSize = 60117 };

/// Places in the shared block of the bytes that ask for a recipe transfer. Touch them with the
/// block's mutex held, and only one of them at a time.
enum RecipeRequestByte {
    kRecipeWriteByte = 60115, ///< the recipe buffer to the PLC
    kRecipeReadByte = 60116   ///< the PLC's values into the recipe buffer
};

/// The value of a request byte that asks; the driver sets the byte to 0 when the transfer is over.
enum { kRecipeRequested = 1 };
