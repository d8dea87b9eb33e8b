#include "host/wire/answer_collector.h"

#include <QtTest>

using namespace cnet;

namespace {

// Control characters by name, so that a row can be read.
QByteArray wire(QByteArray text)
{
    return text.replace("<ACK>", "\x06")
        .replace("<NAK>", "\x15")
        .replace("<ENQ>", "\x05")
        .replace("<EOT>", "\x04")
        .replace("<ETX>", "\x03");
}

} // namespace

class TestAnswerCollector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void collects_data();
    void collects();
    void collectsInAnyDivision_data() { collects_data(); }
    void collectsInAnyDivision();
    void beginsAnew();
    void keepsLittleNoise();
};

void TestAnswerCollector::collects_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("expectedLength");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("complete");
    QTest::addColumn<int>("stray");
    const auto row = [](const char *name, const char *bytes, int expected, const char *answer,
                        bool complete, int stray) {
        QTest::newRow(name) << wire(bytes) << expected << wire(answer) << complete << stray;
    };
    const char good[] = "<ACK>01rSB01021234<ETX>5F";
    const char refused[] = "<NAK>01rSB1132<ETX>A0";
    row("good answer", good, 17, good, true, 0);
    row("noise before", "xy\x01<ACK>01wSB<ETX>77", 9, "<ACK>01wSB<ETX>77", true, 3);
    row("echo before", "<ENQ>01rSS<EOT>AA<ACK>01wSB<ETX>77", 9, "<ACK>01wSB<ETX>77", true, 9);
    row("noise behind", "<ACK>01wSB<ETX>77zz", 9, "<ACK>01wSB<ETX>77", true, 2);
    row("refusal", refused, 17, refused, true, 0);
    row("refusal longer than the answer", refused, 9, refused, true, 0);
    row("shorter than expected", "<ACK>01wSB<ETX>77", 33, "<ACK>01wSB<ETX>77", true, 0);
    row("longer than expected", "<ACK>01rSB0102123456789<ETX>5F", 17, "<ACK>01rSB01021234567", true,
        5);
    row("ETX as the last expected byte", "<ACK>01rSB0102123456<ETX>5F", 17,
        "<ACK>01rSB0102123456<ETX>5F", true, 0);
    row("endless refusal", "<NAK>01rSB11321132<ETX>A0", 9, "<NAK>01rSB1132113", true, 4);
    row("cut before ETX", "<ACK>01rSB", 17, "<ACK>01rSB", false, 0);
    row("cut in the block check", "<ACK>01wSB<ETX>7", 9, "<ACK>01wSB<ETX>7", false, 0);
    row("a new head begins anew", "<ACK>01<ACK>01wSB<ETX>77", 9, "<ACK>01wSB<ETX>77", true, 3);
    row("false head in noise", "<NAK>a<ACK>01wSB<ETX>77", 9, "<ACK>01wSB<ETX>77", true, 2);
    row("head characters in the block check", "<ACK>01wSB<ETX><ACK><NAK>", 9,
        "<ACK>01wSB<ETX><ACK><NAK>", true, 0);
    row("ETX in noise", "<ETX>12<ACK>01wSB<ETX>77", 9, "<ACK>01wSB<ETX>77", true, 3);
    row("ETX near the expected end", "<ACK>01wS<ETX>77", 6, "<ACK>01wS<ETX>77", true, 0);
    row("noise only", "abc", 9, "abc", false, 3);
    row("nothing", "", 9, "", false, 0);
    row("expected length 0", "<ACK>", 0, "<ACK>", true, 0);
}

void TestAnswerCollector::collects()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, expectedLength);
    AnswerCollector collector;
    collector.begin(expectedLength);
    const bool complete = collector.add(bytes);
    QTEST(complete, "complete");
    QCOMPARE(collector.isComplete(), complete);
    QTEST(collector.answer(), "answer");
    QTEST(collector.strayBytes(), "stray");
}

void TestAnswerCollector::collectsInAnyDivision()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, expectedLength);
    for (int first = 0; first <= bytes.size(); ++first) {
        for (int second = first; second <= bytes.size(); ++second) {
            AnswerCollector collector;
            collector.begin(expectedLength);
            collector.add(bytes.left(first));
            collector.add(bytes.mid(first, second - first));
            collector.add(bytes.mid(second));
            QTEST(collector.isComplete(), "complete");
            QTEST(collector.answer(), "answer");
            QTEST(collector.strayBytes(), "stray");
        }
    }
}

void TestAnswerCollector::beginsAnew()
{
    AnswerCollector collector;
    collector.begin(9);
    collector.add("zz" + wire("<ACK>01wSB<ETX>77"));
    collector.begin(9);
    QVERIFY(!collector.isComplete());
    QVERIFY(!collector.hasBegun());
    QCOMPARE(collector.answer(), QByteArray());
    QCOMPARE(collector.strayBytes(), 0);
}

void TestAnswerCollector::keepsLittleNoise()
{
    AnswerCollector collector;
    collector.begin(9);
    const int length = 100000;
    collector.add(QByteArray(length, 'x'));
    QCOMPARE(collector.strayBytes(), length);
    QVERIFY(collector.answer().size() <= 1024);
    QVERIFY(collector.add(wire("<ACK>01wSB<ETX>77")));
    QCOMPARE(collector.answer(), wire("<ACK>01wSB<ETX>77"));
}

QTEST_APPLESS_MAIN(TestAnswerCollector)
#include "test_answer_collector.moc"
