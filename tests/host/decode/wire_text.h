#pragma once

#include "host/support/frames.h"

#include <host/text/byte_text.h>

namespace cnet {

/** "<ENQ>01rSB08%DW0010005<EOT>EF"; "??" at the end stands for the right block check. */
inline QByteArray wireText(const char *text)
{
    QByteArray bytes = readEscapedText(QString::fromLatin1(text)).bytes;
    if (bytes.endsWith("??")) {
        bytes.chop(2);
        bytes = checkedFrame(bytes);
    }
    return bytes;
}

} // namespace cnet
