#include "view/simulator/fault_words.h"

#include <QCoreApplication>

namespace cnet::view {

namespace {

class Words
{
    Q_DECLARE_TR_FUNCTIONS(FaultWords)
};

const plc::FaultKindText &textOf(plc::FaultKind kind)
{
    return plc::faultKindTexts().at(static_cast<std::size_t>(kind));
}

int baseOf(plc::FaultKind kind)
{
    return kind == plc::FaultKind::Refuse ? 16 : 10;
}

QString valueText(const plc::Fault &fault)
{
    QString low = QString::number(fault.low, baseOf(fault.kind)).toUpper();
    if (fault.high == fault.low) {
        return low;
    }
    return Words::tr("%1 to %2").arg(low).arg(fault.high);
}

} // namespace

FaultWords faultWords(plc::FaultKind kind)
{
    switch (kind) {
    case plc::FaultKind::Silence:
        return {
            Words::tr("No answer"),
            Words::tr("The request is lost: a broken wire, a wrong station number, a PLC "
                      "without power. It is sent again twice; then the values stay as they were "
                      "and are marked \"no answer\", and the station counts as away until it "
                      "answers again."),
            QString()};
    case plc::FaultKind::Delay:
        return {
            Words::tr("Late answer"),
            Words::tr("The PLC is busy, or a converter slow. Values come less often and the "
                      "response times grow; an answer after the time-out is counted as late and "
                      "never taken for the answer to a later request."),
            Words::tr("Delay in milliseconds")};
    case plc::FaultKind::NoiseBefore:
        return {Words::tr("Noise before the answer"),
                Words::tr("Interference, or a transmitter that is switched on too late. The stray "
                          "bytes are skipped and the values stay good: only the frames show them."),
                Words::tr("Stray bytes")};
    case plc::FaultKind::NoiseAfter:
        return {Words::tr("Noise after the answer"),
                Words::tr("A transmitter that is switched off badly. The answer is taken, and the "
                          "next request waits until the line is quiet: only the frames show it."),
                Words::tr("Stray bytes")};
    case plc::FaultKind::Split:
        return {Words::tr("Answer in pieces"),
                Words::tr("A network converter passes on each byte by itself. The pieces are put "
                          "together and the values stay good; only the response times grow."),
                Words::tr("Milliseconds between bytes")};
    case plc::FaultKind::WrongCheck:
        return {Words::tr("Damaged answer"),
                Words::tr("A character was changed on the way, so the block check is wrong. The "
                          "answer is thrown away and the request sent again: it counts among the "
                          "wrong checks, and a damaged number is never shown."),
                QString()};
    case plc::FaultKind::WrongStation:
        return {
            Words::tr("Answer of another station"),
            Words::tr("Two stations were given each other's number, or one talks out of turn. "
                      "What it says is not taken for the station that was asked; the request is "
                      "sent again, and in the end the values are marked \"no answer\"."),
            Words::tr("Station that answers")};
    case plc::FaultKind::Refuse:
        return {
            Words::tr("Refusal"),
            Words::tr("The PLC answers, but says no with an error code: an address that it does "
                      "not have, or a request that it does not take. The values are marked "
                      "\"refused\" with the reason, and the address is left out until the line "
                      "is opened again or the PLC was away."),
            Words::tr("Error code, hexadecimal")};
    case plc::FaultKind::Truncate:
        return {Words::tr("Answer cut short"),
                Words::tr("A plug was pulled, or a buffer ran over, in the middle of an answer. "
                          "What is left counts as a bad answer and the request is sent again; half "
                          "an answer never becomes a value."),
                Words::tr("Bytes that are left")};
    case plc::FaultKind::Oversize:
        return {Words::tr("Answer too long"),
                Words::tr("More comes than was asked for. Such an answer counts as bad and the "
                          "request is sent again; nothing of it becomes a value."),
                Words::tr("Bytes of the answer")};
    case plc::FaultKind::Echo:
        return {Words::tr("Echo of the request"),
                Words::tr("A two-wire converter hears itself: each request comes back before the "
                          "answer. The echo is told apart from an answer and the values stay good: "
                          "only the frames and the line load show it."),
                QString()};
    case plc::FaultKind::Repeat:
        return {
            Words::tr("Answer comes again"),
            Words::tr("A converter sends what it has sent already. The copies are not taken for "
                      "the answer to the next request, even if that looks just the same; "
                      "readings take a little longer."),
            Words::tr("Copies")};
    }
    return {};
}

QString faultLimits(plc::FaultKind kind)
{
    const plc::FaultKindText &text = textOf(kind);
    QString low = QString::number(text.lowest, baseOf(kind)).toUpper();
    const QString high = QString::number(text.highest, baseOf(kind)).toUpper();
    return text.range ? Words::tr("%1 to %2, or a range as LOW..HIGH").arg(low, high)
                      : Words::tr("%1 to %2").arg(low, high);
}

QString faultInWords(const plc::Fault &fault)
{
    QString text = faultWords(fault.kind).name;
    const bool hasValue = *textOf(fault.kind).value != '\0' && fault.low >= 0;
    if (hasValue) {
        text += Words::tr(" (%1: %2)").arg(faultWords(fault.kind).valueName, valueText(fault));
    }
    text += fault.percent == 100 ? Words::tr(", at each request")
                                 : Words::tr(", at %1 % of the requests").arg(fault.percent);
    if (fault.times >= 0) {
        text += Words::tr(", %n more times", "", fault.times);
    }
    return text;
}

} // namespace cnet::view
