#include "plc/faults.h"

#include "wire_text.h"

#include <QtTest>

using namespace plc;

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frames_data();
    void frames();
    void noErrorWithoutFault();
    void silenceStaysSilent();
    void delay_data();
    void delay();
    void splitIsByteByByte();
    void echoComesFirst();
    void copiesFollowAtOnce();
    void copiesAreWhole();
    void randomCopies();
    void noise_data();
    void noise();
    void randomTruncation();
    void oversize();
    void times();
    void percent_data();
    void percent();
    void sameSeedSameFaults();
    void senselessValuesAreHarmless_data();
    void senselessValuesAreHarmless();
};

namespace {

const QByteArray kRequest = wire("[ENQ]01rSS0107%DW0100[EOT]CB");
const QByteArray kAnswer = wire("[ACK]01rSS01020001[ETX]06");

QByteArray all(const std::vector<Chunk> &chunks)
{
    QByteArray bytes;
    for (const Chunk &chunk : chunks) {
        bytes += chunk.bytes;
    }
    return bytes;
}

} // namespace

void TestFaults::frames_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("sent");
    const QByteArray upper = wire("[ACK]01RSS01020001[ETX]");
    const auto row = [](const char *name, FaultKind kind, int value, const QByteArray &answer,
                        const char *sent) {
        QTest::newRow(name) << int(kind) << value << answer << wire(sent);
    };
    row("wrong-check", FaultKind::WrongCheck, 0, kAnswer, "[ACK]01rSS01020001[ETX]00");
    row("wrong-check where there is none", FaultKind::WrongCheck, 0, upper,
        "[ACK]01RSS01020001[ETX]");
    row("wrong-station 5", FaultKind::WrongStation, 5, kAnswer, "[ACK]05rSS01020001[ETX]0A");
    row("wrong-station next", FaultKind::WrongStation, -1, kAnswer, "[ACK]02rSS01020001[ETX]07");
    row("wrong-station without check", FaultKind::WrongStation, 31, upper,
        "[ACK]1FRSS01020001[ETX]");
    row("wrong-station behind 31 is 0", FaultKind::WrongStation, -1,
        wire("[ACK]1FRSS01020001[ETX]"), "[ACK]00RSS01020001[ETX]");
    row("truncate 4", FaultKind::Truncate, 4, kAnswer, "[ACK]01r");
    row("truncate 0", FaultKind::Truncate, 0, kAnswer, "");
    row("truncate beyond the end", FaultKind::Truncate, 99, upper, "[ACK]01RSS01020001[ETX]");
    row("oversize 20", FaultKind::Oversize, 20, kAnswer, "[ACK]01rSS01020001000[ETX]96");
    row("oversize without check", FaultKind::Oversize, 20, upper, "[ACK]01RSS0102000100000[ETX]");
    row("oversize below the length", FaultKind::Oversize, 3, upper, "[ACK]01RSS01020001[ETX]");
    row("oversize of a refusal", FaultKind::Oversize, 13, wire("[NAK]01RSS1132[ETX]"),
        "[NAK]01RSS113200[ETX]");
}

void TestFaults::frames()
{
    QFETCH(int, kind);
    QFETCH(int, value);
    QFETCH(QByteArray, answer);
    Faults faults;
    const Fault fault{static_cast<FaultKind>(kind), value, value};
    QTEST(all(faults.disturb({fault}, kRequest, answer)), "sent");
}

void TestFaults::noErrorWithoutFault()
{
    Faults faults;
    QVERIFY(faults.draw().empty());
    const std::vector<Chunk> chunks = faults.disturb({}, kRequest, kAnswer);
    QCOMPARE(chunks.size(), std::size_t(1));
    QCOMPARE(chunks[0].delayMs, 0);
    QCOMPARE(chunks[0].bytes, kAnswer);
}

void TestFaults::silenceStaysSilent()
{
    Faults faults;
    const std::vector<Fault> fired = {usualFault(FaultKind::Echo),
                                      usualFault(FaultKind::NoiseBefore),
                                      usualFault(FaultKind::Oversize)};
    QVERIFY(faults.disturb(fired, kRequest, QByteArray()).empty());
}

void TestFaults::delay_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::newRow("fixed") << 200 << 200;
    QTest::newRow("random") << 50 << 200;
    QTest::newRow("none") << 0 << 0;
}

void TestFaults::delay()
{
    QFETCH(int, low);
    QFETCH(int, high);
    Faults faults;
    int shortest = high;
    int longest = low;
    for (int i = 0; i < 2000; ++i) {
        const auto chunks = faults.disturb({{FaultKind::Delay, low, high}}, kRequest, kAnswer);
        QCOMPARE(chunks.size(), std::size_t(1));
        QCOMPARE(chunks[0].bytes, kAnswer);
        shortest = std::min(shortest, chunks[0].delayMs);
        longest = std::max(longest, chunks[0].delayMs);
    }
    QCOMPARE(shortest, low);
    QCOMPARE(longest, high);
}

void TestFaults::splitIsByteByByte()
{
    Faults faults;
    const std::vector<Fault> fired = {{FaultKind::Split, 3, 3}, {FaultKind::Delay, 40, 40}};
    const auto chunks = faults.disturb(fired, kRequest, kAnswer);
    QCOMPARE(int(chunks.size()), int(kAnswer.size()));
    QCOMPARE(all(chunks), kAnswer);
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        QCOMPARE(int(chunks[i].bytes.size()), 1);
        QCOMPARE(chunks[i].delayMs, i == 0 ? 40 : 3);
    }
}

void TestFaults::echoComesFirst()
{
    Faults faults;
    const std::vector<Fault> fired = {{FaultKind::Delay, 40, 40}, usualFault(FaultKind::Echo)};
    const auto chunks = faults.disturb(fired, kRequest, kAnswer);
    QCOMPARE(chunks.size(), std::size_t(2));
    QCOMPARE(chunks[0].delayMs, 0);
    QCOMPARE(chunks[0].bytes, kRequest);
    QCOMPARE(chunks[1].delayMs, 40);
    QCOMPARE(chunks[1].bytes, kAnswer);
}

void TestFaults::copiesFollowAtOnce()
{
    Faults faults;
    const std::vector<Fault> fired = {{FaultKind::Repeat, 2, 2}, {FaultKind::Delay, 40, 40}};
    const auto chunks = faults.disturb(fired, kRequest, kAnswer);
    QCOMPARE(chunks.size(), std::size_t(3));
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        QCOMPARE(chunks[i].bytes, kAnswer);
        QCOMPARE(chunks[i].delayMs, i == 0 ? 40 : 0);
    }
}

// Other faults change the answer before it is copied, and what surrounds it does not come between.
void TestFaults::copiesAreWhole()
{
    Faults faults;
    const Fault once = usualFault(FaultKind::Repeat);
    const QByteArray other = wire("[ACK]05rSS01020001[ETX]0A");
    QCOMPARE(all(faults.disturb({once, {FaultKind::WrongStation, 5, 5}}, kRequest, kAnswer)),
             other + other);
    QCOMPARE(all(faults.disturb({once, {FaultKind::Truncate, 0, 0}}, kRequest, kAnswer)),
             QByteArray());
    QCOMPARE(all(faults.disturb({once, usualFault(FaultKind::Echo)}, kRequest, kAnswer)),
             kRequest + kAnswer + kAnswer);
    const std::vector<Fault> noisy = {
        once, {FaultKind::NoiseBefore, 5, 5}, {FaultKind::NoiseAfter, 3, 3}};
    const QByteArray sent = all(faults.disturb(noisy, kRequest, kAnswer));
    QCOMPARE(sent.mid(5, sent.size() - 5 - 3), kAnswer + kAnswer);
    const auto bytes = faults.disturb({once, {FaultKind::Split, 3, 3}}, kRequest, kAnswer);
    QCOMPARE(all(bytes), kAnswer + kAnswer);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        QCOMPARE(bytes[i].delayMs, i == 0 ? 0 : 3);
    }
}

void TestFaults::randomCopies()
{
    Faults faults;
    int seen[kMaxCopies + 2] = {};
    for (int i = 0; i < 1000; ++i) {
        const auto chunks = faults.disturb({{FaultKind::Repeat, 1, 3}}, kRequest, kAnswer);
        QVERIFY(chunks.size() <= 4);
        ++seen[chunks.size()];
    }
    QVERIFY(seen[0] == 0 && seen[1] == 0);
    QVERIFY(seen[2] > 200 && seen[3] > 200 && seen[4] > 200);
}

void TestFaults::noise_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow("before") << 1000 << 0;
    QTest::newRow("after") << 0 << 1000;
    QTest::newRow("both") << 5 << 3;
}

void TestFaults::noise()
{
    QFETCH(int, before);
    QFETCH(int, after);
    Faults faults;
    const auto chunks = faults.disturb(
        {{FaultKind::NoiseBefore, before, before}, {FaultKind::NoiseAfter, after, after}}, kRequest,
        kAnswer);
    const QByteArray sent = all(chunks);
    QCOMPARE(int(sent.size()), before + int(kAnswer.size()) + after);
    QCOMPARE(sent.mid(before, kAnswer.size()), kAnswer);
    const QByteArray around = sent.left(before) + sent.mid(before + kAnswer.size());
    for (const char byte : around) {
        QVERIFY(!wire("[ENQ][ACK][NAK][ETX][EOT]").contains(byte));
    }
    QVERIFY(around.count(around[0]) < around.size());
}

void TestFaults::randomTruncation()
{
    Faults faults;
    bool seen[64] = {};
    for (int i = 0; i < 2000; ++i) {
        const QByteArray sent =
            all(faults.disturb({usualFault(FaultKind::Truncate)}, kRequest, kAnswer));
        QVERIFY(sent.size() < kAnswer.size());
        QCOMPARE(kAnswer.left(sent.size()), sent);
        seen[sent.size()] = true;
    }
    QCOMPARE(int(std::count(std::begin(seen), std::end(seen), true)), int(kAnswer.size()));
}

void TestFaults::oversize()
{
    Faults faults;
    const QByteArray sent =
        all(faults.disturb({usualFault(FaultKind::Oversize)}, kRequest, kAnswer));
    QCOMPARE(int(sent.size()), 300);
    QCOMPARE(sent.mid(297, 1), wire("[ETX]"));
    // The block check of the longer frame is right: 283 zeros more than kAnswer's.
    QCOMPARE(sent.right(2), QByteArray("16"));
}

void TestFaults::times()
{
    Faults faults;
    Fault fault = usualFault(FaultKind::Silence);
    fault.times = 3;
    faults.add(fault);
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(Faults::find(faults.draw(), FaultKind::Silence).has_value(), i < 3);
    }
    faults.add(usualFault(FaultKind::Echo));
    QCOMPARE(faults.draw().size(), std::size_t(1));
    faults.clear();
    QVERIFY(faults.draw().empty());
}

void TestFaults::percent_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("never") << 0 << 0 << 0;
    QTest::newRow("always") << 100 << 10000 << 10000;
    // Six standard deviations around 1000.
    QTest::newRow("10%") << 10 << 820 << 1180;
}

void TestFaults::percent()
{
    QFETCH(int, percent);
    QFETCH(int, least);
    QFETCH(int, most);
    Faults faults;
    faults.add({FaultKind::Silence, 0, 0, -1, percent});
    int fired = 0;
    for (int i = 0; i < 10000; ++i) {
        fired += faults.draw().empty() ? 0 : 1;
    }
    QVERIFY2(fired >= least && fired <= most, qPrintable(QString::number(fired)));
}

void TestFaults::sameSeedSameFaults()
{
    const auto run = [](Faults faults) {
        faults.add({FaultKind::NoiseBefore, 0, 20, -1, 50});
        faults.add({FaultKind::Delay, 0, 1000});
        QByteArray sum;
        for (int i = 0; i < 50; ++i) {
            for (const Chunk &chunk : faults.disturb(faults.draw(), kRequest, kAnswer)) {
                sum += QByteArray::number(chunk.delayMs) + chunk.bytes;
            }
        }
        return sum;
    };
    QCOMPARE(run(Faults(5)), run(Faults(5)));
    QVERIFY(run(Faults(5)) != run(Faults(6)));
    Faults reseeded(6);
    reseeded.setSeed(5);
    QCOMPARE(run(reseeded), run(Faults(5)));
}

void TestFaults::senselessValuesAreHarmless_data()
{
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    QTest::newRow("negative") << -1000 << -500;
    QTest::newRow("swapped") << 9 << 2;
    QTest::newRow("widest") << (-0x7FFFFFFF - 1) << 0x7FFFFFFF;
    QTest::newRow("huge") << 0x7FFFFFFF << 0x7FFFFFFF;
}

void TestFaults::senselessValuesAreHarmless()
{
    QFETCH(int, low);
    QFETCH(int, high);
    for (int kind = 0; kind <= int(FaultKind::Repeat); ++kind) {
        Faults faults;
        const auto chunks =
            faults.disturb({{static_cast<FaultKind>(kind), low, high}}, kRequest, kAnswer);
        QVERIFY(all(chunks).size() <= 4096 + kAnswer.size());
        for (const Chunk &chunk : chunks) {
            QVERIFY(chunk.delayMs >= 0);
        }
    }
}

QTEST_APPLESS_MAIN(TestFaults)
#include "test_faults.moc"
