#include "plc/replay/recorded_values.h"

#include "plc/wire/device_name.h"
#include "plc/wire/request.h"

namespace plc {

namespace {

// head st(2) command type(2) ETX
constexpr int kEnvelopeBytes = 7;
constexpr int kHeaderAt = 1;
constexpr int kHeaderBytes = 5;
constexpr int kBodyAt = kHeaderAt + kHeaderBytes;

/** Characters of a frame before its block check. */
int checkedBytes(const QByteArray &request, const QByteArray &answer)
{
    return static_cast<int>(answer.size()) -
           (wantsBlockCheck(request.at(kHeaderAt + 2)) ? kBlockCheckBytes : 0);
}

/** The values of one item, in the order of its addresses. */
bool takeValues(FieldReader &reader, const Item &item, int station,
                std::vector<RecordedValue> &values)
{
    const int digits = isBitType(item.first.kind) ? 2 : 4;
    const std::optional<int> bytes = reader.takeHex(2);
    if (!bytes || *bytes != item.count * digits / 2) {
        return false;
    }
    for (int i = 0; i < item.count; ++i) {
        const std::optional<int> value = reader.takeHex(digits);
        if (!value) {
            return false;
        }
        values.push_back({station,
                          {item.first.device, item.first.kind, item.first.address + i},
                          static_cast<quint16>(*value)});
    }
    return true;
}

std::vector<RecordedValue> valuesOfRead(const Request &request, int station, const QByteArray &body)
{
    std::vector<RecordedValue> values;
    FieldReader reader(body);
    if (reader.takeHex(2) != static_cast<int>(request.items.size())) {
        return {};
    }
    for (const Item &item : request.items) {
        if (!takeValues(reader, item, station, values)) {
            return {};
        }
    }
    return reader.atEnd() ? values : std::vector<RecordedValue>();
}

std::vector<RecordedValue> valuesOfWrite(const Request &request, int station)
{
    std::vector<RecordedValue> values;
    for (const Item &item : request.items) {
        Point point = item.first;
        for (const quint16 value : item.data) {
            values.push_back({station, point, value});
            ++point.address;
        }
    }
    return values;
}

} // namespace

bool isAnswerTo(const QByteArray &request, const QByteArray &answer)
{
    if (answer.size() < kEnvelopeBytes || !openEnvelope(request) ||
        (answer.at(0) != kAck && answer.at(0) != kNak) ||
        answer.mid(kHeaderAt, kHeaderBytes) != request.mid(kHeaderAt, kHeaderBytes)) {
        return false;
    }
    const int end = checkedBytes(request, answer);
    return end >= kEnvelopeBytes && answer.at(end - 1) == kEtx &&
           (end == answer.size() || answer.mid(end) == blockCheck(answer.left(end)));
}

std::vector<RecordedValue> recordedValues(const QByteArray &request, const QByteArray &answer)
{
    if (!isAnswerTo(request, answer) || answer.at(0) != kAck) {
        return {};
    }
    const std::optional<Envelope> envelope = openEnvelope(request);
    const auto wanted = readRequest(*envelope);
    const Request *const good = std::get_if<Request>(&wanted);
    if (!good) {
        return {};
    }
    if (good->service == Service::WriteSingle || good->service == Service::WriteBlock) {
        return valuesOfWrite(*good, envelope->station);
    }
    const int bodyBytes = checkedBytes(request, answer) - 1 - kBodyAt;
    return valuesOfRead(*good, envelope->station, answer.mid(kBodyAt, bodyBytes));
}

} // namespace plc
