#include "host/address/address.h"
#include "host/address/device_name.h"
#include "host/decode/frame_body.h"
#include "host/wire/characters.h"

namespace cnet {

namespace {

const int kMostBlocks = 16;
const int kLongestName = 16;
const int kLengthDigits = 2;

// Name length and name.
bool takeName(DecodedFrame &frame, FieldCursor &cursor, FrameRange &range)
{
    const int lengthAt = cursor.position();
    const auto length = cursor.takeHex(kLengthDigits, "name length");
    if (!length) {
        return false;
    }
    if (*length == 0 || *length > kLongestName) {
        cursor.fail(lengthAt, latin1(*length == 0 ? "a name has at least one character"
                                                  : "a name has at most 16 characters (a PLC "
                                                    "refuses with 0004)"));
        return false;
    }
    const int nameAt = cursor.position();
    const DeviceName name = readDeviceName(cursor.take(*length, "name"));
    if (!cursor.isFine()) {
        return false;
    }
    if (name.faultAt >= 0) {
        cursor.fail(nameAt + name.faultAt, name.fault);
        return false;
    }
    range.item = Item{frame.station, name.reg, name.address, 1};
    range.isBit = name.reg.isBit();
    if (cursor.explains()) {
        cursor.means(name.reg.name + QLatin1Char(':') + addressText(name.reg, name.address));
    }
    return true;
}

void takeNames(DecodedFrame &frame, FieldCursor &cursor)
{
    const int at = cursor.position();
    const auto blocks = cursor.takeHex(2, "blocks");
    if (!blocks) {
        return;
    }
    if (*blocks == 0 || *blocks > kMostBlocks) {
        cursor.fail(at, latin1(*blocks == 0 ? "a request has at least one block"
                                            : "a request has at most 16 blocks (a PLC refuses "
                                              "with 0003)"));
        return;
    }
    for (int i = 0; i < *blocks; ++i) {
        FrameRange range;
        const int nameAt = cursor.position() + kLengthDigits;
        if (!takeName(frame, cursor, range)) {
            return;
        }
        if (i > 0 && range.isBit != frame.ranges.constFirst().isBit) {
            cursor.fail(nameAt,
                        latin1("all names are bits or all are words (a PLC refuses with 1332)"));
            return;
        }
        if (frame.writes() && !takeValue(cursor, range)) {
            return;
        }
        frame.ranges.append(range);
    }
}

void takeBlock(DecodedFrame &frame, FieldCursor &cursor)
{
    FrameRange range;
    const int nameAt = cursor.position() + kLengthDigits;
    if (!takeName(frame, cursor, range)) {
        return;
    }
    if (range.isBit) {
        cursor.fail(nameAt + 2, latin1("a block is made of words (a PLC refuses with 0007)"));
        return;
    }
    const int at = cursor.position();
    const auto words = cursor.takeHex(2, "words");
    if (!words) {
        return;
    }
    if (*words == 0 || *words > kMostWordsOfRequest) {
        cursor.fail(at, latin1(*words == 0 ? "a request is for at least one word"
                                           : "a request is for at most 60 words (a PLC refuses "
                                             "with 1232)"));
        return;
    }
    range.item.count = *words;
    for (int i = 0; i < *words && frame.writes(); ++i) {
        if (!takeValue(cursor, range)) {
            return;
        }
    }
    frame.ranges.append(range);
}

} // namespace

void decodeRequestBody(DecodedFrame &frame, FieldCursor &cursor)
{
    if (frame.command.endsWith("SS")) {
        takeNames(frame, cursor);
    } else {
        takeBlock(frame, cursor);
    }
    if (cursor.isFine() && cursor.left() > 0) {
        const int at = cursor.position();
        cursor.take(cursor.left(), "not read");
        cursor.fail(at, latin1("more characters than the request needs (a PLC refuses with 1234)"));
    }
}

} // namespace cnet
