#include "host/decode/frame_decoder.h"

#include "host/decode/frame_body.h"
#include "host/wire/answer_shape.h"
#include "host/wire/block_check.h"
#include "host/wire/characters.h"

#include <algorithm>

namespace cnet {

namespace {

// Head, station, command, type
const int kTextPosition = 1;

bool isControl(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x20 || code >= 0x7f;
}

void addField(DecodedFrame &frame, int offset, int length, const char *name, const char *meaning)
{
    if (frame.detail == Detail::Summary) {
        return;
    }
    FrameField field;
    field.offset = offset;
    field.length = length;
    field.name = latin1(name);
    field.meaning = latin1(meaning);
    frame.fields.append(field);
}

void failLast(DecodedFrame &frame, FrameVerdict verdict, int at, const QString &fault)
{
    if (frame.detail == Detail::Fields) {
        frame.fields.last().fault = fault;
        frame.fields.last().faultAt = at;
    }
    judge(frame, verdict, at, fault);
}

bool takeHead(DecodedFrame &frame)
{
    const char head = frame.bytes.isEmpty() ? '\0' : frame.bytes.at(0);
    if (head == kEnq) {
        frame.direction = FrameDirection::Request;
        addField(frame, 0, 1, "ENQ", "a request begins");
    } else if (head == kAck) {
        frame.direction = FrameDirection::Answer;
        addField(frame, 0, 1, "ACK", "a positive answer begins");
    } else if (head == kNak) {
        frame.direction = FrameDirection::Refusal;
        addField(frame, 0, 1, "NAK", "a refusal begins");
    } else {
        addField(frame, 0, static_cast<int>(frame.bytes.size()), "not read", "");
        failLast(frame, FrameVerdict::NoFrame, 0,
                 latin1("a frame begins with ENQ (05), ACK (06) or NAK (15)"));
        return false;
    }
    return true;
}

// Station, command and type, which answers repeat.
bool takeAddressee(DecodedFrame &frame, FieldCursor &cursor)
{
    const int stationAt = cursor.position();
    const auto station = cursor.takeHex(2, "station");
    frame.station = station.value_or(-1);
    if (station && *station > kHighestStation) {
        cursor.fail(stationAt, latin1("the stations are 0 to 31 (1F)"));
    }
    if (!cursor.isFine()) {
        return false;
    }
    const int commandAt = cursor.position();
    const QByteArray letter = cursor.take(1, "command");
    if (!cursor.isFine()) {
        return false;
    }
    if (!QByteArray("rRwW").contains(letter.at(0))) {
        cursor.fail(commandAt, latin1("the commands are r and w, with a block check, and R and W, "
                                      "without"));
        return false;
    }
    if (cursor.explains()) {
        const bool checked = letter == "r" || letter == "w";
        cursor.means(latin1(letter == "r" || letter == "R" ? "read" : "write") +
                     latin1(checked ? ", with block check" : ", without block check"));
    }
    const QByteArray type = cursor.take(2, "type");
    if (cursor.isFine() && type != "SS" && type != "SB") {
        cursor.fail(commandAt + (type.startsWith('S') ? 2 : 1),
                    latin1("the types are SS, single names, and SB, a block of words"));
    }
    if (!cursor.isFine()) {
        return false;
    }
    if (cursor.explains()) {
        cursor.means(latin1(type == "SS" ? "single names" : "a block of words"));
    }
    frame.command = letter + type;
    return true;
}

void compareWithRequest(DecodedFrame &frame, FieldCursor &cursor, const DecodedFrame *&request)
{
    if (request == nullptr || frame.direction == FrameDirection::Request) {
        request = nullptr;
        return;
    }
    const bool otherStation = request->station != frame.station;
    if (!otherStation && request->command == frame.command) {
        return;
    }
    cursor.fail(
        otherStation ? 1 : 3,
        otherStation
            ? QString::fromLatin1("the request before it was for station %1").arg(request->station)
            : QString::fromLatin1("the request before it was %1")
                  .arg(QString::fromLatin1(request->command)),
        FrameVerdict::Mismatch);
    request = nullptr;
}

// Where the text ends: at the first character that cannot be part of it.
int endOfText(const QByteArray &bytes)
{
    const auto end = std::find_if(bytes.cbegin() + kTextPosition, bytes.cend(), isControl);
    return static_cast<int>(end - bytes.cbegin());
}

bool takeTail(DecodedFrame &frame, int at)
{
    const bool isRequest = frame.direction == FrameDirection::Request;
    const char *const name = isRequest ? "EOT" : "ETX";
    if (at == frame.bytes.size()) {
        addField(frame, at, 0, name, "");
        failLast(frame, FrameVerdict::Cut, at,
                 QString::fromLatin1("%1 is missing").arg(latin1(name)));
        return false;
    }
    if (frame.bytes.at(at) == (isRequest ? kEot : kEtx)) {
        addField(frame, at, 1, name, "the end");
        return true;
    }
    addField(frame, at, static_cast<int>(frame.bytes.size()) - at, "not read", "");
    failLast(frame, FrameVerdict::Malformed, at,
             QString::fromLatin1("expected %1 (%2) or a printable character")
                 .arg(latin1(name), latin1(isRequest ? "04" : "03")));
    return false;
}

void judgeCheck(DecodedFrame &frame, int at)
{
    const QByteArray &found = frame.checkFound;
    if (found == frame.checkExpected) {
        if (frame.detail == Detail::Fields) {
            frame.fields.last().meaning = latin1("right");
        }
        return;
    }
    const QString expected =
        QString::fromLatin1("expected %1").arg(QString::fromLatin1(frame.checkExpected));
    const bool cut = found.size() < kBlockCheckLength;
    const bool lower = found.toUpper() == frame.checkExpected;
    const int wrong = found.isEmpty() || found.at(0) != frame.checkExpected.at(0) ? 0 : 1;
    failLast(frame, cut ? FrameVerdict::Cut : FrameVerdict::WrongCheck, at + wrong,
             cut ? QLatin1String("the block check is missing; ") + expected
                 : expected + latin1(lower ? ", in upper case" : ""));
}

// Behind the tail: the block check, where the command asks for one, and nothing else.
void takeCheck(DecodedFrame &frame, int tail)
{
    const bool checked =
        frame.bytes.size() > kCommandPosition && hasBlockCheck(frame.bytes.at(kCommandPosition));
    int at = tail + 1;
    if (checked) {
        frame.checkExpected = blockCheck(frame.bytes, at);
        frame.checkFound = frame.bytes.mid(at, kBlockCheckLength);
        addField(frame, at, static_cast<int>(frame.checkFound.size()), "block check", "");
        judgeCheck(frame, at);
        at += static_cast<int>(frame.checkFound.size());
    }
    const int excess = static_cast<int>(frame.bytes.size()) - at;
    if (excess > 0) {
        addField(frame, at, excess, "not read", "");
        failLast(frame, FrameVerdict::Malformed, at,
                 latin1(checked ? "the frame ends before this"
                                : "an upper-case command has no block check"));
    }
}

void judgeLength(DecodedFrame &frame)
{
    if (frame.bytes.size() > kLongestFrame) {
        judge(frame, FrameVerdict::Malformed, kLongestFrame,
              QString::fromLatin1("a frame has at most %1 bytes, this one %2")
                  .arg(kLongestFrame)
                  .arg(frame.bytes.size()));
    }
}

} // namespace

DecodedFrame decodeFrame(const QByteArray &bytes, const DecodedFrame *request, Detail detail)
{
    DecodedFrame frame;
    frame.detail = detail;
    frame.bytes = bytes;
    if (!takeHead(frame)) {
        return frame;
    }
    const int end = endOfText(bytes);
    FieldCursor cursor(frame, kTextPosition, end);
    if (takeAddressee(frame, cursor)) {
        compareWithRequest(frame, cursor, request);
        if (frame.direction == FrameDirection::Request) {
            decodeRequestBody(frame, cursor);
        } else {
            decodeAnswerBody(frame, cursor, request);
        }
    }
    cursor.skipRest();
    if (takeTail(frame, end)) {
        takeCheck(frame, end);
    }
    judgeLength(frame);
    return frame;
}

int answerLength(const DecodedFrame &request)
{
    if (!request.isGood() || request.direction != FrameDirection::Request) {
        return kLongestFrame;
    }
    const int numberLength = 2;
    // ACK, station, command and type, ETX
    int length =
        1 + numberLength + 3 + 1 + (request.checkExpected.isEmpty() ? 0 : kBlockCheckLength);
    if (!request.writes()) {
        length += numberLength; // of blocks, and for each of them the number of bytes
        for (const FrameRange &range : request.ranges) {
            length += numberLength + range.item.count * (range.isBit ? 2 : 4);
        }
    }
    return length;
}

void FrameDecoder::noteRequest(const DecodedFrame &request)
{
    m_lastStation = request.isGood() ? request.station : -1;
    if (request.isGood()) {
        m_open.insert(request.station, request);
    } else {
        m_open.remove(request.station);
    }
}

// What another station still had to say is late; without any request there is none to compare.
const DecodedFrame *FrameDecoder::requestOf(const QByteArray &answer) const
{
    const int own = stationOf(answer);
    const auto request = m_open.constFind(m_open.contains(own) ? own : m_lastStation);
    return request == m_open.constEnd() ? nullptr : &*request;
}

DecodedFrame FrameDecoder::next(const QByteArray &bytes)
{
    const bool mayAnswer = bytes.startsWith(kAck) || bytes.startsWith(kNak);
    const DecodedFrame *const request = mayAnswer ? requestOf(bytes) : nullptr;
    DecodedFrame frame = decodeFrame(bytes, request, m_detail);
    if (frame.direction == FrameDirection::Unknown || frame.command.isEmpty()) {
        return frame;
    }
    if (frame.direction == FrameDirection::Request) {
        noteRequest(frame);
    } else if (request != nullptr && frame.verdict != FrameVerdict::Mismatch &&
               frame.station == request->station) {
        const int answered = frame.station;
        m_lastStation = m_lastStation == answered ? -1 : m_lastStation;
        m_open.remove(answered);
    }
    return frame;
}

} // namespace cnet
