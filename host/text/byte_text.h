#pragma once

#include <QByteArray>
#include <QString>

namespace cnet {

/** Bytes that were read from a text, or why they could not be. */
struct ByteText
{
    QByteArray bytes;
    int column = 0; ///< of what is wrong, from 1; 0: nothing is
    QString error;

    bool isFine() const { return column == 0; }
};

/**
 * Reads hexadecimal bytes: two digits each, with or without blanks, commas, semicolons, colons and
 * dashes between them, "0x" before them; one digit where "0x" stands before it.
 */
ByteText readHexText(const QString &text);

/** Reads text in which "\x05" (also "\r", "\n", "\t" and "\\") and "<ENQ>" stand for bytes. */
ByteText readEscapedText(const QString &text);

} // namespace cnet
