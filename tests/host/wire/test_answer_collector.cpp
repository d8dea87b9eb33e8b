#include <host/wire/answer_collector.h>

#include <QtTest>

using namespace cnet;

namespace {

const int kExpected = 17; // bytes of an answer with one word

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
    void leavesWhatIsBehindAnAnswer();
    void dropsEndlessAnswers();
    void keepsLittleNoise();
};

void TestAnswerCollector::collects_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("answer"); // or the noise, where none began
    QTest::addColumn<bool>("complete");
    QTest::addColumn<int>("stray");
    const auto row = [](const char *name, const char *bytes, const char *answer, bool complete,
                        int stray) {
        QTest::newRow(name) << wire(bytes) << wire(answer) << complete << stray;
    };
    const char good[] = "<ACK>01rSB01021234<ETX>5F";
    const char written[] = "<ACK>01wSB<ETX>77";
    const char refused[] = "<NAK>01rSB1132<ETX>A0";
    row("as expected", good, good, true, 0);
    row("shorter than expected", written, written, true, 0);
    row("longer than expected", "<ACK>01rSB010212345678<ETX>5F", "<ACK>01rSB010212345678<ETX>5F",
        true, 0);
    row("refusal", refused, refused, true, 0);
    row("noise before", "xy\x01<ACK>01wSB<ETX>77", written, true, 3);
    row("echo before", "<ENQ>01rSS<EOT>AA<ACK>01wSB<ETX>77", written, true, 9);
    row("cut before ETX", "<ACK>01rSB", "<ACK>01rSB", false, 0);
    row("cut in the block check", "<ACK>01wSB<ETX>7", "<ACK>01wSB<ETX>7", false, 0);
    row("a new head begins anew", "<ACK>01<ACK>01wSB<ETX>77", written, true, 3);
    row("a new head in the block check", "<ACK>01<ETX>7<NAK>01wSB<ETX>77", "<NAK>01wSB<ETX>77",
        true, 5);
    row("false head in noise", "<NAK>a<ACK>01wSB<ETX>77", written, true, 2);
    row("ETX in noise", "<ETX>12<ACK>01wSB<ETX>77", written, true, 3);
    row("ETX in the block check", "<ACK>01wSB<ETX><ETX>7", "<ACK>01wSB<ETX><ETX>7", true, 0);
    row("as long as expected, but two", "<ACK>01wSB<ACK>2wSB<ETX>77", "<ACK>2wSB<ETX>77", true, 6);
    row("noise only", "abc", "abc", false, 3);
    row("nothing", "", "", false, 0);
}

void TestAnswerCollector::collects()
{
    QFETCH(QByteArray, bytes);
    AnswerCollector collector;
    QCOMPARE(collector.add(bytes, kExpected), static_cast<int>(bytes.size()));
    QTEST(collector.isComplete(), "complete");
    QTEST(collector.answer(), "answer");
    QTEST(collector.strayBytes(), "stray");
    collector.clear();
    QVERIFY(!collector.isComplete());
    QVERIFY(!collector.hasBegun());
    QCOMPARE(collector.answer(), QByteArray());
    QCOMPARE(collector.strayBytes(), 0);
}

void TestAnswerCollector::collectsInAnyDivision()
{
    QFETCH(QByteArray, bytes);
    for (int first = 0; first <= bytes.size(); ++first) {
        for (int second = first; second <= bytes.size(); ++second) {
            AnswerCollector collector;
            collector.add(bytes.left(first), kExpected);
            collector.add(bytes.mid(first, second - first), kExpected);
            collector.add(bytes.mid(second), kExpected);
            QTEST(collector.isComplete(), "complete");
            QTEST(collector.answer(), "answer");
            QTEST(collector.strayBytes(), "stray");
        }
    }
}

void TestAnswerCollector::leavesWhatIsBehindAnAnswer()
{
    const QByteArray first = wire("<ACK>01wSB<ETX>77");
    for (const int expected : {9, kExpected}) {
        AnswerCollector collector;
        const int length = static_cast<int>(first.size());
        QCOMPARE(collector.add(first + first, expected), length);
        QVERIFY(collector.isComplete());
        QCOMPARE(collector.answer(), first);
        QCOMPARE(collector.add(first, expected), 0); // until it is cleared
    }
}

void TestAnswerCollector::dropsEndlessAnswers()
{
    AnswerCollector collector;
    const QByteArray longest = "\x06" + QByteArray(252, '1') + "\x03" + "00";
    collector.add(longest, kExpected);
    QVERIFY(collector.isComplete());
    collector.clear();
    collector.add("\x06" + QByteArray(256, '1'), kExpected);
    QVERIFY(!collector.hasBegun());
    QCOMPARE(collector.strayBytes(), 257);
}

void TestAnswerCollector::keepsLittleNoise()
{
    AnswerCollector collector;
    const int length = 100000;
    collector.add(QByteArray(length, 'x'), kExpected);
    QCOMPARE(collector.strayBytes(), length);
    QVERIFY(collector.answer().size() <= 1024);
    collector.add(wire("<ACK>01wSB<ETX>77"), kExpected);
    QCOMPARE(collector.answer(), wire("<ACK>01wSB<ETX>77"));
}

QTEST_APPLESS_MAIN(TestAnswerCollector)

#include "test_answer_collector.moc"
