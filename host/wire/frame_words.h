#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet {

/** What a frame of either direction says, in words, for a trace. Never empty. */
QString frameInWords(const QByteArray &frame);

/** The error code of a refusal; nothing for any other frame. */
std::optional<int> refusalCode(const QByteArray &frame);

/** True when a frame asks a station to write. */
bool isWriteRequest(const QByteArray &frame);

/** "1132, no such device, or address outside the device". */
QString refusalInWords(int code);

/** Bytes in hexadecimal with blanks: "06 30 31". */
QString hexText(const QByteArray &bytes);

} // namespace cnet
