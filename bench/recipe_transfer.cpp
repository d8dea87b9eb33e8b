#include "recipe_transfer.h"

#include "answers.h"

namespace bench {

namespace {

// A panel's recipe page; adjacent items are merged into blocks.
const int kItemWords = 4;

} // namespace

RecipeTransfer::RecipeTransfer(Direction direction)
    : m_request(direction == Direction::ToStation ? m_host.recipeWriteRequest()
                                                  : m_host.recipeReadRequest())
    , m_written(writeAnswer(1, "wSB"))
    , m_block(readAnswer(1, QVector<quint16>(Host::kBlockWords, 0x1234)))
    , m_rest(readAnswer(1, QVector<quint16>(kWords % Host::kBlockWords, 0x1234)))
{
    QVector<_RCP_VAR_PRO> items;
    for (int word = 0; word < kWords; word += kItemWords) {
        _RCP_VAR_PRO item{};
        item.deviceNo = Host::kDevice;
        item.stationNo = 1;
        item.regName = QLatin1String("D_W");
        item.startAddr = word;
        item.count = kItemWords;
        item.bufOffset = word;
        items.append(item);
    }
    intf_setRcpAddress(items);
}

// The driver keeps its recipe when communication is restarted.
RecipeTransfer::~RecipeTransfer()
{
    QVector<_RCP_VAR_PRO> none;
    intf_setRcpAddress(none);
}

} // namespace bench
