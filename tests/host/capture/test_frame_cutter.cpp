#include "host/capture/frame_cutter.h"

#include <QtTest>

#include <random>

using namespace cnet;

/** Bytes of a line into frames, of which none gets lost. */
class TestFrameCutter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cuts_data();
    void cuts();
    void losesNothing();
};

namespace {

const char kRequest[] = "\x05"
                        "01rSB06%DW00002\x04"
                        "7A";
const char kAnswer[] = "\x06"
                       "01rSB0100\x03"
                       "5C";
const char kRefusal[] = "\x15"
                        "01rSB1132\x03"
                        "5C";

} // namespace

void TestFrameCutter::cuts_data()
{
    QTest::addColumn<QList<QByteArray>>("frames");
    QTest::addColumn<QByteArray>("rest");
    const auto row = [](const char *name, const QList<QByteArray> &frames, const QByteArray &rest) {
        QTest::newRow(name) << frames << rest;
    };
    row("request", {kRequest}, "");
    row("answer", {kAnswer}, "");
    row("refusal", {kRefusal}, "");
    row("several", {kRequest, kAnswer, kAnswer}, "");
    row("without a block check",
        {"\x05"
         "01RSB\x04"},
        "");
    row("bytes before it", {"noise", kAnswer}, "");
    row("bytes behind it", {kAnswer}, "noise");
    row("cut off by the next",
        {"\x06"
         "01rSB01",
         kAnswer},
        "");
    row("end of the other kind", {},
        "\x06"
        "01rSB\x04");
    row("half a block check", {},
        "\x06"
        "01rSB\x03"
        "5");
    row("nothing but heads", {"\x06", "\x06", "\x15"}, "\x05");
    row("end before the command", {"\x06\x03"}, "x");
    row("without end", {QByteArray(FrameCutter::kLongest, 'x')}, "y");
}

// The same in one go and byte by byte.
void TestFrameCutter::cuts()
{
    QFETCH(QList<QByteArray>, frames);
    QFETCH(QByteArray, rest);
    QByteArray bytes;
    for (const QByteArray &frame : frames) {
        bytes += frame;
    }
    bytes += rest;
    const std::vector<QByteArray> expected(frames.begin(), frames.end());
    FrameCutter cutter;
    QCOMPARE(cutter.add(bytes), expected);
    QCOMPARE(cutter.isEmpty(), rest.isEmpty());
    QCOMPARE(cutter.takeRest(), rest);
    std::vector<QByteArray> cut;
    for (const char byte : bytes) {
        for (const QByteArray &frame : cutter.add(QByteArray(1, byte))) {
            cut.push_back(frame);
        }
    }
    QCOMPARE(cut, expected);
    QCOMPARE(cutter.takeRest(), rest);
    QVERIFY(cutter.isEmpty());
}

void TestFrameCutter::losesNothing()
{
    const QByteArray letters("\x05\x06\x15\x03\x04rW01%", 10);
    std::mt19937 random(1);
    for (int run = 0; run < 2000; ++run) {
        FrameCutter cutter;
        QByteArray all;
        QByteArray out;
        for (int part = 0; part < 20; ++part) {
            QByteArray bytes;
            for (unsigned long size = random() % 30; size > 0; --size) {
                bytes += letters.at(static_cast<int>(random() % 10));
            }
            all += bytes;
            for (const QByteArray &piece : cutter.add(bytes)) {
                QVERIFY(!piece.isEmpty() && piece.size() <= FrameCutter::kLongest);
                out += piece;
            }
        }
        QCOMPARE(out + cutter.takeRest(), all);
    }
}

QTEST_GUILESS_MAIN(TestFrameCutter)
#include "test_frame_cutter.moc"
