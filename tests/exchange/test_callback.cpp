#include "exchange/host_loop.h"
#include "exchange/memory_changes.h"

#include <QtTest>

using namespace exchange;

using plc::FaultKind;

using Scenario = void (*)(HostLoop &);
Q_DECLARE_METATYPE(Scenario)

// A panel that reads, writes and asks for readings from within the change callback, at every place
// from which it is called.
class TestCallback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usesTheDriver_data();
    void usesTheDriver();
    void writesBackWhatItHears();
    void writesWithinItsOwnWrite_data();
    void writesWithinItsOwnWrite();
    void none();
};

namespace {

void refuse(HostLoop &loop)
{
    loop.unit(1).faults.add({FaultKind::Refuse, 0x1132, 0x1132, 3});
}

void readWords(HostLoop &loop)
{
    loop.setPlc(1, "D_W", 100, {1, 2, 3, 4, 5, 6, 7, 8});
    loop.turn();
}

void readBits(HostLoop &loop)
{
    loop.setPlc(1, "M_W", 2, {0x00FF, 0xFF00});
    loop.turns(2);
}

void readContacts(HostLoop &loop)
{
    loop.setPlc(1, "TX", 5, {1, 1});
    loop.turns(4);
}

void writeWords(HostLoop &loop)
{
    loop.write(1, "D_W", 100, {1, 2, 3, 4, 5, 6, 7, 8});
}

void writeBits(HostLoop &loop)
{
    loop.write(1, "M_bit", 34, {1, 1, 0, 1});
}

void writeContacts(HostLoop &loop)
{
    loop.write(1, "TX", 5, {1, 1});
}

void failWords(HostLoop &loop)
{
    refuse(loop);
    loop.write(1, "D_W", 100, {1, 2, 3, 4, 5, 6, 7, 8});
    loop.turns(3);
}

void failBits(HostLoop &loop)
{
    refuse(loop);
    loop.write(1, "M_bit", 34, {1, 1, 0, 1});
    loop.turns(3);
}

void failContacts(HostLoop &loop)
{
    refuse(loop);
    loop.write(1, "TX", 5, {1});
    loop.turns(3);
}

void settleBits(HostLoop &loop)
{
    loop.write(1, "M_bit", 35, {1});
    loop.turns(1);
}

void endReading(HostLoop &loop)
{
    loop.readOnce(1, "C_W", 0, 1);
    loop.turns(1);
}

void failReading(HostLoop &loop)
{
    refuse(loop);
    loop.readOnce(1, "C_W", 0, 1);
    loop.turns(3);
}

void readRecipe(HostLoop &loop)
{
    loop.setRecipe({recipeItem(1, "D_W", 300, 4, 0), recipeItem(1, "D_W", 304, 4, 4)});
    loop.request(Recipe::Read);
    loop.turns(1);
}

} // namespace

void TestCallback::usesTheDriver_data()
{
    QTest::addColumn<Scenario>("scenario");
    QTest::newRow("words that are read") << Scenario(readWords);
    QTest::newRow("bits that are read") << Scenario(readBits);
    QTest::newRow("contacts that are read") << Scenario(readContacts);
    QTest::newRow("words that the panel writes") << Scenario(writeWords);
    QTest::newRow("bits that the panel writes") << Scenario(writeBits);
    QTest::newRow("contacts that the panel writes") << Scenario(writeContacts);
    QTest::newRow("words whose write failed") << Scenario(failWords);
    QTest::newRow("bits whose write failed") << Scenario(failBits);
    QTest::newRow("contact whose write failed") << Scenario(failContacts);
    QTest::newRow("bits whose write was taken") << Scenario(settleBits);
    QTest::newRow("end of a reading") << Scenario(endReading);
    QTest::newRow("failure of a reading") << Scenario(failReading);
    QTest::newRow("words of a recipe") << Scenario(readRecipe);
}

void TestCallback::usesTheDriver()
{
    QFETCH(Scenario, scenario);
    HostLoop loop;
    loop.addStation(1);
    loop.monitor(
        {key(1, "D_W", 100, 8), key(1, "M_bit", 32, 32), key(1, "TX", 5), key(1, "TX", 6)});
    int calls = 0;
    QList<KEY_ADDRESS> written;
    HostLoop::setCallbackHandler([&](const QString &) {
        // Places that were never used make every list longer.
        const int fresh = 1000 + 20 * ++calls;
        QCOMPARE(loop.inPanel(1, "D_W", fresh + 10, 10), (Values{0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        loop.write(1, "D_W", fresh, {calls, calls + 1});
        loop.write(1, "D_bit", 16 * (fresh + 2) + calls % 16, {1});
        loop.write(1, "K_bit", calls, {1});
        loop.write(1, "CX", calls, {1});
        loop.readOnce(1, "D_W", fresh + 5, 3);
        QCOMPARE(loop.inPanel(1, "D_W", fresh, 2), (Values{calls, calls + 1}));
    });
    scenario(loop);
    const int heard = calls;
    QVERIFY(heard > 0);
    HostLoop::setCallbackHandler({});
    QVERIFY(loop.settle());
    for (int call = 1; call <= heard; ++call) {
        QCOMPARE(loop.inPlc(1, "D_W", 1000 + 20 * call, 2), (Values{call, call + 1}));
        QCOMPARE(loop.inPlc(1, "CX", call), Values{1});
        QCOMPARE(loop.inPlc(1, "K_bit", call), Values{1});
    }
    QCOMPARE(loop.differences(), QStringList());
}

// A script of the panel that corrects a value as soon as it changes, and so causes the next call.
void TestCallback::writesBackWhatItHears()
{
    HostLoop loop;
    loop.addStation(1);
    loop.monitor({key(1, "D_W", 100), key(1, "D_W", 101)});
    QVERIFY(loop.settle());
    int depth = 0;
    int deepest = 0;
    HostLoop::setCallbackHandler([&](const QString &call) {
        deepest = std::max(deepest, ++depth);
        if (call == QLatin1String("7 1 D_W 100")) {
            loop.write(1, "D_W", 101, {2 * loop.inPanel(1, "D_W", 100).first()});
        }
        --depth;
    });
    loop.setPlc(1, "D_W", 100, {21});
    QVERIFY(loop.settle());
    QCOMPARE(loop.inPlc(1, "D_W", 100, 2), (Values{21, 42}));
    QCOMPARE(loop.differences(), QStringList());
    QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100", "7 1 D_W 101"}));
    QCOMPARE(deepest, 2);
}

void TestCallback::writesWithinItsOwnWrite_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<int>("address");
    QTest::addColumn<int>("innerAddress");
    QTest::addColumn<int>("innerValue");
    QTest::addColumn<Values>("words"); // in the panel and in the PLC, when both are answered
    QTest::newRow("the same word") << QByteArray("M_W") << 2 << 2 << 5 << Values{1, 5};
    QTest::newRow("another bit of the word")
        << QByteArray("M_bit") << 35 << 36 << 1 << Values{0x08, 0x18};
    QTest::newRow("the same bit") << QByteArray("M_bit") << 35 << 35 << 0 << Values{0x08, 0};
}

// The PLC gets both writes, in the order of the calls. The cache keeps the outer one, whose value
// was formed before the callback, until it is read again.
void TestCallback::writesWithinItsOwnWrite()
{
    QFETCH(QByteArray, regName);
    QFETCH(int, address);
    QFETCH(int, innerAddress);
    QFETCH(int, innerValue);
    HostLoop loop;
    loop.addStation(1);
    loop.monitor({key(1, "M_W", 2)});
    QVERIFY(loop.settle());
    int depth = 0;
    HostLoop::setCallbackHandler([&](const QString &) {
        if (depth++ == 0) {
            loop.write(1, regName.constData(), innerAddress, {innerValue});
        }
    });
    loop.write(1, regName.constData(), address, {1});
    QVERIFY(depth > 0);
    HostLoop::setCallbackHandler({});
    QCOMPARE(loop.turns(2), (Values{1, 1}));
    QTEST(loop.inPanel(1, "M_W", 2) + loop.inPlc(1, "M_W", 2), "words");
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
}

void TestCallback::none()
{
    HostLoop loop;
    loop.addStation(1);
    loop.monitor({key(1, "D_W", 100), key(1, "M_bit", 35), key(1, "TX", 5)});
    intf_setAddrValueChangeCallBack(nullptr);
    loop.setPlc(1, "D_W", 100, {5});
    loop.setPlc(1, "TX", 5, {1});
    refuse(loop);
    loop.write(1, "TX", 5, {0});
    loop.write(1, "M_bit", 35, {1});
    loop.readOnce(1, "C_W", 0, 1);
    QVERIFY(loop.settle());
    QCOMPARE(loop.differences(), QStringList());
    QCOMPARE(HostLoop::calls(), QStringList());
}

QTEST_APPLESS_MAIN(TestCallback)
#include "test_callback.moc"
