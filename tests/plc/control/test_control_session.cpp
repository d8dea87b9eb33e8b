#include "plc/control/control_session.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const char *const kOk = "ok\n";
static const char *const kTooLong = "error: a line is longer than 4096 bytes\n";

static const Case<QByteArray, QByteArray> kTalks[] = {
    {"one", "set D_W:1=7\n", kOk},
    {"two at once", "set D_W:1=7\nshow D_W:1\n", "ok\n1/D_W:1 = 7\n"},
    {"line ends of other systems", "set D_W:1=7\r\n show\tD_W:1 \r\n", "ok\n1/D_W:1 = 7\n"},
    {"not whole yet", "set D_W:1=7", ""},
    {"remarks", "\n  \n# set D_W:1=7\nshow D_W:1\n", "1/D_W:1 = 0\n"},
    {"mistake", "sing\nshow D_W:1\n",
     "error: \"sing\": expected one of set, show, ramp, sine, square, walk, counter, motions, "
     "fault, faults, clear, clients, stations, save, help, quit\n1/D_W:1 = 0\n"},
    {"json and back", "json\nset D_W:1=7\ntext\nset D_W:1=7\n",
     "{\"ok\":true}\n{\"command\":\"set\",\"ok\":true}\nok\nok\n"},
    {"mistake in json", "json\nset\n",
     "{\"ok\":true}\n{\"command\":\"set\",\"error\":\"set: expected [STATION/]REGISTER:ADDRESS="
     "VALUE[,VALUE...]...\",\"ok\":false}\n"},
    {"terminal codes", "set \x1b[2J\n",
     "error: \"?[2J\": expected [STATION/]REGISTER:ADDRESS=VALUE[,VALUE...], for example "
     "M_W:3=0x1234\n"},
};

static const Case<QByteArray, const char *> kNonsense[] = {
    {"endless line", QByteArray(4097, 'x'), "a line is longer than 4096 bytes"},
    {"endless line with its end", QByteArray(4097, ' ') + "\nset D_W:1=7\n", "longer than 4096"},
    {"web page", "GET / HTTP/1.1\r\nset D_W:1=7\n", "no web server"},
    {"web form", "POST /x HTTP/1.0\r\n\r\nset D_W:1=7\n", "no web server"},
};

// Behind them comes "show D_W:1".
static const Case<QByteArray, QByteArray> kLongLines[] = {
    {"with its end", QByteArray(4097, 'x') + '\n', kTooLong},
    {"much longer", QByteArray(20000, 'x') + '\n', kTooLong},
    {"a command at its end", QByteArray(9000, 'x') + " set D_W:1=7\n", kTooLong},
    {"two", QByteArray(5000, 'x') + '\n' + QByteArray(5000, 'y') + '\n',
     QByteArray(kTooLong) + kTooLong},
};

class TestControlSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bus = Bus();
        m_bus.add(1);
        m_target.bus = &m_bus;
    }

    void talks_data() { addRows(kTalks); }
    void talks()
    {
        const auto &row = currentRow(kTalks);
        ControlSession session(m_target, ReplyFormat::Text);
        session.add(row.given);
        QCOMPARE(repliesOf(session), row.expected);
        QVERIFY(!session.isOver());
    }

    void takesBytesOneByOne()
    {
        ControlSession session(m_target, ReplyFormat::Text);
        QByteArray replies;
        for (const char byte : QByteArray("set D_W:1=7\nshow D_W:1\n")) {
            session.add(QByteArray(1, byte));
            replies += repliesOf(session);
        }
        QCOMPARE(replies, QByteArray("ok\n1/D_W:1 = 7\n"));
    }

    void theLastLineMayLackItsEnd()
    {
        ControlSession session(m_target, ReplyFormat::Json);
        session.add("stations");
        QVERIFY(!session.next());
        session.end();
        QVERIFY(session.next()->startsWith("{\"command\":\"stations\""));
        QVERIFY(!session.next());
    }

    void nonsenseEndsIt_data() { addRows(kNonsense); }
    void nonsenseEndsIt()
    {
        const auto &row = currentRow(kNonsense);
        ControlSession session(m_target, ReplyFormat::Text);
        session.add(row.given);
        const QByteArray replies = repliesOf(session);
        QVERIFY2(replies.count('\n') == 1 && replies.contains(row.expected), replies.constData());
        QVERIFY(session.isOver());
        session.add("\nset D_W:1=7\n");
        QVERIFY(!session.next());
        QCOMPARE(*m_bus.find(1)->station.memory().word('D', 1), quint16(0));
    }

    void aLongLineMayBeLeftOut_data() { addRows(kLongLines); }
    void aLongLineMayBeLeftOut()
    {
        const auto &row = currentRow(kLongLines);
        const QByteArray all = row.given + "show D_W:1\n";
        for (const int step : {1, 4096, static_cast<int>(all.size())}) {
            ControlSession session(m_target, ReplyFormat::Text, LongLine::IsLeftOut);
            QByteArray replies;
            for (int i = 0; i < all.size(); i += step) {
                session.add(all.mid(i, step));
                replies += repliesOf(session);
            }
            QCOMPARE(replies, row.expected + "1/D_W:1 = 0\n");
        }
    }

    void anEndlessLineEndsIt()
    {
        ControlSession session(m_target, ReplyFormat::Text, LongLine::IsLeftOut);
        QByteArray replies;
        for (int size = 0; size <= ControlSession::kEndlessLine; size += 4096) {
            QVERIFY(!session.isOver());
            session.add(QByteArray(4096, '\0'));
            replies += repliesOf(session);
        }
        QVERIFY(session.isOver());
        session.add("\nset D_W:1=7\n");
        QCOMPARE(replies + repliesOf(session), QByteArray(kTooLong));
    }

    void theLongestLineIsTaken()
    {
        ControlSession session(m_target, ReplyFormat::Text);
        QByteArray line = "set D_W:1=7";
        line += QByteArray(ControlSession::kLongestLine - line.size(), ' ');
        session.add(line);
        QVERIFY(!session.next());
        session.add("\n");
        QCOMPARE(repliesOf(session), QByteArray(kOk));
    }

private:
    static QByteArray repliesOf(ControlSession &session)
    {
        QByteArray replies;
        while (const auto reply = session.next()) {
            replies += *reply;
        }
        return replies;
    }

    Bus m_bus;
    ControlTarget m_target;
};

QTEST_APPLESS_MAIN(TestControlSession)
#include "test_control_session.moc"
