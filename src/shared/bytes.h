#pragma once

#include <QtCore/QByteArray>

/// Byte, bit and hexadecimal routines of the frame builders and decoders. Pure; any thread.

/// @param text  characters of an answer
/// @param pos   index of the first of two hexadecimal characters; a position outside the text
///              counts as the digit 0, and so does a character that is none
/// @return      the byte that they write, 0-255
int asc2hex(const QByteArray &text, int pos);

/// @return  the value of one character as the second digit of a byte: "0"-"9", "A"-"F" and "a"-"f"
///          as usual, the characters between "9" and "@" 10-15, everything else something in 0-15
int hexDigitValue(unsigned char character);

/// @param value  only its low 4 bits are used
/// @return       the upper-case hexadecimal character
unsigned char hexCharacter(int value);

/// @return  lo + hi * 256
int uchar2int16(unsigned char lo, unsigned char hi);

/// @return  the four bytes as one number, the first one lowest
int uchar2int32(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3);

/// @param bit  0-31; a number outside leaves `value` as it is
/// @return     `value` with that bit set when `on` is not 0, cleared when it is
int _setBitValue(int value, int bit, int on);

/// @param bit  0-31; a number outside gives 0
/// @return     1 when that bit of `value` is set, else 0
int bitOf(int value, int bit);
