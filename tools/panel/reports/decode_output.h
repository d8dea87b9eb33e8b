#pragma once

#include "host/decode/decoded_frame.h"

#include <QByteArray>
#include <QJsonObject>

namespace cnet::panel {

/** A frame and its fields on lines of their own, with a caret below what is wrong. */
QByteArray decodedText(const DecodedFrame &frame);

/** The same as an object. */
QJsonObject decodedJson(const DecodedFrame &frame);

} // namespace cnet::panel
