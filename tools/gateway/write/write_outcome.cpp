#include "gateway/write/write_outcome.h"

#include "host/address/value_text.h"
#include "host/tag/tag_values.h"
#include "host/tag/value_format.h"

namespace cnet::gateway {

namespace {

using Outcome = WriteAnswer::Outcome;

QString heldText(const Tag &tag, const std::optional<ReadResult> &now)
{
    if (!now || !now->isGood()) {
        return QString();
    }
    // A bit of a word is read back from the register of bits.
    return tag.type.kind == ValueKind::Bit
               ? valuesText(now->values, true)
               : typedText(tag, readTag(tag, now->values, now->known, Quality::Good).first().value);
}

QString notSentText(const EndedWrite &ended)
{
    const Failure &failure = ended.result.failure;
    if (failure.kind == Failure::Cancelled && !ended.whyCancelled.isEmpty()) {
        return ended.whyCancelled;
    }
    return failure.isGone() ? QString::fromLatin1("station %1 does not answer; nothing was sent")
                                  .arg(ended.tag.item.station)
                            : failure.text() + QLatin1String("; nothing was sent");
}

void tellWritten(const WriteResult &result, WriteAnswer &answer)
{
    const bool isReadBack = result.now && result.now->isGood();
    answer.outcome = isReadBack ? Outcome::Taken : Outcome::NoAnswer;
    if (!isReadBack) {
        answer.reason =
            QString::fromLatin1("the PLC confirmed it, and it could not be read back (%1)")
                .arg(result.now ? result.now->failure.text() : QLatin1String("not read"));
    }
}

} // namespace

WriteAnswer refusalOf(const WriteRequest &request, const QString &reason, qint64 atMs)
{
    WriteAnswer answer;
    answer.id = request.id;
    answer.line = request.line;
    answer.tag = request.tag;
    answer.outcome = Outcome::Refused;
    answer.reason = reason;
    answer.atMs = atMs;
    answer.reply = request.reply;
    return answer;
}

WriteAnswer answerOf(const WriteRequest &request, const EndedWrite &ended, qint64 atMs)
{
    const WriteResult &result = ended.result;
    WriteAnswer answer = refusalOf(request, QString(), atMs);
    answer.isNow = heldText(ended.tag, result.now);
    switch (result.outcome) {
    case WriteOutcome::Written:
        tellWritten(result, answer);
        return answer;
    case WriteOutcome::NotSent:
        answer.reason = notSentText(ended);
        break;
    case WriteOutcome::Refused:
        answer.reason = result.failure.text();
        break;
    case WriteOutcome::Mismatch:
        answer.outcome = Outcome::NoAnswer;
        answer.reason = result.failure.text();
        break;
    case WriteOutcome::NotConfirmed:
    case WriteOutcome::Open:
        answer.outcome = Outcome::NoAnswer;
        answer.reason =
            QString::fromLatin1("it was sent and not confirmed (%1)").arg(result.failure.text());
        break;
    }
    if (ended.wasPartlyTaken && answer.outcome == Outcome::Refused) {
        answer.outcome = Outcome::NoAnswer;
        answer.reason = QLatin1String("a part of it was written, then: ") + answer.reason;
    }
    return answer;
}

} // namespace cnet::gateway
