#include "plc/faults/faults.h"

#include "plc/support/wire_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

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

static const QByteArray upper = wire("[ACK]01RSS01020001[ETX]");
static const struct
{
    const char *what;
    FaultKind kind;
    int value;
    QByteArray answer;
    const char *sent;
} kFrames[] = {
    {"wrong-check", FaultKind::WrongCheck, 0, kAnswer, "[ACK]01rSS01020001[ETX]00"},
    {"wrong-check where there is none", FaultKind::WrongCheck, 0, upper, "[ACK]01RSS01020001[ETX]"},
    {"wrong-station 5", FaultKind::WrongStation, 5, kAnswer, "[ACK]05rSS01020001[ETX]0A"},
    {"wrong-station next", FaultKind::WrongStation, -1, kAnswer, "[ACK]02rSS01020001[ETX]07"},
    {"wrong-station without check", FaultKind::WrongStation, 31, upper, "[ACK]1FRSS01020001[ETX]"},
    {"wrong-station behind 31 is 0", FaultKind::WrongStation, -1, wire("[ACK]1FRSS01020001[ETX]"),
     "[ACK]00RSS01020001[ETX]"},
    {"truncate 4", FaultKind::Truncate, 4, kAnswer, "[ACK]01r"},
    {"truncate 0", FaultKind::Truncate, 0, kAnswer, ""},
    {"truncate beyond the end", FaultKind::Truncate, 99, upper, "[ACK]01RSS01020001[ETX]"},
    {"oversize 20", FaultKind::Oversize, 20, kAnswer, "[ACK]01rSS01020001000[ETX]96"},
    {"oversize without check", FaultKind::Oversize, 20, upper, "[ACK]01RSS0102000100000[ETX]"},
    {"oversize below the length", FaultKind::Oversize, 3, upper, "[ACK]01RSS01020001[ETX]"},
    {"oversize of a refusal", FaultKind::Oversize, 13, wire("[NAK]01RSS1132[ETX]"),
     "[NAK]01RSS113200[ETX]"},
};

static const struct
{
    const char *what;
    int low, high;
} kDelay[] = {
    {"fixed", 200, 200},
    {"random", 50, 200},
    {"none", 0, 0},
};

static const struct
{
    const char *what;
    int before, after;
} kNoise[] = {
    {"before", 1000, 0},
    {"after", 0, 1000},
    {"both", 5, 3},
};

static const struct
{
    const char *what;
    int percent, least, most;
} kPercent[] = {
    {"never", 0, 0, 0},
    {"always", 100, 10000, 10000},
    // Six standard deviations around 1000.
    {"10%", 10, 820, 1180},
};

static const struct
{
    const char *what;
    int low, high;
} kSenselessValuesAreHarmless[] = {
    {"negative", -1000, -500},
    {"swapped", 9, 2},
    {"widest", -0x7FFFFFFF - 1, 0x7FFFFFFF},
    {"huge", 0x7FFFFFFF, 0x7FFFFFFF},
};

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frames_data() { addRows(kFrames); }
    void frames()
    {
        const auto &row = currentRow(kFrames);
        Faults faults;
        const Fault fault{row.kind, row.value, row.value};
        QCOMPARE(all(faults.disturb({fault}, kRequest, row.answer)), wire(row.sent));
    }

    void noErrorWithoutFault()
    {
        Faults faults;
        QVERIFY(faults.draw().empty());
        const std::vector<Chunk> chunks = faults.disturb({}, kRequest, kAnswer);
        QCOMPARE(chunks.size(), std::size_t(1));
        QCOMPARE(chunks[0].delayMs, 0);
        QCOMPARE(chunks[0].bytes, kAnswer);
    }

    void silenceStaysSilent()
    {
        Faults faults;
        const std::vector<Fault> fired = {usualFault(FaultKind::Echo),
                                          usualFault(FaultKind::NoiseBefore),
                                          usualFault(FaultKind::Oversize)};
        QVERIFY(faults.disturb(fired, kRequest, QByteArray()).empty());
    }

    void delay_data() { addRows(kDelay); }
    void delay()
    {
        const auto &row = currentRow(kDelay);
        Faults faults;
        int shortest = row.high;
        int longest = row.low;
        for (int i = 0; i < 2000; ++i) {
            const auto chunks =
                faults.disturb({{FaultKind::Delay, row.low, row.high}}, kRequest, kAnswer);
            QCOMPARE(chunks.size(), std::size_t(1));
            QCOMPARE(chunks[0].bytes, kAnswer);
            shortest = std::min(shortest, chunks[0].delayMs);
            longest = std::max(longest, chunks[0].delayMs);
        }
        QCOMPARE(shortest, row.low);
        QCOMPARE(longest, row.high);
    }

    void splitIsByteByByte()
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

    void echoComesFirst()
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

    void copiesFollowAtOnce()
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

    // Other faults change the answer before it is copied, and what surrounds it does not come
    // between.
    void copiesAreWhole()
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

    void randomCopies()
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

    void noise_data() { addRows(kNoise); }
    void noise()
    {
        const auto &row = currentRow(kNoise);
        Faults faults;
        const auto chunks = faults.disturb({{FaultKind::NoiseBefore, row.before, row.before},
                                            {FaultKind::NoiseAfter, row.after, row.after}},
                                           kRequest, kAnswer);
        const QByteArray sent = all(chunks);
        QCOMPARE(int(sent.size()), row.before + int(kAnswer.size()) + row.after);
        QCOMPARE(sent.mid(row.before, kAnswer.size()), kAnswer);
        const QByteArray around = sent.left(row.before) + sent.mid(row.before + kAnswer.size());
        for (const char byte : around) {
            QVERIFY(!wire("[ENQ][ACK][NAK][ETX][EOT]").contains(byte));
        }
        QVERIFY(around.count(around[0]) < around.size());
    }

    void randomTruncation()
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

    void oversize()
    {
        Faults faults;
        const QByteArray sent =
            all(faults.disturb({usualFault(FaultKind::Oversize)}, kRequest, kAnswer));
        QCOMPARE(int(sent.size()), 300);
        QCOMPARE(sent.mid(297, 1), wire("[ETX]"));
        // The block check of the longer frame is right: 283 zeros more than kAnswer's.
        QCOMPARE(sent.right(2), QByteArray("16"));
    }

    void times()
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

    void percent_data() { addRows(kPercent); }
    void percent()
    {
        const auto &row = currentRow(kPercent);
        Faults faults;
        faults.add({FaultKind::Silence, 0, 0, -1, row.percent});
        int fired = 0;
        for (int i = 0; i < 10000; ++i) {
            fired += faults.draw().empty() ? 0 : 1;
        }
        QVERIFY2(fired >= row.least && fired <= row.most, qPrintable(QString::number(fired)));
    }

    void sameSeedSameFaults()
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

    void senselessValuesAreHarmless_data() { addRows(kSenselessValuesAreHarmless); }
    void senselessValuesAreHarmless()
    {
        const auto &row = currentRow(kSenselessValuesAreHarmless);
        for (int kind = 0; kind <= int(FaultKind::Repeat); ++kind) {
            Faults faults;
            const auto chunks = faults.disturb({{static_cast<FaultKind>(kind), row.low, row.high}},
                                               kRequest, kAnswer);
            QVERIFY(all(chunks).size() <= 4096 + kAnswer.size());
            for (const Chunk &chunk : chunks) {
                QVERIFY(chunk.delayMs >= 0);
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestFaults)
#include "test_faults.moc"
