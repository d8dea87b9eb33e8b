#include "host/support/frames.h"
#include "support/capture_file.h"

#include "panel/replay/recorded_items.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestRecordedItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void areWhatWasRead();
    void knowTheRhythm();
    void leaveSignsOfLifeOut();
    void takePartsOfWhatWasRefused();
    void leaveOutWhatTheDriverDoesNotTake();

private:
    RecordedItems items(const CaptureFile &file);

    Driver m_driver;
};

namespace {

QByteArray read(const char *what, int station = 1)
{
    return requestFrame("0" + QByteArray::number(station) + "rSB08%" + what);
}

const QByteArray kWord = answerFrame("01rSB01020001");
const QByteArray kTwo = answerFrame("01rSB010400010002");
const QByteArray kRefusal = refusalFrame("01rSB1132");

QByteArray text(const RecordedItems &recorded)
{
    QStringList all;
    for (const Item &item : recorded.items) {
        all << item.text();
    }
    return all.join(QLatin1Char(' ')).toLatin1();
}

} // namespace

void TestRecordedItems::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

RecordedItems TestRecordedItems::items(const CaptureFile &file)
{
    const Recording recording = readRecording(file.bytes());
    return recording.lines.empty() ? RecordedItems()
                                   : recordedItems(recording.lines.front(), m_driver);
}

void TestRecordedItems::areWhatWasRead()
{
    const RecordedItems recorded = items(CaptureFile()
                                             .line("tcp 1")
                                             .sent(read("DW0010002"))
                                             .received(kTwo)
                                             .sent(read("DW0020001", 2))
                                             .sent(requestFrame("01wSB08%DW00300010001"))
                                             .received(answerFrame("01wSB"))
                                             .sent(requestFrame("01rSS0106%TX007"))
                                             .received(answerFrame("01rSS010101"))
                                             .sent(read("DW0010002"))
                                             .received(kTwo)
                                             .sent(read("DW0010101"))
                                             .received(kWord)
                                             .sent("zz"));
    // D 101 is a part of D 100 and 101.
    QCOMPARE(text(recorded), QByteArray("1/D_W:100*2 2/D_W:200 1/TX:7"));
    QCOMPARE(recorded.blockWords, 2);
    QCOMPARE(recorded.leftOut, 0);
}

void TestRecordedItems::knowTheRhythm()
{
    CaptureFile file;
    file.line("tcp 1").sent(read("DW0020001")).received(kWord);
    for (int i = 0; i < 5; ++i) {
        file.sent(read("DW0010002"), 90).received(kTwo, 10);
    }
    // Nobody knows what came for the last one.
    const RecordedItems recorded = items(file.sent(read("DW0020001")));
    QCOMPARE(recorded.rounds, 5);
    QCOMPARE(recorded.mostFrequent, read("DW0010002"));
    QCOMPARE(recorded.intervalMs, 100);
}

void TestRecordedItems::leaveSignsOfLifeOut()
{
    CaptureFile file;
    file.line("tcp 1")
        .sent(requestFrame("01rSS0108%DW00000"))
        .received(answerFrame("01rSS01020000"));
    file.sent(requestFrame("02rSS0108%DW00000")).received(answerFrame("02rSS01020000"));
    file.sent(read("DW0000003")).received(kTwo);
    for (int i = 0; i < 3; ++i) {
        file.sent(read("DW0000001")).received(kWord).sent(read("DW0010001")).received(kWord);
    }
    QCOMPARE(text(items(file)), QByteArray("1/D_W:0 1/D_W:100"));
}

// As the host of the capture did when a block was refused.
void TestRecordedItems::takePartsOfWhatWasRefused()
{
    CaptureFile file;
    file.line("tcp 1").sent(read("DW0499903")).received(kRefusal);
    file.sent(read("DW0499901")).received(kWord).sent(read("DW0500001")).received(kRefusal);
    QCOMPARE(text(items(file)), QByteArray("1/D_W:4999 1/D_W:5000"));
    CaptureFile whole;
    whole.line("tcp 1").sent(read("DW0499903")).received(kRefusal);
    QCOMPARE(text(items(whole)), QByteArray("1/D_W:4999*3"));
}

void TestRecordedItems::leaveOutWhatTheDriverDoesNotTake()
{
    CaptureFile file;
    file.line("tcp 1").sent(read("DW9999901")).received(kRefusal);
    file.sent(requestFrame("FFrSB08%DW0010001")).sent(read("DW0010001")).received(kWord);
    const RecordedItems recorded = items(file);
    QCOMPARE(text(recorded), QByteArray("1/D_W:100"));
    QCOMPARE(recorded.leftOut, 1);
}

QTEST_GUILESS_MAIN(TestRecordedItems)
#include "test_recorded_items.moc"
