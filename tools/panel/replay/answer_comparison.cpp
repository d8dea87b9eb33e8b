#include "panel/replay/answer_comparison.h"

#include "host/decode/frame_decoder.h"

#include <algorithm>

namespace cnet::panel {

namespace {

AnswerChange changeOf(const DecodedFrame &recorded, const DecodedFrame &now)
{
    if (recorded.bytes == now.bytes) {
        return AnswerChange::None;
    }
    if (recorded.bytes.isEmpty() || now.bytes.isEmpty()) {
        return now.bytes.isEmpty() ? AnswerChange::Missing : AnswerChange::Unexpected;
    }
    if (!recorded.isGood() || !now.isGood()) {
        return now.isGood() ? AnswerChange::Mended : AnswerChange::Damaged;
    }
    const bool wasRefused = recorded.direction == FrameDirection::Refusal;
    const bool isRefused = now.direction == FrameDirection::Refusal;
    if (isRefused) {
        return wasRefused ? AnswerChange::OtherError : AnswerChange::Refused;
    }
    return wasRefused ? AnswerChange::Accepted : AnswerChange::Values;
}

void addValues(const FrameRange &recorded, const FrameRange &now, QVector<ChangedValue> &values)
{
    const auto count = std::min(recorded.values.size(), now.values.size());
    for (int i = 0; i < count && now.hasAddress; ++i) {
        if (recorded.values.at(i) != now.values.at(i)) {
            Item item = now.item;
            item.start += i;
            item.count = 1;
            values.append({item, now.isBit, recorded.values.at(i), now.values.at(i)});
        }
    }
}

} // namespace

const char *changeText(AnswerChange change)
{
    switch (change) {
    case AnswerChange::None:
        return "same";
    case AnswerChange::Values:
        return "other values";
    case AnswerChange::Refused:
        return "refused instead of answered";
    case AnswerChange::Accepted:
        return "answered instead of refused";
    case AnswerChange::OtherError:
        return "refused with another code";
    case AnswerChange::Missing:
        return "no answer";
    case AnswerChange::Unexpected:
        return "answered where nothing had come";
    case AnswerChange::Damaged:
        return "unusable";
    case AnswerChange::Mended:
        break;
    }
    return "usable instead of unusable";
}

AnswerComparison compareAnswers(const QByteArray &request, const QByteArray &recorded,
                                const QByteArray &now)
{
    AnswerComparison result;
    result.request = decodeFrame(request);
    const DecodedFrame *const known = result.request.isGood() ? &result.request : nullptr;
    const auto decoded = [known](const QByteArray &bytes) {
        return bytes.isEmpty() ? DecodedFrame() : decodeFrame(bytes, known);
    };
    result.recorded = decoded(recorded);
    result.now = decoded(now);
    result.change = changeOf(result.recorded, result.now);
    const auto ranges = std::min(result.recorded.ranges.size(), result.now.ranges.size());
    for (int i = 0; i < ranges && result.change == AnswerChange::Values; ++i) {
        addValues(result.recorded.ranges.at(i), result.now.ranges.at(i), result.values);
    }
    return result;
}

} // namespace cnet::panel
