#include "panel/options/planned_write.h"

#include "host/tagfile/tag_file.h"

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
    TagSet m_tags;
};

namespace {

const int kBlockWords = 60;
const char kFile[] = "name,register,address,type,count,scale,max,access,texts,group\n"
                     "speed,D_W,100,i16,,0.1,120,,,press\n"
                     "zones,D_W,160,i16,4,0.1,,,,oven\n"
                     "mode,D_W,103,enum,,,,,0=stopped;1=running,press\n"
                     "door,D_W,104,bit3,2,,,,,press\n"
                     "count,D_W,300,f64,15,,,,,\n"
                     "words,D_W,400,,2,,,,,\n"
                     "actual,D_W,110,i16,,0.1,,read,,press\n";

} // namespace

void TestPlannedWrite::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    const auto fine = [](const Item &, TagAccess, QString &) { return true; };
    const TagFile file = TagFile::parse(kFile, {m_driver.registers(), fine, 1, 1});
    QVERIFY2(file.isGood(), qPrintable(file.mistakes().first().value(0).placed()));
    m_tags = TagSet(file.tags());
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
    row("speed=12.5", "speed=12.5", "1/D_W:100=125");
    row(" speed =-1", "speed=-1", "1/D_W:100=65526");
    row("zones=1,2,3,4", "zones=1,2,3,4", "1/D_W:160*4=10,20,30,40");
    row("zones=7", "zones=7,7,7,7", "1/D_W:160*4=70,70,70,70");
    row("mode=Running", "mode=running", "1/D_W:103=1");
    row("door=1,0", "door[0]=1|door[1]=0", "1/D_bit:104.3=1|1/D_bit:105.3=0");
    row("count=1", "count[0..13]=1,1,1,1,1,1,1,1,...|count[14]=1",
        "1/D_W:300*56=0,0,0,16368,0,0,0,16368,...|1/D_W:356*4=0,0,0,16368");
    row("words=1,0xFFFF", "words=1,65535", "1/D_W:400*2=1,65535");
    row("D_W:0@string4=\"a,\"", "1/D_W:0@string4=\"a,\"", "1/D_W:0*2=11361,0");
}

void TestPlannedWrite::plans()
{
    QString error;
    const auto writes = planWrite(QLatin1String(QTest::currentDataTag()),
                                  {m_driver, 1, kBlockWords, m_tags}, error);
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
    QTest::newRow("speed") << "'speed': expected NAME=VALUE";
    QTest::newRow("sped=1") << "no tag or group 'sped'; did you mean speed?";
    QTest::newRow("press=1") << "'press' stands for several tags; expected the name of one";
    QTest::newRow("zo*=1") << "'zo*' stands for several tags";
    QTest::newRow("=1") << "no tag or group ''";
    QTest::newRow("actual=1") << "actual can only be read";
    QTest::newRow("speed=x") << "'speed': 'x' is no value of i16";
    QTest::newRow("speed=1,2") << "'speed': expected 1 value, not 2";
    QTest::newRow("speed=120.1") << "speed: 120.1 is above the maximum";
    QTest::newRow("zones=1,2") << "'zones': expected 1 or 4 values, not 2";
    QTest::newRow("mode=runing") << "one of its texts, stopped, running, or a number";
    QTest::newRow("D_W:5@u16=70000") << "70000 does not fit u16";
}

void TestPlannedWrite::refuses()
{
    QFETCH(QString, expected);
    QString error;
    QVERIFY(!planWrite(QLatin1String(QTest::currentDataTag()), {m_driver, 1, kBlockWords, m_tags},
                       error));
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
    row("speed=1", {125}, "speed=1: not written (refused); it holds 12.5");
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
    const auto writes = planWrite(QLatin1String(QTest::currentDataTag()),
                                  {m_driver, 1, kBlockWords, m_tags}, error);
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
