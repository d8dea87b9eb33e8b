#pragma once

#include <QString>

namespace cnet {

/** How the user writes an address of a register. */
enum class AddressForm {
    Plain,   ///< one number: "100"
    WordBit, ///< decimal word, ".", decimal bit 0-15: "3.5"
};

/** How wide a unit of a register is; the numbers are the driver's. */
enum class RegisterWidth {
    Bit = 0,        ///< a bit or contact
    Word = 1,       ///< 16 bits
    DoubleWord = 2, ///< 32 bits; no register of this driver has them
};

/** What may be done with a register; the numbers are the driver's. */
enum class RegisterAccess {
    Read = 0,
    ReadWrite = 1,
    Write = 2,
};

/** One register type, as the driver describes it. */
struct RegisterInfo
{
    QString name;        ///< "D_W", "M_bit", "TX"
    QString pattern;     ///< address format: "DDDD", "DDD.dd"
    QString lowestText;  ///< lowest address in that format
    QString highestText; ///< highest address in that format
    RegisterWidth width = RegisterWidth::Word;
    RegisterAccess access = RegisterAccess::ReadWrite;

    AddressForm form = AddressForm::Plain;
    int radix = 10; ///< of a plain address
    int lowest = 0; ///< as a number; word * 16 + bit in the word.bit form
    int highest = 0;

    bool isBit() const { return width == RegisterWidth::Bit; }
    /** A bit that is no bit of a word: the contacts of timers and counters. */
    bool isContact() const { return isBit() && form == AddressForm::Plain; }
    /** The device letter that word and bit names of the same memory share: "M" of "M_bit". */
    QString letter() const { return name.section(QLatin1Char('_'), 0, 0); }
};

} // namespace cnet
