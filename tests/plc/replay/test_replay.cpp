#include "plc/replay/replay.h"

#include "plc/support/recorded_line.h"
#include "support/rows.h"

using namespace plc;

namespace {

const char kRead[] = "[ENQ]01RSS0107%DW0100[EOT]";
const char kOther[] = "[ENQ]02RSS0107%DW0100[EOT]";
const char kOne[] = "[ACK]01RSS01020001[ETX]";
const char kTwo[] = "[ACK]01RSS01020002[ETX]";

/** "5:abc 0:de": the delay of each chunk, and its bytes. */
QByteArray text(const std::vector<Chunk> *chunks)
{
    if (chunks == nullptr) {
        return "unknown";
    }
    QByteArray all;
    for (const Chunk &chunk : *chunks) {
        all += (all.isEmpty() ? "" : " ") + QByteArray::number(chunk.delayMs) + ':' + chunk.bytes;
    }
    return all;
}

QByteArray text(int ms, const char *bytes)
{
    return QByteArray::number(ms) + ':' + wire(bytes);
}

} // namespace

class TestReplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersInTheOrderOfTheCapture()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, kRead, {{7, "zz"}, {3, kOne}});
        addExchange(line, 100, kOther, {});
        addExchange(line, 200, kRead, {});
        addExchange(line, 300, kRead, {{0, kTwo}});
        const Replay replay(line);
        QCOMPARE(text(replay.answer(wire(kRead), 0)), "7:zz " + text(3, kOne));
        QCOMPARE(text(replay.answer(wire(kRead), 1)), QByteArray());
        QCOMPARE(text(replay.answer(wire(kRead), 2)), text(0, kTwo));
        QCOMPARE(text(replay.answer(wire(kRead), 3)), text(0, kTwo));
        QCOMPARE(text(replay.answer(wire(kRead), 1000000000)), text(0, kTwo));
        QCOMPARE(text(replay.answer(wire(kOther), 0)), QByteArray());
        QCOMPARE(text(replay.answer("\x05", 0)), QByteArray("unknown"));
        QCOMPARE(replay.stations(), std::vector<int>{1});
    }

    // What would have come after the end of the capture is not silence.
    void takesNoOpenEndForSilence()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, kRead, {{0, kOne}});
        addExchange(line, 100, kRead, {});
        QCOMPARE(text(Replay(line).answer(wire(kRead), 1)), text(0, kOne));
        cnet::RecordedLine open;
        addExchange(open, 0, kRead, {});
        QCOMPARE(text(Replay(open).answer(wire(kRead), 0)), QByteArray());
    }

    void answersAsFastAsIsAsked()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, kRead, {{500, kOne}});
        addExchange(line, 1000, kRead, {{500, kTwo}});
        const Replay twice(line, 2);
        QCOMPARE(text(twice.answer(wire(kRead), 0)), text(250, kOne));
        QCOMPARE(twice.changes().front().atMs, qint64(750));
        const Replay replay(line, kFullSpeed);
        QCOMPARE(text(replay.answer(wire(kRead), 0)), text(0, kOne));
        QCOMPARE(replay.changes().size(), std::size_t(1));
        QCOMPARE(replay.changes().front().atMs, qint64(0));
    }

    void boundsWhatComesForOneRequest()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, kRead,
                    {{3600000, QByteArray(1000, 'z')}, {-5, QByteArray(1000, 'z')}});
        for (int i = 0; i < 100; ++i) {
            line.exchanges.front().answers.push_back(line.exchanges.front().answers.back());
        }
        const Replay replay(line);
        const std::vector<Chunk> &chunks = *replay.answer(wire(kRead), 0);
        QCOMPARE(chunks.size(), std::size_t(16));
        QCOMPARE(chunks.at(0).delayMs, Replay::kLongestPauseMs);
        QCOMPARE(chunks.at(1).delayMs, 0);
    }

    void knowsTheMemory()
    {
        cnet::RecordedLine line;
        addExchange(line, 0, kRead, {{5, kOne}});
        addExchange(line, 100, kRead, {{5, "zz"}, {1, kOne}});
        addExchange(line, 200, kRead, {{5, kTwo}});
        addExchange(line, 300, "[ENQ]01WSB07%DW0100020003FFFF[EOT]", {{5, "[ACK]01WSB[ETX]"}});
        addExchange(line, 400, kOther, {{5, "[NAK]02RSS1132[ETX]"}});
        addExchange(line, 500, "[ENQ]FFRSS0107%DW0100[EOT]", {{5, "[NAK]FFRSS1132[ETX]"}});
        const Replay replay(line);
        QCOMPARE(replay.firstValues().size(), std::size_t(2));
        QCOMPARE(replay.firstValues().at(0).value, quint16(1));
        QCOMPARE(replay.firstValues().at(1).point.address, 101);
        QCOMPARE(replay.changes().size(), std::size_t(2));
        QCOMPARE(replay.changes().at(0).atMs, qint64(205));
        QCOMPARE(replay.changes().at(0).value.value, quint16(2));
        QCOMPARE(replay.changes().at(1).atMs, qint64(305));
        QCOMPARE(replay.changes().at(1).value.value, quint16(3));
        QCOMPARE(replay.stations(), (std::vector<int>{1, 2}));
    }
};

QTEST_APPLESS_MAIN(TestReplay)
#include "test_replay.moc"
