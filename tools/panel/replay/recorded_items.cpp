#include "panel/replay/recorded_items.h"

#include "host/decode/frame_decoder.h"
#include "host/exchange/raw_exchange.h"
#include "host/time/clock.h"

#include <QHash>

#include <algorithm>

namespace cnet::panel {

namespace {

// Of a file of the largest size that asks for something else each time, this is enough.
const int kMostRows = 4000;

/** A row of values that was asked for. */
struct Row
{
    Item item;
    bool wasGood = false; ///< at least once
};

/** A request, what became of it, and when. */
struct Asked
{
    DecodedFrame request;
    bool isReading = false;
    bool wasGood = false;
    int times = 0;
    qint64 firstNs = 0;
    qint64 lastNs = 0;
};

bool isFromFirstWord(const FrameRange &range)
{
    return range.item.reg.name == QLatin1String("D_W") && range.item.start == 0;
}

// By name the driver asks for bits and contacts only. As a block it looks like any other, but it is
// sent now and then, and not in each round.
bool isSignOfLife(const Asked &asked, int mostTimes)
{
    const QVector<FrameRange> &ranges = asked.request.ranges;
    return std::all_of(ranges.cbegin(), ranges.cend(), isFromFirstWord) &&
           (asked.request.command == "rSS" || 2 * asked.times < mostTimes);
}

/** Of the requests to each station, how often the most frequent one was sent. */
QHash<int, int> mostTimesOf(const QVector<Asked> &requests)
{
    QHash<int, int> most;
    for (const Asked &asked : requests) {
        int &times = most[asked.request.station];
        times = std::max(times, asked.isReading ? asked.times : 0);
    }
    return most;
}

bool isWithin(const Item &part, const Item &whole)
{
    return part.station == whole.station && part.reg.name == whole.reg.name &&
           part.start >= whole.start && part.start + part.count <= whole.start + whole.count;
}

bool isGoodAnswer(const RecordedExchange &exchange, const DecodedFrame &request)
{
    RawAnswer answer(exchange.request.bytes);
    for (const RecordedFrame &frame : exchange.answers) {
        answer.add(frame.bytes);
    }
    const DecodedFrame decoded = decodeFrame(answer.reply().answer, &request);
    return decoded.isGood() && decoded.direction == FrameDirection::Answer;
}

/** Each request once, in the order of the line. */
QVector<Asked> requestsOf(const RecordedLine &line)
{
    QVector<Asked> all;
    QHash<QByteArray, int> places;
    for (const RecordedExchange &exchange : line.exchanges) {
        const QByteArray &bytes = exchange.request.bytes;
        if (!places.contains(bytes)) {
            places.insert(bytes, static_cast<int>(all.size()));
            Asked asked;
            asked.request = decodeFrame(bytes);
            asked.isReading = asked.request.isGood() && !asked.request.writes() &&
                              asked.request.direction == FrameDirection::Request;
            asked.firstNs = exchange.request.timeNs;
            all.append(asked);
        }
        Asked &asked = all[places.value(bytes)];
        asked.lastNs = exchange.request.timeNs;
        asked.wasGood = asked.wasGood || (asked.isReading && isGoodAnswer(exchange, asked.request));
        asked.times += exchange.isOpen ? 0 : 1;
    }
    const QHash<int, int> most = mostTimesOf(all);
    for (Asked &asked : all) {
        asked.isReading =
            asked.isReading && !isSignOfLife(asked, most.value(asked.request.station));
    }
    return all;
}

/** Each row of values once. @param leftOut receives how many are too many */
QVector<Row> rowsOf(const QVector<Asked> &requests, int &leftOut)
{
    QVector<Row> rows;
    QHash<QString, int> places;
    for (const Asked &asked : requests) {
        for (const FrameRange &range :
             asked.isReading ? asked.request.ranges : QVector<FrameRange>()) {
            const QString text = range.item.text();
            const auto known = places.constFind(text);
            if (known != places.cend()) {
                rows[*known].wasGood = rows.at(*known).wasGood || asked.wasGood;
            } else if (rows.size() < kMostRows) {
                places.insert(text, static_cast<int>(rows.size()));
                rows.append({range.item, asked.wasGood});
            } else {
                ++leftOut;
            }
        }
    }
    return rows;
}

// The greater one stands for its parts, unless it was never good.
bool isSpare(const Row &row, const QVector<Row> &rows)
{
    return std::any_of(rows.cbegin(), rows.cend(), [&row](const Row &other) {
        const bool same = &row == &other;
        const bool part = !same && isWithin(row.item, other.item) && other.wasGood;
        const bool whole = !same && isWithin(other.item, row.item) && !row.wasGood;
        return part || whole;
    });
}

} // namespace

RecordedItems recordedItems(const RecordedLine &line, Driver &driver)
{
    constexpr qint64 kLongestMs = 600000;
    RecordedItems result;
    const QVector<Asked> requests = requestsOf(line);
    for (const Asked &asked : requests) {
        if (asked.isReading && asked.times > result.rounds) {
            const qint64 ms =
                (asked.lastNs - asked.firstNs) / std::max(asked.times - 1, 1) / kNsPerMs;
            result.rounds = asked.times;
            result.mostFrequent = asked.request.bytes;
            result.intervalMs = static_cast<int>(std::clamp<qint64>(ms, 0, kLongestMs));
        }
    }
    const QVector<Row> rows = rowsOf(requests, result.leftOut);
    for (const Row &row : rows) {
        QString error;
        const auto item = parseItem(row.item.text(), 1, driver.registers(), error);
        if (!item || !driver.check(*item, Access::Read, error)) {
            ++result.leftOut;
        } else if (!isSpare(row, rows)) {
            result.items.append(*item);
            result.blockWords = std::max(result.blockWords, item->count);
        }
    }
    return result;
}

} // namespace cnet::panel
