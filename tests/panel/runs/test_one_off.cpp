#include "host/support/test_registers.h"

#include "panel/system/exit_code.h"
#include "panel/runs/one_off.h"

#include <QTimer>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

Q_DECLARE_METATYPE(cnet::panel::Item)

class TestOneOff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stations_data();
    void stations();
    void endsWhenTheUserWantsIt();
};

void TestOneOff::stations_data()
{
    QTest::addColumn<QVector<Item>>("items");
    QTest::addColumn<QVector<int>>("stations");
    QTest::newRow("none") << QVector<Item>() << QVector<int>();
    QTest::newRow("each once") << QVector<Item>{testItem("D_W", 1, 1, 2), testItem("D_W", 1, 1, 1),
                                                testItem("D_W", 5, 1, 2)}
                               << QVector<int>{2, 1};
}

void TestOneOff::stations()
{
    QFETCH(QVector<Item>, items);
    QTEST(stationsOf(items), "stations");
}

void TestOneOff::endsWhenTheUserWantsIt()
{
    DriverLibrary driver;
    QVERIFY2(driver.load(QLatin1String(DRIVER_FILE)), qPrintable(driver.errorText()));
    Messages messages;
    OneOff oneOff(driver.functions(), LinkSettings(), {1}, messages);
    QString given;
    oneOff.onGiveUp([&](const QString &reason) {
        given = reason;
        oneOff.session().finish(kDeviceFailed);
    });
    QVERIFY(!oneOff.isStopped());
    QTimer::singleShot(0, &oneOff.session(), &Session::stopRequested);
    QCOMPARE(oneOff.run(), static_cast<int>(kDeviceFailed));
    QCOMPARE(given, QLatin1String("interrupted"));
    QVERIFY(oneOff.isStopped());
}

QTEST_GUILESS_MAIN(TestOneOff)
#include "test_one_off.moc"
