#include "panel/runs/planned_write.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestPlannedWrite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void plans_data();
    void plans();
    void refuses_data();
    void refuses();
    void saysHowItEnded_data();
    void saysHowItEnded();

private:
    Driver m_driver;
};

namespace {

const int kBlockWords = 60;

} // namespace

void TestPlannedWrite::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestPlannedWrite::plans_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("sent");
    const auto row = [](const char *given, const char *asked, const char *sent) {
        QTest::newRow(given) << QString::fromLatin1(asked) << QString::fromLatin1(sent);
    };
    row("D_W:100=1,2", "1/D_W:100*2=1,2", "1/D_W:100*2=1,2");
    row("D_W:100@f32=12.5", "1/D_W:100@f32=12.5", "1/D_W:100*2=0,16712");
    row("D_W:5*2@bit3=1,0", "1/D_W:5@bit3=1|1/D_W:6@bit3=0", "1/D_bit:5.3=1|1/D_bit:6.3=0");
    row("D_W:0*15@f64=1", "1/D_W:0*14@f64=1,1,1,1,1,1,1,1,...|1/D_W:56@f64=1",
        "1/D_W:0*56=0,0,0,16368,0,0,0,16368,...|1/D_W:56*4=0,0,0,16368");
    row("D_W:0@string4=\"a,\"", "1/D_W:0@string4=\"a,\"", "1/D_W:0*2=11361,0");
}

void TestPlannedWrite::plans()
{
    QString error;
    const auto writes =
        planWrite(QLatin1String(QTest::currentDataTag()), 1, m_driver, kBlockWords, error);
    QVERIFY2(writes.has_value(), qPrintable(error));
    QStringList asked;
    QStringList sent;
    for (const PlannedWrite &write : *writes) {
        asked.append(write.title);
        sent.append(write.assignment.text());
    }
    QTEST(asked.join(QLatin1Char('|')), "asked");
    QTEST(sent.join(QLatin1Char('|')), "sent");
}

void TestPlannedWrite::refuses_data()
{
    QTest::addColumn<QString>("expected");
    QTest::newRow("D_W:100") << "expected ITEM=VALUE";
    QTest::newRow("D_W:100@f32") << "expected ITEM@TYPE=VALUE";
    QTest::newRow("D_W:9999=1,2") << "out of range";
    QTest::newRow("T_W:5@bit3=1") << "a bit of T_W cannot be written by itself";
    QTest::newRow("D_W:5@u16=70000") << "70000 does not fit u16";
}

void TestPlannedWrite::refuses()
{
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!planWrite(QLatin1String(QTest::currentDataTag()), 1, m_driver, kBlockWords, error));
    QVERIFY2(error.contains(expected), qPrintable(error));
}

void TestPlannedWrite::saysHowItEnded_data()
{
    QTest::addColumn<QVector<quint16>>("held");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *given, const QVector<quint16> &held, const char *text) {
        QTest::newRow(given) << held << QString::fromLatin1(text);
    };
    const QVector<quint16> nothing;
    row("D_W:1@f32=12.5", nothing, "1/D_W:1@f32=12.5: written");
    row("D_W:1@f32=1.5", {0, 0x4148}, "1/D_W:1@f32=1.5: not written (refused); it holds 12.5");
    row("D_W:1@bcd4=1", {0x12A4},
        "1/D_W:1@bcd4=1: not written (refused); it holds 4772 0x12A4, - (wrong BCD digit)");
    row("D_W:1@bit3=1", {0}, "1/D_W:1@bit3=1: not written (refused); it holds 0");
    row("D_W:1=1", {7}, "1/D_W:1=1: not written (refused); it holds 7 0x0007");
}

void TestPlannedWrite::saysHowItEnded()
{
    QFETCH(QVector<quint16>, held);
    QFETCH(QString, text);
    QString error;
    const auto writes =
        planWrite(QLatin1String(QTest::currentDataTag()), 1, m_driver, kBlockWords, error);
    QVERIFY2(writes.has_value(), qPrintable(error));
    WriteResult result;
    result.assignment = writes->first().assignment;
    result.outcome = held.isEmpty() ? WriteOutcome::Written : WriteOutcome::Refused;
    if (!held.isEmpty()) {
        result.failure.kind = Failure::Refused;
        result.now = ReadResult{
            result.assignment.item, held, QVector<bool>(static_cast<int>(held.size()), true), {}};
    }
    QString said = writes->first().resultText(result);
    // Which code it was is not the subject here.
    const QString reason = result.failure.text();
    QCOMPARE(reason.isEmpty() ? said : said.replace(reason, QStringLiteral("refused")), text);
}

QTEST_APPLESS_MAIN(TestPlannedWrite)
#include "test_planned_write.moc"
