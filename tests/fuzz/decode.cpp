// Frames as people have them: texts, logs and bytes. The first character of an input says which.
#include "fuzz/input.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_input.h"
#include "host/decode/frame_text.h"
#include "host/wire/block_check.h"
#include "host/wire/characters.h"
#include "host/wire/frame_splitter.h"

#include <algorithm>

namespace {

using namespace fuzz;
using namespace cnet;

const int kMostFrames = 100000;

void requireField(const DecodedFrame &frame, const FrameField &field)
{
    require(!field.name.isEmpty(), "a field has a name");
    require(field.length >= 0, "a field has a length");
    require(field.fault.isEmpty() == (field.faultAt < 0), "a fault has a place");
    require(field.faultAt <= frame.bytes.size(), "a fault is in the frame");
}

void requireRange(const DecodedFrame &frame, const FrameRange &range)
{
    require(range.item.count >= 1 && range.item.count <= 255, "a range has units");
    require(range.values.isEmpty() || range.values.size() == range.item.count,
            "each unit has its value");
    require(range.values.size() == range.valueOffsets.size(), "each value has its place");
    for (int i = 0; i < range.values.size(); ++i) {
        const QByteArray digits = frame.bytes.mid(range.valueOffsets.at(i), range.isBit ? 2 : 4);
        require(digits.toInt(nullptr, 16) == range.values.at(i), "a value is where it stands");
    }
    require(!rangeText(range).isEmpty(), "a range has a text");
}

void requireFrame(const DecodedFrame &frame)
{
    int next = 0;
    for (const FrameField &field : frame.fields) {
        require(field.offset == next, "fields follow one another");
        next += field.length;
        requireField(frame, field);
    }
    require(next == frame.bytes.size(), "fields are the whole frame");
    for (const FrameRange &range : frame.ranges) {
        requireRange(frame, range);
    }
    require(frame.isGood() == frame.fault.isEmpty(), "what is wrong is explained");
    require(frame.isGood() == (frame.faultAt < 0), "what is wrong has a place");
    require(frame.faultAt <= frame.bytes.size(), "what is wrong is in the frame");
    require(frameSummary(frame).size() < 4000, "a summary is bounded");
    require(frame.isGood() == faultLine(frame).isEmpty(), "a caret is for what is wrong");
}

/** A good frame is one that the wire's own rules take; one byte changed, and it is none. */
void requireGood(const DecodedFrame &frame)
{
    if (frame.isGood() && frame.direction != FrameDirection::Request &&
        !frame.checkExpected.isEmpty()) {
        require(isWholeAnswer(frame.bytes), "a good answer is a whole one");
    }
    if (frame.isGood() && !frame.checkExpected.isEmpty()) {
        QByteArray other = frame.bytes;
        other[1] = static_cast<char>(other.at(1) ^ 1);
        require(!decodeFrame(other).isGood(), "a block check finds one wrong bit");
    }
}

void decodeAll(const QVector<QByteArray> &frames)
{
    require(frames.size() < kMostFrames, "frames are bounded");
    FrameDecoder decoder;
    for (const QByteArray &bytes : frames) {
        const DecodedFrame frame = decoder.next(bytes);
        require(frame.bytes == bytes, "a frame has its bytes");
        requireFrame(frame);
        requireGood(frame);
    }
}

void readText(const QByteArray &content)
{
    const FoundFrames found = findFrames(content);
    QVector<QByteArray> frames;
    int line = 1;
    for (const FoundFrame &frame : found.frames) {
        require(frame.line >= line, "frames come in their order");
        line = frame.line;
        frames.append(frame.bytes);
        // Without a head it is no frame, and what is shown of it may look like broken hexadecimal.
        const bool hasHead = !frame.bytes.isEmpty() && isHead(frame.bytes.at(0));
        const FoundFrames again = findFrames(visibleText(frame.bytes).toLatin1());
        require(!hasHead || again.errors.isEmpty(), "what is shown of a frame can be read");
    }
    decodeAll(frames);
    QString error;
    readBytes(QString::fromUtf8(content), error);
}

void readWire(const QByteArray &bytes)
{
    int kept = 0;
    for (const QByteArray &frame : splitFrames(bytes, Between::Keep)) {
        require(!frame.isEmpty() && frame.size() <= kMostBytesOfFrame, "a frame is bounded");
        kept += static_cast<int>(frame.size());
    }
    require(kept <= bytes.size(), "no byte comes twice");
    decodeAll(splitFrames(bytes, Between::Keep));
    const QByteArray completed = completedRequest(bytes);
    require(completedRequest(completed) == completed, "a completed request lacks nothing");
    const DecodedFrame frame = decodeFrame(completed);
    const bool printable = std::all_of(bytes.cbegin(), bytes.cend(),
                                       [](char byte) { return byte >= ' ' && byte < '\x7f'; });
    require(!printable ||
                (frame.verdict != FrameVerdict::Cut && frame.verdict != FrameVerdict::WrongCheck),
            "a completed request has its end and its block check");
    require(answerLength(frame) <= kLongestFrame, "an answer fits a frame");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const int kind = input.byte();
    if (kind == 't') {
        readText(input.rest());
    } else if (kind == 'w') {
        readWire(input.rest());
    } else {
        return -1; // not worth keeping
    }
    return 0;
}
