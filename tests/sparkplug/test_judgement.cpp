#include "sparkplug/support/good_stream.h"
#include "sparkplug/wire/judgement.h"
#include "sparkplug/wire/stream_recorder.h"

#include <QtTest>

using namespace spcheck;

/** What is recorded is what was said, and protoc's opinion counts. */
class TestJudgement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNothingWrong();
    void hearsProtoc_data();
    void hearsProtoc();
    void knowsOfConnectsThatNobodyHeard_data();
    void knowsOfConnectsThatNobodyHeard();
    void knowsOfClocksThatAreSet();
    void putsConnectionsInOrder();

private:
    static QStringList faultsOf(const GoodStream &good)
    {
        return spcheck::faultsOf(good.stream(), {"plant", "gate", "scada"});
    }
};

void TestJudgement::findsNothingWrong()
{
    QCOMPARE(faultsOf(GoodStream()), QStringList());
}

void TestJudgement::hearsProtoc_data()
{
    QTest::addColumn<QByteArray>("behind");
    QTest::newRow("a field that there is not") << QByteArray("\x12\x03\xa0\x01\x05", 5);
    QTest::newRow("a number that the field cannot hold")
        << QByteArray("\x12\x07\x50\x80\x80\x80\x80\x80\x01", 9);
    QTest::newRow("no message") << QByteArray("\x12\x7f", 2);
}

// Behind a message, as one more of its metrics.
void TestJudgement::hearsProtoc()
{
    QFETCH(QByteArray, behind);
    Stream stream = GoodStream().stream();
    for (Packet &packet : stream) {
        if (packet.message.topic.contains("/DDATA/")) {
            packet.message.payload += behind;
        }
    }
    QVERIFY(!otherOpinions(stream).isEmpty());
}

void TestJudgement::knowsOfConnectsThatNobodyHeard_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isFine");
    QTest::newRow("none, and a gap") << -1 << 2 << false;
    QTest::newRow("a connection that was refused") << int(Packet::Kind::Attempted) << 2 << true;
    QTest::newRow("the same number again") << int(Packet::Kind::Attempted) << 0 << false;
    QTest::newRow("a gap that is too wide") << int(Packet::Kind::Attempted) << 3 << false;
    QTest::newRow("another start") << int(Packet::Kind::Restarted) << 2 << true;
    QTest::newRow("another start from 0") << int(Packet::Kind::Restarted) << 0 << true;
    QTest::newRow("another start from somewhere") << int(Packet::Kind::Restarted) << 7 << false;
}

void TestJudgement::knowsOfConnectsThatNobodyHeard()
{
    QFETCH(int, kind);
    QFETCH(int, number);
    QFETCH(bool, isFine);
    GoodStream good;
    good.will("reconnect").metrics[0].number = quint64(number);
    good.metric("nbirth-later", 0).number = quint64(number);
    Stream stream = good.stream();
    if (kind >= 0) {
        Packet packet;
        packet.kind = static_cast<Packet::Kind>(kind);
        for (int i = int(stream.size()) - 1; i >= 0; --i) {
            if (stream.at(i).kind == Packet::Kind::Connect) {
                stream.insert(i, packet);
                break;
            }
        }
    }
    QCOMPARE(spcheck::faultsOf(stream, {"plant", "gate", "scada"}).isEmpty(), isFine);
}

void TestJudgement::knowsOfClocksThatAreSet()
{
    GoodStream good;
    good.metric("history", 0).timestamp = 1001U;
    QCOMPARE(int(faultsOf(good).size()), 1);
    const spcheck::Subject subject{"plant", "gate", "scada", false};
    QCOMPARE(spcheck::faultsOf(good.stream(), subject), QStringList());
}

// The end of one is heard late.
void TestJudgement::putsConnectionsInOrder()
{
    const RawPacket ping{RawPacket::Disconnect, 0, QByteArray()};
    StreamRecorder recorder;
    const int first = recorder.begin();
    const int silent = recorder.begin();
    recorder.noteRestart();
    const int second = recorder.begin();
    recorder.hearNode(second, ping.bytes());
    recorder.hearNode(first, ping.bytes().left(1));
    recorder.hearNode(first, ping.bytes().mid(1));
    recorder.end(silent);
    recorder.end(first);
    QList<int> kinds;
    for (const Packet &packet : recorder.stream()) {
        kinds.append(int(packet.kind));
    }
    using Kind = Packet::Kind;
    QCOMPARE(kinds, QList<int>({int(Kind::Disconnect), int(Kind::Closed), int(Kind::Attempted),
                                int(Kind::Restarted), int(Kind::Disconnect)}));
}

QTEST_APPLESS_MAIN(TestJudgement)
#include "test_judgement.moc"
