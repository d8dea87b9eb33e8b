#include "host/jobs/read_plan.h"

#include "host/address/address.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

// What a request of its own costs on the line, in words: 21 characters and 13 of the answer's
// frame.
const int kGapWords = 8;

bool comesBefore(const PlannedRead &left, const PlannedRead &right)
{
    const Item &a = left.request;
    const Item &b = right.request;
    if (a.station != b.station) {
        return a.station < b.station;
    }
    return a.reg.name != b.reg.name ? a.reg.name < b.reg.name : a.start < b.start;
}

bool joins(const Item &block, const Item &next, int blockWords)
{
    const int end = std::max(block.start + block.count, next.start + next.count);
    return !next.reg.isContact() && block.station == next.station &&
           block.reg.name == next.reg.name && next.start <= block.start + block.count + kGapWords &&
           end - block.start <= blockWords;
}

} // namespace

Item requestFor(const Item &item, const ItemBlock &block, const RegisterCatalog &registers)
{
    Item request = item;
    request.start = item.start + block.offset;
    request.count = block.count;
    const RegisterInfo *words = registers.find(item.reg.letter() + QLatin1String("_W"));
    if (item.reg.isBit() && !item.reg.isContact() && words != nullptr) {
        const int last = (request.start + request.count - 1) / kBitsPerWord;
        request.reg = *words;
        request.start /= kBitsPerWord;
        request.count = last - request.start + 1;
    }
    return request;
}

QVector<PlannedRead> planReads(const QVector<Item> &items, const RegisterCatalog &registers,
                               int blockWords, Merging merging)
{
    QVector<PlannedRead> single;
    for (int i = 0; i < items.size(); ++i) {
        for (const ItemBlock &block : blocksOf(items.at(i), blockWords)) {
            single.append({requestFor(items.at(i), block, registers), {{i, block}}});
        }
    }
    if (merging == Merging::Apart) {
        return single;
    }
    std::stable_sort(single.begin(), single.end(), comesBefore);
    QVector<PlannedRead> merged;
    for (const PlannedRead &read : std::as_const(single)) {
        if (merged.isEmpty() || !joins(merged.last().request, read.request, blockWords)) {
            merged.append(read);
            continue;
        }
        Item &block = merged.last().request;
        const int end = read.request.start + read.request.count;
        block.count = std::max(block.count, end - block.start);
        merged.last().serves += read.serves;
    }
    return merged;
}

QVector<quint16> valuesOf(const Item &item, const ItemBlock &block, const Item &request,
                          const QVector<quint16> &values)
{
    const bool fromWords = item.reg.isBit() && !item.reg.isContact() && !request.reg.isBit();
    QVector<quint16> own;
    own.reserve(block.count);
    for (int i = 0; i < block.count; ++i) {
        const int address = item.start + block.offset + i;
        if (fromWords) {
            const quint16 word = values.value(address / kBitsPerWord - request.start);
            own.append(static_cast<quint16>(word >> (address % kBitsPerWord) & 1));
        } else {
            own.append(values.value(address - request.start));
        }
    }
    return own;
}

} // namespace cnet
