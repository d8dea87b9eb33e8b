#pragma once

#include <QByteArray>

/** Bytes as they are written in the tables: "[ENQ]01RSS01...[EOT]", "[FF]" for any other byte. */
inline QByteArray wire(const QByteArray &text)
{
    QByteArray bytes;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != '[') {
            bytes += text[i];
            continue;
        }
        const int end = static_cast<int>(text.indexOf(']', i));
        const QByteArray name = text.mid(i + 1, end - i - 1);
        const QByteArray names("ETX EOT ENQ ACK NAK");
        const QByteArray values("\x03\x04\x05\x06\x15");
        const int index = static_cast<int>(names.indexOf(name));
        if (name.size() == 3 && index >= 0) {
            bytes += values[index / 4];
        } else {
            bytes += QByteArray::fromHex(name);
        }
        i = end;
    }
    return bytes;
}
