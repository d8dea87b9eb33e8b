#include "plc/faults/fault_kinds.h"

#include "plc/wire/wire.h"

namespace plc {

namespace {

constexpr int kMaxDelayMs = 600000;
constexpr int kMaxNoiseBytes = 1000;
constexpr int kMaxGapMs = 10000;
constexpr int kMaxAnswerBytes = 4096;
constexpr int kMaxCode = 0xFFFF;

} // namespace

const std::array<FaultKindText, kFaultKinds> &faultKindTexts()
{
    static const std::array<FaultKindText, kFaultKinds> table = {{
        {FaultKind::Silence, "silence", "", 0, 0, false,
         "the request is lost: not carried out, not answered", ""},
        {FaultKind::Delay, "delay", "MS[..MS]", 0, kMaxDelayMs, true, "the answer is late", "500"},
        {FaultKind::NoiseBefore, "noise-before", "BYTES[..BYTES]", 0, kMaxNoiseBytes, true,
         "random bytes before the answer", "1..8"},
        {FaultKind::NoiseAfter, "noise-after", "BYTES[..BYTES]", 0, kMaxNoiseBytes, true,
         "random bytes after the answer", "1..8"},
        {FaultKind::Split, "split", "MS[..MS]", 0, kMaxGapMs, true,
         "the answer comes byte by byte, MS apart", "1"},
        {FaultKind::WrongCheck, "wrong-check", "", 0, 0, false,
         "the block check of the answer, if any, is wrong", ""},
        {FaultKind::WrongStation, "wrong-station", "STATION", 0, kMaxStation, false,
         "the station number is wrong", "the next one"},
        {FaultKind::Refuse, "refuse", "CODE", 0, kMaxCode, false,
         "refused with this hexadecimal code", "1132"},
        {FaultKind::Truncate, "truncate", "BYTES[..BYTES]", 0, kMaxFrameBytes, true,
         "only the first bytes of the answer come; with 0 none, but the\n"
         "request is carried out",
         "a random part"},
        {FaultKind::Oversize, "oversize", "BYTES[..BYTES]", 0, kMaxAnswerBytes, true,
         "zeros make the answer this long", "300"},
        {FaultKind::Echo, "echo", "", 0, 0, false, "the request comes back before the answer", ""},
        {FaultKind::Repeat, "repeat", "COPIES[..COPIES]", 1, kMaxCopies, true,
         "copies of the answer follow it at once", "1"},
    }};
    return table;
}

QString faultName(FaultKind kind)
{
    return QLatin1String(faultKindTexts()[static_cast<std::size_t>(kind)].name);
}

} // namespace plc
