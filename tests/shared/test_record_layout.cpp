#include <cstddef>
#include <cstring>
#include <type_traits>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/records.h"
#include "shared/data_record.h"
#include "shared/protocol.h"
#include "support/key_text.h"

// A host may declare these records by itself, so every offset is part of the interface. Text is one
// pointer wide in Qt 4 and 5 and three in Qt 6; the panels' processors have 32-bit pointers, the
// development machines 64-bit ones.
static constexpr bool kWidePointers = sizeof(void *) == 8;
static constexpr bool kWideTexts = sizeof(QString) == 3 * sizeof(void *);

static_assert(sizeof(int) == 4, "the records hold 32-bit numbers");
static_assert(kWidePointers || sizeof(void *) == 4, "pointers of 32 or 64 bits");
static_assert(kWideTexts || sizeof(QString) == sizeof(void *), "texts of one or three pointers");

static constexpr std::size_t ofThisBuild(std::size_t narrowText32, std::size_t narrowText64,
                                         std::size_t wideText32, std::size_t wideText64)
{
    return kWideTexts ? (kWidePointers ? wideText64 : wideText32)
                      : (kWidePointers ? narrowText64 : narrowText32);
}

#define FIELD(record, field, ...)                                          \
    static_assert(offsetof(record, field) == ofThisBuild(__VA_ARGS__),     \
                  "offset of " #field " in " #record);                     \
    static_assert(std::is_standard_layout<decltype(record::field)>::value, \
                  "a host can declare " #field)
#define SIZE(record, ...)                                                          \
    static_assert(sizeof(record) == ofThisBuild(__VA_ARGS__), "size of " #record); \
    static_assert(std::is_standard_layout<record>::value, "a host can declare " #record)

// clang-format off
//    record        field            Qt 4 and 5      Qt 6
//                                   32     64       32     64
FIELD(VARIABLE,     opKind,             0,     0,       0,     0);
FIELD(VARIABLE,     stationNo,          4,     4,       4,     4);
FIELD(VARIABLE,     regName,            8,     8,       8,     8);
FIELD(VARIABLE,     startAddr,         12,    16,      20,    32);
FIELD(VARIABLE,     count,             16,    20,      24,    36);
FIELD(VARIABLE,     data,              20,    24,      28,    40);
SIZE (VARIABLE,                      1044,  1048,    1052,  1064);

FIELD(KEY_ADDRESS,  keyText,            0,     0,       0,     0);
FIELD(KEY_ADDRESS,  keyA,               4,     8,      12,    24);
FIELD(KEY_ADDRESS,  keyB,               8,    12,      16,    28);
FIELD(KEY_ADDRESS,  stationNo,         12,    16,      20,    32);
FIELD(KEY_ADDRESS,  regName,           16,    24,      24,    40);
FIELD(KEY_ADDRESS,  addrText,          20,    32,      36,    64);
FIELD(KEY_ADDRESS,  startAddr,         24,    40,      48,    88);
FIELD(KEY_ADDRESS,  bitFlag,           28,    44,      52,    92);
FIELD(KEY_ADDRESS,  count,             32,    48,      56,    96);
FIELD(KEY_ADDRESS,  data,              36,    52,      60,   100);
SIZE (KEY_ADDRESS,                   1060,  1080,    1084,  1128);

FIELD(FRAME_PRO,    sendBuf,            0,     0,       0,     0);
FIELD(FRAME_PRO,    sendLen,         1024,  1024,    1024,  1024);
FIELD(FRAME_PRO,    recvLen,         1028,  1028,    1028,  1028);
FIELD(FRAME_PRO,    dataPos,         1032,  1032,    1032,  1032);
FIELD(FRAME_PRO,    unitCount,       1036,  1036,    1036,  1036);
FIELD(FRAME_PRO,    spare,           1040,  1040,    1040,  1040);
FIELD(FRAME_PRO,    var,             1044,  1048,    1044,  1048);
SIZE (FRAME_PRO,                     2088,  2096,    2096,  2112);

FIELD(_RCP_VAR_PRO, deviceNo,           0,     0,       0,     0);
FIELD(_RCP_VAR_PRO, stationNo,          4,     4,       4,     4);
FIELD(_RCP_VAR_PRO, regName,            8,     8,       8,     8);
FIELD(_RCP_VAR_PRO, startAddr,         12,    16,      20,    32);
FIELD(_RCP_VAR_PRO, count,             16,    20,      24,    36);
FIELD(_RCP_VAR_PRO, bufOffset,         20,    24,      28,    40);
FIELD(_RCP_VAR_PRO, reserved,          24,    28,      32,    44);
SIZE (_RCP_VAR_PRO,                    28,    32,      36,    48);

FIELD(_DATA_,       spareFlag,          0,     0,       0,     0);
FIELD(_DATA_,       writePending,       1,     1,       1,     1);
FIELD(_DATA_,       pendingBits,        4,     4,       4,     4);
FIELD(_DATA_,       monitorFlags,       8,     8,       8,     8);
FIELD(_DATA_,       bitMonitorFlags,   12,    12,      12,    12);
FIELD(_DATA_,       stationNo,         16,    16,      16,    16);
FIELD(_DATA_,       regPrefix,         20,    24,      20,    24);
FIELD(_DATA_,       unitAddr,          24,    32,      32,    48);
FIELD(_DATA_,       readValue,         28,    36,      36,    52);
FIELD(_DATA_,       writeValue,        32,    40,      40,    56);
SIZE (_DATA_,                          36,    48,      44,    64);
// clang-format on

static_assert(sizeof(VARIABLE().data) == 1024 && sizeof(KEY_ADDRESS().data) == 1024 &&
                  sizeof(FRAME_PRO().sendBuf) == 1024,
              "value and send areas");
static_assert(sizeof(_DATA_().readValue) == 4 && sizeof(_DATA_().writeValue) == 4, "unit values");

static void fill(unsigned char *area, int size, int seed)
{
    for (int i = 0; i < size; ++i) {
        area[i] = static_cast<unsigned char>(i * 7 + seed);
    }
}

static VARIABLE filledItem()
{
    VARIABLE item = VARIABLE();
    item.opKind = 1;
    item.stationNo = 2;
    item.regName = QLatin1String("M_bit");
    item.startAddr = 3;
    item.count = 4;
    fill(item.data, kValueAreaSize, 5);
    return item;
}

static bool isCopyOf(const VARIABLE &copy, const VARIABLE &item)
{
    return copy.opKind == item.opKind && copy.stationNo == item.stationNo &&
           copy.regName == item.regName && copy.startAddr == item.startAddr &&
           copy.count == item.count && std::memcmp(copy.data, item.data, sizeof(item.data)) == 0;
}

class TestRecordLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyRecordIsAllZero()
    {
        const FRAME_PRO frame = FRAME_PRO();
        const KEY_ADDRESS key = KEY_ADDRESS();
        const _DATA_ record = _DATA_();
        const unsigned char nothing[kSendBufSize] = {};

        QCOMPARE(std::memcmp(frame.sendBuf, nothing, sizeof(frame.sendBuf)), 0);
        QCOMPARE(numbersText(frame), latin("0 0 0 0 0"));
        QVERIFY(isCopyOf(frame.var, VARIABLE()));
        QVERIFY(frame.var.regName.isNull());
        QCOMPARE(std::memcmp(key.data, nothing, sizeof(key.data)), 0);
        QCOMPARE(key.keyA | key.keyB | key.stationNo | key.startAddr | key.bitFlag | key.count, 0);
        QCOMPARE(record.pendingBits | record.monitorFlags | record.bitMonitorFlags, 0);
        QCOMPARE(std::memcmp(record.readValue, nothing, sizeof(record.readValue)), 0);
        QCOMPARE(std::memcmp(record.writeValue, nothing, sizeof(record.writeValue)), 0);
    }

    void itemIsCopiedWhole()
    {
        const VARIABLE item = filledItem();
        const VARIABLE made = item; // NOLINT(performance-unnecessary-copy-initialization)
        VARIABLE assigned = VARIABLE();
        assigned = item;

        QVERIFY(isCopyOf(made, item));
        QVERIFY(isCopyOf(assigned, item));
        assigned.data[kValueAreaSize - 1] ^= 1;
        QVERIFY(!isCopyOf(assigned, item));
    }

    void keyIsCopiedWhole()
    {
        KEY_ADDRESS key = KEY_ADDRESS();
        key.keyText = QLatin1String("text");
        key.keyA = 1;
        key.keyB = 2;
        key.stationNo = 3;
        key.regName = QLatin1String("D_W");
        key.addrText = QLatin1String("100");
        key.startAddr = 4;
        key.bitFlag = -1;
        key.count = 5;
        fill(key.data, kValueAreaSize, 9);
        const KEY_ADDRESS copy = key;
        key.keyText.append(QLatin1Char('!'));

        QCOMPARE(rangeText(copy), latin("3/D_W:4*5"));
        QCOMPARE(otherFieldsText(copy), latin("text 1 2 100 -1"));
        QCOMPARE(std::memcmp(copy.data, key.data, sizeof(key.data)), 0);
    }

    void frameIsCopiedWhole()
    {
        FRAME_PRO frame = numberedFrame(1, 0, filledItem());
        fill(frame.sendBuf, kSendBufSize, 3);
        FRAME_PRO copy = FRAME_PRO();
        copy = frame;

        QCOMPARE(std::memcmp(copy.sendBuf, frame.sendBuf, sizeof(frame.sendBuf)), 0);
        QCOMPARE(numbersText(copy), latin("1 2 3 4 5"));
        QVERIFY(isCopyOf(copy.var, frame.var));
    }

    void recipeItemIsCopiedWhole()
    {
        _RCP_VAR_PRO item = {1, 2, latin("D_W"), 3, 4, 5, 6};
        const _RCP_VAR_PRO copy = item;
        item.regName.clear();

        QCOMPARE(copy.deviceNo, 1);
        QCOMPARE(copy.stationNo, 2);
        QCOMPARE(copy.regName, latin("D_W"));
        QCOMPARE(copy.startAddr, 3);
        QCOMPARE(copy.count, 4);
        QCOMPARE(copy.bufOffset, 5);
        QCOMPARE(copy.reserved, 6);
    }
};

QTEST_APPLESS_MAIN(TestRecordLayout)
#include "test_record_layout.moc"
