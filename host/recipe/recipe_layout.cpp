#include "host/recipe/recipe_layout.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace cnet {

namespace {

// Cuts items so that those that touch fill blocks together, as the driver merges them.
class BlockCutter
{
public:
    explicit BlockCutter(int blockWords)
        : m_blockWords(blockWords)
    {}

    QVector<ItemBlock> cut(const Item &item)
    {
        const bool touches =
            item.station == m_station && item.reg.name == m_registerName && item.start == m_end;
        if (!touches) {
            m_used = 0;
        }
        QVector<ItemBlock> blocks;
        for (int offset = 0; offset < item.count;) {
            m_used = m_used >= m_blockWords ? 0 : m_used;
            const int count = std::min(m_blockWords - m_used, item.count - offset);
            blocks.append({offset, count});
            offset += count;
            m_used += count;
        }
        m_station = item.station;
        m_registerName = item.reg.name;
        m_end = item.start + item.count;
        return blocks;
    }

private:
    int m_blockWords;
    int m_used = 0; ///< words of the block that was begun last
    int m_station = -1;
    QString m_registerName;
    int m_end = 0;
};

} // namespace

RecipeLayout layOutRecipe(const QVector<RecipeItem> &items, const RegisterCatalog &registers,
                          int deviceNumber, int blockWords)
{
    const QStringList names = registers.names();
    const auto place = [&](int index) {
        const Item &item = items.at(index).item;
        return std::make_tuple(item.station, names.indexOf(item.reg.name), item.start);
    };
    QVector<int> order(items.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [&](int left, int right) { return place(left) < place(right); });

    RecipeLayout layout;
    BlockCutter cutter(std::max(1, blockWords));
    layout.firstWord.fill(0, items.size());
    for (const int index : std::as_const(order)) {
        const Item &item = items.at(index).item;
        layout.firstWord[index] = layout.words;
        for (const ItemBlock &block : cutter.cut(item)) {
            _RCP_VAR_PRO part{};
            part.deviceNo = deviceNumber;
            part.stationNo = item.station;
            part.regName = item.reg.name;
            part.startAddr = item.start + block.offset;
            part.count = block.count;
            part.bufOffset = layout.words + block.offset;
            layout.items.append(part);
        }
        layout.words += item.count;
    }
    return layout;
}

} // namespace cnet
