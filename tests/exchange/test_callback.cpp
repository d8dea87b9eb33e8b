#include "exchange/exchange_test.h"
#include "support/columns.h"

#include <QtTest>

using namespace exchange;

using Scenario = std::function<void()>;
Q_DECLARE_METATYPE(Scenario)

// A panel that reads, writes and asks for readings from within the change callback, at every place
// from which it is called.
class TestCallback : public ExchangeTest
{
    Q_OBJECT

private Q_SLOTS:
    void usesTheDriver_data()
    {
        QTest::addColumn<Scenario>("scenario");
        const auto row = [](const char *name, const Scenario &scenario) {
            QTest::newRow(name) << scenario;
        };
        const Values eight{1, 2, 3, 4, 5, 6, 7, 8};
        row("words that are read", [=] {
            loop.setPlc("D_W", 100, eight);
            loop.turn();
        });
        row("bits that are read", [this] {
            loop.setPlc("M_W", 2, {0x00FF, 0xFF00});
            loop.turns(2);
        });
        row("contacts that are read", [this] {
            loop.setPlc("TX", 5, {1, 1});
            loop.turns(4);
        });
        const auto writes = [this, row](const char *written, const char *failed, const char *name,
                                        int address, const Values &values) {
            row(written, [=] { loop.write(name, address, values); });
            row(failed, [=] {
                loop.refuse(3);
                loop.write(name, address, values);
                loop.turns(3);
            });
        };
        writes("words that the panel writes", "words whose write failed", "D_W", 100, eight);
        writes("bits that the panel writes", "bits whose write failed", "M_bit", 34, {1, 1, 0, 1});
        writes("contacts that the panel writes", "contact whose write failed", "TX", 5, {1, 1});
        row("bits whose write was taken", [this] {
            loop.write("M_bit", 35, {1});
            loop.turns(1);
        });
        row("end of a reading", [this] {
            loop.readOnce("C_W", 0, 1);
            loop.turns(1);
        });
        row("failure of a reading", [this] {
            loop.refuse(3);
            loop.readOnce("C_W", 0, 1);
            loop.turns(3);
        });
        row("words of a recipe", [this] {
            loop.setRecipe({recipeItem("D_W", 300, 4, 0), recipeItem("D_W", 304, 4, 4)});
            loop.request(Recipe::Read);
            loop.turns(1);
        });
    }

    void usesTheDriver()
    {
        QFETCH(Scenario, scenario);
        loop.monitor({key("D_W", 100, 8), key("M_bit", 32, 32), key("TX", 5), key("TX", 6)});
        int calls = 0;
        QList<KEY_ADDRESS> written;
        HostLoop::setCallbackHandler([&](const QString &) {
            // Places that were never used make every list longer.
            const int fresh = 1000 + 20 * ++calls;
            QCOMPARE(loop.inPanel("D_W", fresh + 10, 10), (Values{0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
            loop.write("D_W", fresh, {calls, calls + 1});
            loop.write("D_bit", 16 * (fresh + 2) + calls % 16, {1});
            loop.write("K_bit", calls, {1});
            loop.write("CX", calls, {1});
            loop.readOnce("D_W", fresh + 5, 3);
            QCOMPARE(loop.inPanel("D_W", fresh, 2), (Values{calls, calls + 1}));
        });
        scenario();
        const int heard = calls;
        QVERIFY(heard > 0);
        HostLoop::setCallbackHandler({});
        QVERIFY(loop.settle());
        for (int call = 1; call <= heard; ++call) {
            QCOMPARE(loop.inPlc("D_W", 1000 + 20 * call, 2), (Values{call, call + 1}));
            QCOMPARE(loop.inPlc("CX", call), Values{1});
            QCOMPARE(loop.inPlc("K_bit", call), Values{1});
        }
        QCOMPARE(loop.differences(), QStringList());
    }

    // A script of the panel that corrects a value as soon as it changes, and so causes the next
    // call.
    void writesBackWhatItHears()
    {
        QVERIFY(loop.show({key("D_W", 100), key("D_W", 101)}));
        int depth = 0;
        int deepest = 0;
        HostLoop::setCallbackHandler([&](const QString &call) {
            deepest = std::max(deepest, ++depth);
            if (call == QLatin1String("7 1 D_W 100")) {
                loop.write("D_W", 101, {2 * loop.inPanel("D_W", 100).first()});
            }
            --depth;
        });
        loop.setPlc("D_W", 100, {21});
        QVERIFY(loop.settle());
        QCOMPARE(loop.inPlc("D_W", 100, 2), (Values{21, 42}));
        QCOMPARE(loop.differences(), QStringList());
        QCOMPARE(HostLoop::calls(), texts({"7 1 D_W 100", "7 1 D_W 101"}));
        QCOMPARE(deepest, 2);
    }

    void writesWithinItsOwnWrite_data()
    {
        // words: in the panel and in the PLC, when both are answered
        const Columns<QByteArray, int, int, int, Values> row("regName", "address", "innerAddress",
                                                             "innerValue", "words");
        row("the same word", "M_W", 2, 2, 5, {1, 5});
        row("another bit of the word", "M_bit", 35, 36, 1, {0x08, 0x18});
        row("the same bit", "M_bit", 35, 35, 0, {0x08, 0});
    }

    // The PLC gets both writes, in the order of the calls. The cache keeps the outer one, whose
    // value was formed before the callback, until it is read again.
    void writesWithinItsOwnWrite()
    {
        QFETCH(QByteArray, regName);
        QFETCH(int, address);
        QFETCH(int, innerAddress);
        QFETCH(int, innerValue);
        QVERIFY(loop.show({key("M_W", 2)}));
        int depth = 0;
        HostLoop::setCallbackHandler([&](const QString &) {
            if (depth++ == 0) {
                loop.write(regName, innerAddress, {innerValue});
            }
        });
        loop.write(regName, address, {1});
        QVERIFY(depth > 0);
        HostLoop::setCallbackHandler({});
        QCOMPARE(loop.turns(2), (Values{1, 1}));
        QTEST(loop.inPanel("M_W", 2) + loop.inPlc("M_W", 2), "words");
        QCOMPARE(loop.differencesAtRest(), QStringList());
    }

    void none()
    {
        loop.monitor({key("D_W", 100), key("M_bit", 35), key("TX", 5)});
        intf_setAddrValueChangeCallBack(nullptr);
        loop.setPlc("D_W", 100, {5});
        loop.setPlc("TX", 5, {1});
        loop.refuse(3);
        loop.write("TX", 5, {0});
        loop.write("M_bit", 35, {1});
        loop.readOnce("C_W", 0, 1);
        QCOMPARE(loop.differencesAtRest(), QStringList());
        QCOMPARE(HostLoop::calls(), QStringList());
    }
};

QTEST_APPLESS_MAIN(TestCallback)
#include "test_callback.moc"
