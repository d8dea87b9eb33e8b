#include "host/address/value_text.h"
#include "host/decode/frame_body.h"
#include "host/wire/frame_words.h"

namespace cnet {

namespace {

const int kBytesPerWord = 2;
const int kWordDigits = 4;
const int kBitDigits = 2;

QString valueMeaning(const FrameRange &range)
{
    const int last = static_cast<int>(range.values.size()) - 1;
    const QString value = valueText(range.values.last(), range.isBit);
    return range.hasAddress ? QString::fromLatin1("%1:%2 = %3")
                                  .arg(range.item.reg.name, range.item.addressText(last), value)
                            : value;
}

// Of an answer whose request is not known, one byte is a bit.
FrameRange rangeFor(const DecodedFrame &frame, const DecodedFrame *request, int block, int bytes)
{
    FrameRange range;
    if (request != nullptr && block < request->ranges.size()) {
        range = request->ranges.at(block);
        range.values.clear();
        range.valueOffsets.clear();
        return range;
    }
    range.item.station = frame.station;
    range.hasAddress = false;
    range.isBit = bytes == 1;
    range.item.count = range.isBit ? 1 : bytes / kBytesPerWord;
    return range;
}

// Number of bytes, and so many of data.
bool takeData(DecodedFrame &frame, FieldCursor &cursor, const DecodedFrame *request, int block)
{
    const int at = cursor.position();
    const auto bytes = cursor.takeHex(2, "bytes");
    if (!bytes) {
        return false;
    }
    FrameRange range = rangeFor(frame, request, block, *bytes);
    const int values = range.isBit ? *bytes : *bytes / kBytesPerWord;
    const bool single = frame.command.endsWith("SS");
    if (*bytes == 0 || (!range.isBit && *bytes % kBytesPerWord != 0) ||
        (single && values != 1 && request == nullptr)) {
        cursor.fail(at, latin1(single ? "a block has 1 byte for a bit or 2 for a word"
                                      : "data are words of 2 bytes, at least one"));
        return false;
    }
    if (values != range.item.count) {
        cursor.fail(at,
                    QString::fromLatin1("the request was for %1, this has %2")
                        .arg(counted(range.item.count, range.isBit ? "bit" : "word"))
                        .arg(values),
                    FrameVerdict::Mismatch);
        range.item.count = values;
    }
    range.values.reserve(values);
    range.valueOffsets.reserve(values);
    for (int i = 0; i < values; ++i) {
        if (!takeValue(cursor, range)) {
            return false;
        }
    }
    frame.ranges.append(range);
    return true;
}

// The larger CPUs leave the number of blocks out of this answer.
bool hasBlocksField(const FieldCursor &cursor, const DecodedFrame &frame)
{
    const QByteArray text = frame.bytes.mid(cursor.position(), cursor.left());
    bool ok = false;
    const int first = text.left(2).toInt(&ok, 16);
    return !ok || text.size() != 2 + 2 * first;
}

void takeBlocks(DecodedFrame &frame, FieldCursor &cursor, const DecodedFrame *request)
{
    int expected = request != nullptr ? static_cast<int>(request->ranges.size()) : 0;
    int blocks = 1;
    if (frame.command.endsWith("SS") || hasBlocksField(cursor, frame)) {
        const int at = cursor.position();
        const auto number = cursor.takeHex(2, "blocks");
        if (!number) {
            return;
        }
        blocks = *number;
        if (blocks == 0 || (frame.command.endsWith("SB") && blocks != 1)) {
            cursor.fail(at, latin1(blocks == 0 ? "an answer has at least one block"
                                               : "the answer to SB has one block"));
            return;
        }
        if (expected > 0 && blocks != expected) {
            cursor.fail(at,
                        QString::fromLatin1("the request was for %1, this has %2")
                            .arg(counted(expected, "block"))
                            .arg(blocks),
                        FrameVerdict::Mismatch);
        }
    }
    for (int i = 0; i < blocks; ++i) {
        if (!takeData(frame, cursor, request, i)) {
            return;
        }
    }
}

void takeErrorCode(DecodedFrame &frame, FieldCursor &cursor)
{
    frame.errorCode = cursor.takeHex(4, "error code");
    if (frame.errorCode) {
        cursor.means(refusalInWords(*frame.errorCode));
    }
}

} // namespace

bool takeValue(FieldCursor &cursor, FrameRange &range)
{
    const int at = cursor.position();
    const auto value = cursor.takeHex(range.isBit ? kBitDigits : kWordDigits, "data");
    if (!value) {
        return false;
    }
    if (range.isBit && *value > 1) {
        cursor.fail(at, latin1("a bit is 00 or 01"));
        return false;
    }
    range.values.append(static_cast<quint16>(*value));
    range.valueOffsets.append(at);
    if (cursor.explains()) {
        cursor.means(valueMeaning(range));
    }
    return true;
}

void decodeAnswerBody(DecodedFrame &frame, FieldCursor &cursor, const DecodedFrame *request)
{
    if (frame.direction == FrameDirection::Refusal) {
        takeErrorCode(frame, cursor);
    } else if (!frame.writes()) {
        takeBlocks(frame, cursor, request);
    }
    if (cursor.isFine() && cursor.left() > 0) {
        const int at = cursor.position();
        cursor.take(cursor.left(), "not read");
        cursor.fail(at, latin1("more characters than the answer needs"));
    }
}

} // namespace cnet
