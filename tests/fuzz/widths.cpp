// Registers of every width. The register table has 16-bit words and contacts only, but the routines
// take their widths from a row: a row of 8 or 32 bits must be as safe.
#include "fuzz/driver_rules.h"
#include "serviceForProtocol/address/address_merge.h"
#include "serviceForProtocol/cache/monitor_flags.h"
#include "serviceForProtocol/cache/value_read.h"
#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/exchange/bit_patch.h"
#include "serviceForProtocol/exchange/write_settle.h"
#include "serviceForProtocol/recipe/recipe_deliver.h"
#include "serviceForProtocol/request/condition_read.h"
#include "serviceForProtocol/request/panel_value_store.h"
#include "serviceForProtocol/request/write_request.h"

#include <QList>
#include <QVector>

namespace {

using namespace fuzz;

const char *const kLetters[] = {"D", "M", "TX", "Q"};

RegisterWidths widthsOf(Input &input)
{
    static const int kWidths[] = {1, 8, 16, 32};
    const int choice = input.byte();
    const RegisterWidths widths = {kWidths[choice & 3], kWidths[choice >> 2 & 3],
                                   (choice & 16) != 0};
    return widths;
}

/** Any count, but a large one only now and then. */
int countOf(Input &input)
{
    const int count = input.number();
    return count > 300 ? count % 300 : count;
}

VARIABLE itemOf(Input &input)
{
    VARIABLE item = VARIABLE();
    item.stationNo = input.below(4);
    item.regName = QString::fromLatin1(kLetters[input.below(4)]) + QLatin1String("_bit");
    item.startAddr = input.number();
    item.count = countOf(input);
    const QByteArray data = input.bytes(40);
    std::copy(data.begin(), data.end(), item.data);
    return item;
}

void decode(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    const VARIABLE item = itemOf(input);
    const int units = countOf(input);
    decodeToDataArea(widths, input.bytes(), units, input.byte(), item);
}

void patch(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    const VARIABLE item = itemOf(input);
    FRAME_PRO write = FRAME_PRO();
    write.sendLen = input.between(2, kSendBufSize);
    write.dataPos = input.byte();
    driver.frames.clear();
    driver.frames.appendBlank();
    if (input.below(8) != 0) {
        driver.frames.append(write.var) = write;
    }
    const int units = input.number();
    patchBitsIntoWrite(widths, input.bytes(), units, input.byte(), item);
    require(driver.frames.at(driver.frames.size() - 1).sendLen <= kSendBufSize,
            "a frame keeps its length");
    driver.frames.clear();
}

void deliver(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    QVector<_RCP_VAR_PRO> items;
    int offset = input.byte();
    for (int left = input.below(4); left > 0; --left) {
        _RCP_VAR_PRO item = _RCP_VAR_PRO();
        item.deviceNo = driver.deviceNo;
        item.regName = QLatin1String("D_W");
        item.startAddr = input.number();
        item.bufOffset = input.below(16) == 0 ? -input.byte() : offset;
        item.count = std::min(countOf(input), (kRecipeWords - offset) / 2); // up to four bytes each
        offset += 2 * std::max(0, item.count);
        items.append(item);
    }
    intf_setRcpAddress(items);
    driver.rcpIndex = input.below(5) - 1;
    deliverRecipeBlock(widths, input.bytes(), input.byte());
    driver.rcpIndex = 0;
}

void writeAndShow(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    const VARIABLE item = itemOf(input);
    const int most = kValueAreaSize / static_cast<int>(panelBytesPerUnit(widths));
    const int count = std::max(0, std::min(item.count, most));
    const size_t bytes = static_cast<size_t>(count) * panelBytesPerUnit(widths);
    const std::unique_ptr<unsigned char[]> values(new unsigned char[bytes]);
    std::copy_n(item.data, bytes, values.get());
    queueWrite(widths, item.stationNo, item.regName, item.startAddr, count, values.get(), 0);
    storePanelValues(widths, item.stationNo, item.regName, item.startAddr, count, values.get());
    const std::unique_ptr<unsigned char[]> shown(new unsigned char[kValueAreaSize]);
    readValues(widths, item.stationNo, QString::fromLatin1(kLetters[input.below(4)]),
               item.startAddr, item.count, shown.get());
}

void settle(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    const VARIABLE item = itemOf(input);
    settleWrite(widths, item.stationNo, item.regName, item.startAddr, item.count, input.below(2));
}

KEY_ADDRESS keyOf(Input &input)
{
    const VARIABLE item = itemOf(input);
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = item.stationNo;
    key.regName = item.regName;
    key.startAddr = item.startAddr;
    key.count = item.count;
    key.bitFlag = input.below(2) - 1;
    return key;
}

void watch(Input &input)
{
    const RegisterWidths widths = widthsOf(input);
    KEY_ADDRESS key = keyOf(input);
    markMonitored(widths, key.stationNo, QString::fromLatin1(kLetters[input.below(4)]),
                  key.startAddr, key.count);
    queueConditionRead(widths, key, 0);
    KEY_ADDRESS recipeKey = key;
    convertReadKey(key, widths);
    convertRecipeKey(recipeKey, widths);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    renewDriver();
    intf_setAddrValueChangeCallBack(&ignoreChange);
    static const char *const kProperties[] = {"7#0#0#3#60", "7#0#0#3#1", "7#0#0#3#8",
                                              "7#0#0#3#512"};
    startCommunication(kProperties[input.below(4)]);
    void (*const routines[])(Input &) = {decode, patch, deliver, writeAndShow, settle, watch};
    while (!input.atEnd()) {
        routines[input.below(6)](input);
        requireBoundedLists();
    }
    return 0;
}
