#include "host/wire/fence_frame.h"

#include "host/wire/block_check.h"
#include "host/wire/characters.h"

namespace cnet {

namespace {

const int kMostNames = 16;
static_assert(kFenceForms == kMostWordsOfRequest + kMostNames, "every form of both commands");

const char kName[] = "%DW00000";
const int kNameLength = sizeof kName - 1;

// ACK st(2) command(3) blocks(2) number of bytes(2) ... ETX BCC(2), and four characters for a word
const int kBlockAnswer = 1 + 2 + 3 + 2 + 2 + 1 + kBlockCheckLength;
// ACK st(2) command(3) blocks(2) ... ETX BCC(2), and for each name its number of bytes(2) and a
// word
const int kNamesAnswer = 1 + 2 + 3 + 2 + 1 + kBlockCheckLength;
const int kWordCharacters = 4;

QByteArray hex(int value)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(2, '0');
}

QByteArray framed(int station, const QByteArray &body)
{
    const QByteArray frame = kEnq + hex(station) + body + kEot;
    return frame + blockCheck(frame, static_cast<int>(frame.size()));
}

} // namespace

FenceFrame fenceFrame(int station, int form)
{
    const QByteArray name = hex(kNameLength) + kName;
    // A single name is the cheapest of all, and seldom asked for otherwise.
    const bool byNames = form == 0 || form > kMostWordsOfRequest;
    if (byNames) {
        const int names = form == 0 ? 1 : form - kMostWordsOfRequest + 1;
        return {framed(station, "rSS" + hex(names) + name.repeated(names)),
                kNamesAnswer + names * (2 + kWordCharacters)};
    }
    return {framed(station, "rSB" + name + hex(form)), kBlockAnswer + form * kWordCharacters};
}

} // namespace cnet
