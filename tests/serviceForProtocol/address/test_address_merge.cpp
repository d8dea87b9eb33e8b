#include <climits>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_merge.h"
#include "support/driver_fixture.h"

class TestAddressMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAreMerged_data();
    void readsAreMerged();
    void manyEqualWeightsStay();
    void recipeIsMerged_data();
    void recipeIsMerged();
    void blockKeepsItsFirstKey();
    void blockStartsAreAppended();
    void cyclicReadsAreReplaced();
    void otherJobsStay();
    void monitorMarksAreReplaced();
    void emptySetClearsTheMarks();
};

// "1/D_W:100*5", station/register:address*count.
static QString described(int stationNo, const QString &name, int startAddr, int count)
{
    return QString::number(stationNo) + QLatin1Char('/') + name + QLatin1Char(':') +
           QString::number(startAddr) + QLatin1Char('*') + QString::number(count);
}

template <typename Request>
static QString described(const QList<Request> &requests)
{
    QStringList texts;
    for (const Request &request : requests) {
        texts.append(
            described(request.stationNo, request.regName, request.startAddr, request.count));
    }
    return texts.join(QLatin1String(" "));
}

static QList<KEY_ADDRESS> keysOf(const QString &text)
{
    QList<KEY_ADDRESS> keys;
    const QStringList parts = text.split(QLatin1Char(' '));
    for (int i = 0; i < parts.size() && !text.isEmpty(); ++i) {
        const QString &part = parts.at(i);
        const int slash = static_cast<int>(part.indexOf(QLatin1Char('/')));
        const int colon = static_cast<int>(part.indexOf(QLatin1Char(':')));
        const int star = static_cast<int>(part.indexOf(QLatin1Char('*')));
        const QString name = part.mid(slash + 1, colon - slash - 1);
        keys.append(makeKey(part.left(slash).toInt(), qPrintable(name),
                            part.mid(colon + 1, star - colon - 1).toInt(),
                            part.mid(star + 1).toInt()));
    }
    return keys;
}

void TestAddressMerge::readsAreMerged_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("blocks");

    // clang-format off
    QTest::newRow("none") << 60 << "" << "";
    QTest::newRow("touching") << 60 << "1/D_W:0*1 1/D_W:1*1" << "1/D_W:0*2";
    QTest::newRow("touching, limit of one") << 1 << "1/D_W:0*1 1/D_W:1*1" << "1/D_W:0*1 1/D_W:1*1";
    QTest::newRow("gap within the limit") << 20 << "1/D_W:0*2 1/D_W:10*2" << "1/D_W:0*12";
    QTest::newRow("gap up to the limit") << 12 << "1/D_W:0*2 1/D_W:10*2" << "1/D_W:0*12";
    QTest::newRow("span beyond the limit") << 11 << "1/D_W:0*2 1/D_W:10*2" << "1/D_W:0*2 1/D_W:10*2";
    QTest::newRow("gap beyond the limit") << 5 << "1/D_W:0*2 1/D_W:10*2" << "1/D_W:0*2 1/D_W:10*2";
    QTest::newRow("contained") << 60 << "1/D_W:0*10 1/D_W:3*2" << "1/D_W:0*10";
    QTest::newRow("overlapping") << 60 << "1/D_W:0*10 1/D_W:8*5" << "1/D_W:0*13";
    QTest::newRow("chain up to the limit") << 12 << "1/D_W:0*5 1/D_W:5*5 1/D_W:10*5" << "1/D_W:0*10 1/D_W:10*5";
    QTest::newRow("long key is one block") << 10 << "1/D_W:0*30" << "1/D_W:0*30";
    QTest::newRow("early part of a long key") << 10 << "1/D_W:0*30 1/D_W:5*2" << "1/D_W:0*30";
    QTest::newRow("late part of a long key") << 10 << "1/D_W:0*30 1/D_W:25*2" << "1/D_W:0*30 1/D_W:25*2";
    QTest::newRow("what touches goes first") << 10 << "1/D_W:0*1 1/D_W:5*1 1/D_W:6*6" << "1/D_W:0*1 1/D_W:5*7";
    QTest::newRow("sorted by address") << 60 << "1/D_W:200*1 1/D_W:100*1 1/D_W:0*1" << "1/D_W:0*1 1/D_W:100*1 1/D_W:200*1";
    QTest::newRow("sorted by register list") << 60 << "1/M_W:0*1 1/C_W:0*1 1/TX:0*1 1/D_W:0*1" << "1/D_W:0*1 1/C_W:0*1 1/M_W:0*1 1/TX:0*1";
    QTest::newRow("sorted by station first") << 60 << "2/D_W:0*1 1/M_W:0*1 0/CX:0*1" << "0/CX:0*1 1/M_W:0*1 2/D_W:0*1";
    QTest::newRow("stations do not merge") << 60 << "2/D_W:1*1 1/D_W:0*1" << "1/D_W:0*1 2/D_W:1*1";
    QTest::newRow("registers do not merge") << 60 << "1/D_W:0*1 1/C_W:1*1" << "1/D_W:0*1 1/C_W:1*1";
    QTest::newRow("same weight stays, other register first") << 60 << "0/C_W:0*1 0/D_W:65535*1" << "0/C_W:0*1 0/D_W:65535*1";
    QTest::newRow("same weight stays, other register last") << 60 << "0/D_W:65535*1 0/C_W:0*1" << "0/D_W:65535*1 0/C_W:0*1";
    QTest::newRow("negative weight comes last") << 60 << "0/D_W:-99*1 0/M_W:5*1" << "0/M_W:5*1 0/D_W:-99*1";
    QTest::newRow("unknown name comes last") << 60 << "0/Q_W:5*3 0/CX:7*1" << "0/CX:7*1 0/Q_W:5*3";
    QTest::newRow("unknown bit name becomes words") << 60 << "0/Q_bit:35*3" << "0/Q_W:2*1";
    QTest::newRow("unknown name without two parts") << 60 << "0/QQ:35*3" << "0/QQ:35*3";
    QTest::newRow("bits become words") << 60 << "1/M_bit:35*3" << "1/M_W:2*1";
    QTest::newRow("bits join their words") << 60 << "1/M_bit:35*3 1/M_W:3*1" << "1/M_W:2*2";
    QTest::newRow("bits are sorted as words") << 60 << "1/M_bit:0*1 1/C_W:0*1 1/D_bit:16*1" << "1/D_W:1*1 1/C_W:0*1 1/M_W:0*1";
    QTest::newRow("bits of many words") << 60 << "1/P_bit:0*1 1/P_bit:40*1 1/P_bit:160*1" << "1/P_W:0*11";
    QTest::newRow("contacts at one address") << 60 << "1/TX:7*1 1/TX:7*1" << "1/TX:7*1";
    QTest::newRow("contacts side by side") << 60 << "1/TX:8*1 1/TX:7*1" << "1/TX:7*1 1/TX:8*1";
    QTest::newRow("contacts of two counts") << 60 << "1/CX:7*1 1/CX:7*3" << "1/CX:7*3";
    QTest::newRow("no units") << 60 << "1/D_W:5*0" << "1/D_W:5*0";
    QTest::newRow("limit of none") << 0 << "1/D_W:0*1 1/D_W:1*5" << "1/D_W:0*1 1/D_W:1*5";
    QTest::newRow("limit of none, one key twice") << 0 << "1/M_bit:3*1 1/M_bit:5*1" << "1/M_W:0*1 1/M_W:0*1";
    QTest::newRow("limit of none, no units") << 0 << "1/D_W:5*0 1/D_W:5*0" << "1/D_W:5*0";
    QTest::newRow("limit below none") << -60 << "1/TX:7*1 1/D_W:0*1" << "1/D_W:0*1 1/TX:7*1";
    QTest::newRow("limit below none, no units") << -60 << "1/D_W:5*0 1/D_W:5*0" << "1/D_W:5*0 1/D_W:5*0";
    QTest::newRow("lowest limit") << INT_MIN << "1/D_W:0*1 1/D_W:1*1" << "1/D_W:0*1 1/D_W:1*1";
    // clang-format on
}

void TestAddressMerge::readsAreMerged()
{
    QFETCH(int, limit);
    QFETCH(QString, keys);
    QFETCH(QString, blocks);

    DriverFixture fixture;
    driver.maxBlockWords = limit;
    const int modes[] = {1, 0, 3, -1};
    for (const int mode : modes) {
        QList<KEY_ADDRESS> list = keysOf(keys);
        addrMerge(list, mode);
        QCOMPARE(described(list), blocks);
    }
    QVERIFY(driver.rcpBlockStarts.isEmpty());

    QList<KEY_ADDRESS> list = keysOf(keys);
    const int count = blocks.isEmpty() ? 0 : static_cast<int>(blocks.count(QLatin1Char('/')));
    QCOMPARE(intf_addrMerge(list), count);
    QCOMPARE(described(driver.cyclicReads), blocks);
    QCOMPARE(described(list), keys);
}

// The weight of word 65535 of one register is that of word 0 of the next.
void TestAddressMerge::manyEqualWeightsStay()
{
    DriverFixture fixture;
    QStringList parts;
    for (int i = 0; i < 100; ++i) {
        parts.append(QLatin1String("0/C_W:0*1"));
        parts.append(QLatin1String("0/D_W:65535*1"));
    }
    const QString text = parts.join(QLatin1String(" "));
    QList<KEY_ADDRESS> keys = keysOf(text);
    addrMerge(keys, kMergeReads);

    QCOMPARE(described(keys), text);
}

void TestAddressMerge::recipeIsMerged_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("blocks");
    QTest::addColumn<QString>("starts");

    // clang-format off
    QTest::newRow("none") << 60 << "" << "" << "";
    QTest::newRow("one") << 60 << "1/D_W:5*2" << "1/D_W:5*2" << "0";
    QTest::newRow("touching") << 60 << "1/D_W:5*2 1/D_W:7*1 1/D_W:20*1" << "1/D_W:5*3 1/D_W:20*1" << "0 2";
    QTest::newRow("no gap is bridged") << 60 << "1/D_W:5*2 1/D_W:8*1" << "1/D_W:5*2 1/D_W:8*1" << "0 1";
    QTest::newRow("limit") << 4 << "1/D_W:0*2 1/D_W:2*2 1/D_W:4*2 1/D_W:6*1" << "1/D_W:0*4 1/D_W:4*3" << "0 2";
    QTest::newRow("overlapping") << 60 << "1/D_W:0*4 1/D_W:2*4" << "1/D_W:0*6" << "0";
    QTest::newRow("long item is one block") << 4 << "1/D_W:0*9 1/D_W:9*1" << "1/D_W:0*9 1/D_W:9*1" << "0 1";
    QTest::newRow("not sorted") << 60 << "1/M_W:5*1 1/D_W:0*1" << "1/M_W:5*1 1/D_W:0*1" << "0 1";
    QTest::newRow("apart in the list, apart in blocks") << 60 << "1/D_W:0*1 1/M_W:9*1 1/D_W:1*1" << "1/D_W:0*1 1/M_W:9*1 1/D_W:1*1" << "0 1 2";
    QTest::newRow("item before the block is swallowed") << 60 << "1/D_W:0*1 1/D_W:10*1 1/D_W:1*1" << "1/D_W:0*1 1/D_W:10*1" << "0 1";
    QTest::newRow("stations") << 60 << "1/D_W:0*1 2/D_W:1*1" << "1/D_W:0*1 2/D_W:1*1" << "0 1";
    QTest::newRow("bits stay bits") << 60 << "1/M_bit:35*3 1/M_bit:38*2" << "1/M_bit:35*5" << "0";
    QTest::newRow("contacts stay apart") << 60 << "1/TX:7*1 1/TX:8*1" << "1/TX:7*1 1/TX:8*1" << "0 1";
    QTest::newRow("unknown name stays as it is") << 60 << "1/Q_bit:35*3" << "1/Q_bit:35*3" << "0";
    QTest::newRow("limit of one") << 1 << "1/D_W:0*1 1/D_W:1*1" << "1/D_W:0*1 1/D_W:1*1" << "0 1";
    QTest::newRow("limit of none") << 0 << "1/D_W:0*9 1/D_W:9*1" << "1/D_W:0*9 1/D_W:9*1" << "0 1";
    QTest::newRow("limit below none") << -1 << "1/D_W:0*1 1/D_W:1*1" << "1/D_W:0*1 1/D_W:1*1" << "0 1";
    // clang-format on
}

void TestAddressMerge::recipeIsMerged()
{
    QFETCH(int, limit);
    QFETCH(QString, keys);

    DriverFixture fixture;
    driver.maxBlockWords = limit;
    QList<KEY_ADDRESS> list = keysOf(keys);
    addrMerge(list, kMergeRecipe);
    QTEST(described(list), "blocks");
    QStringList starts;
    const QList<int> blockStarts = driver.rcpBlockStarts;
    for (const int start : blockStarts) {
        starts.append(QString::number(start));
    }
    QTEST(starts.join(QLatin1String(" ")), "starts");
}

void TestAddressMerge::blockKeepsItsFirstKey()
{
    DriverFixture fixture;
    QList<KEY_ADDRESS> keys = keysOf(QString::fromLatin1("1/D_W:1*1 1/D_W:0*1"));
    keys[1].keyText = QLatin1String("first");
    keys[1].keyA = 11;
    keys[1].keyB = 22;
    keys[1].addrText = QLatin1String("0");
    keys[1].bitFlag = -1;
    keys[1].data[1023] = 0x5A;
    addrMerge(keys, kMergeReads);

    QCOMPARE(described(keys), QString::fromLatin1("1/D_W:0*2"));
    QCOMPARE(keys.at(0).keyText, QString::fromLatin1("first"));
    QCOMPARE(keys.at(0).keyA, 11);
    QCOMPARE(keys.at(0).keyB, 22);
    QCOMPARE(keys.at(0).addrText, QString::fromLatin1("0"));
    QCOMPARE(keys.at(0).bitFlag, -1);
    QCOMPARE(int(keys.at(0).data[1023]), 0x5A);
}

void TestAddressMerge::blockStartsAreAppended()
{
    DriverFixture fixture;
    driver.rcpBlockStarts.append(77);
    QList<KEY_ADDRESS> keys = keysOf(QString::fromLatin1("1/D_W:0*1"));
    addrMerge(keys, kMergeRecipe);

    QCOMPARE(static_cast<int>(driver.rcpBlockStarts.size()), 2);
    QCOMPARE(driver.rcpBlockStarts.at(0), 77);
    QCOMPARE(driver.rcpBlockStarts.at(1), 0);
}

void TestAddressMerge::cyclicReadsAreReplaced()
{
    DriverFixture fixture;
    driver.cyclicReads.append(makeItem(9, "M_W", 0, 1));
    QList<KEY_ADDRESS> keys = keysOf(QString::fromLatin1("1/D_W:100*5"));
    std::memset(keys[0].data, 0x5A, sizeof(keys[0].data));

    QCOMPARE(intf_addrMerge(keys), 1);
    QCOMPARE(described(driver.cyclicReads), QString::fromLatin1("1/D_W:100*5"));
    QCOMPARE(driver.cyclicReads.at(0).opKind, 4);
    const VARIABLE blank = VARIABLE();
    QCOMPARE(std::memcmp(driver.cyclicReads.at(0).data, blank.data, sizeof(blank.data)), 0);
}

void TestAddressMerge::otherJobsStay()
{
    DriverFixture fixture;
    driver.pendingWrites.append(makeItem(1, "D_W", 0, 1));
    driver.conditionReads.append(makeItem(1, "D_W", 0, 1));
    queueFrame(FRAME_PRO());
    driver.rcpBlockStarts.append(0);
    QList<KEY_ADDRESS> keys = keysOf(QString::fromLatin1("1/D_W:100*5"));
    intf_addrMerge(keys);

    QCOMPARE(static_cast<int>(driver.pendingWrites.size()), 1);
    QCOMPARE(static_cast<int>(driver.conditionReads.size()), 1);
    QCOMPARE(static_cast<int>(driver.frames.size()), 1);
    QCOMPARE(static_cast<int>(driver.rcpBlockStarts.size()), 1);
}

static _DATA_ markedRecord()
{
    _DATA_ record = _DATA_();
    record.spareFlag = 1;
    record.writePending = 1;
    record.pendingBits = 0x55;
    record.monitorFlags = 0x7F;
    record.bitMonitorFlags = -1;
    record.stationNo = 1;
    record.regPrefix = QLatin1String("M");
    record.unitAddr = 2;
    record.readValue[0] = 0x11;
    record.writeValue[3] = 0x22;
    return record;
}

void TestAddressMerge::monitorMarksAreReplaced()
{
    DriverFixture fixture;
    driver.dataArea.append(markedRecord());
    QList<KEY_ADDRESS> keys = keysOf(QString::fromLatin1("1/M_bit:35*2 1/D_W:7*1"));
    intf_addrMerge(keys);

    QCOMPARE(static_cast<int>(driver.dataArea.size()), 2);
    const _DATA_ &bits = driver.dataArea.at(0);
    QCOMPARE(bits.monitorFlags, 0);
    QCOMPARE(bits.bitMonitorFlags, 0x18);
    const _DATA_ &word = driver.dataArea.at(1);
    QCOMPARE(word.regPrefix, QString::fromLatin1("D"));
    QCOMPARE(word.unitAddr, 7);
    QCOMPARE(word.monitorFlags, 1);
    QCOMPARE(word.bitMonitorFlags, 0);
}

void TestAddressMerge::emptySetClearsTheMarks()
{
    DriverFixture fixture;
    driver.dataArea.append(markedRecord());
    driver.cyclicReads.append(makeItem(1, "D_W", 0, 1));
    QList<KEY_ADDRESS> keys;

    QCOMPARE(intf_addrMerge(keys), 0);
    QVERIFY(driver.cyclicReads.isEmpty());
    QCOMPARE(static_cast<int>(driver.dataArea.size()), 1);
    const _DATA_ &record = driver.dataArea.at(0);
    QCOMPARE(record.monitorFlags | record.bitMonitorFlags | record.spareFlag, 0);
    QCOMPARE(int(record.writePending), 1);
    QCOMPARE(record.pendingBits, 0x55);
    QCOMPARE(int(record.readValue[0]), 0x11);
    QCOMPARE(int(record.writeValue[3]), 0x22);
}

QTEST_APPLESS_MAIN(TestAddressMerge)
#include "test_address_merge.moc"
