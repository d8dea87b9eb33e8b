#include "program.h"
#include "support/capture_file.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>

/** Captures replayed by the real programs, each against the other. */
class TestReplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void capturedFaultsComeAgain_data();
    void capturedFaultsComeAgain();
    void findsTheOneRegisterThatChanged();
    void findsWhatIsRefusedNowAndWhatIsSilent();
    void sendsWritesWhereAsked();
    void keepsTheTime();
    void waitsForWhatCameLate();
    void saysThatTheLinkIsLost();
    void plcAnswersOthersFromTheMemory();
    void plcChoosesALine();
    void driverGetsTheRecordedAnswers();
    void driverMakesTheSameOfThem();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    bool serve(const QString &arguments);
    int panel(const QString &line);
    QByteArray printed() { return m_panel->lines().join('\n'); }
    QString link() const { return QLatin1String("tcp:") + m_plc->place(); }

    QTemporaryDir m_directory;
    std::unique_ptr<PlcProgram> m_plc;
    std::unique_ptr<Program> m_panel; ///< the latest one
};

namespace {

const int kDeviceFailed = 1;
const int kUsage = 2;

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

const QByteArray kReadOne("\x05"
                          "01RSB08%DW0010001\x04");
const QByteArray kReadTwo("\x05"
                          "02RSB08%DW0010001\x04");
const QByteArray kWrite("\x05"
                        "01WSB08%DW00200010007\x04");
const QByteArray kOne("\x06"
                      "01RSB01020001\x03");
const QByteArray kSeven("\x06"
                        "01RSB01020007\x03");
const QByteArray kTwo("\x06"
                      "02RSB01020002\x03");
const QByteArray kDone("\x06"
                       "01WSB\x03");

} // namespace

bool TestReplay::serve(const QString &arguments)
{
    m_plc = std::make_unique<PlcProgram>();
    return m_plc->serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")}, words(arguments));
}

// @return exit code
int TestReplay::panel(const QString &line)
{
    m_panel = std::make_unique<Program>();
    return m_panel->start(QLatin1String(CNET_PANEL), words(line)) ? m_panel->exitCode() : -1;
}

void TestReplay::capturedFaultsComeAgain_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("byPlc");
    QTest::newRow("as the panel wrote it") << QString() << false;
    QTest::newRow("as the PLC wrote it") << QString() << true;
    QTest::newRow("as a serial recorder has it")
        << QString::fromLatin1("--capture-as rtac") << false;
}

// Late answers, silence, copies, noise, wrong checks: a support case is one file.
void TestReplay::capturedFaultsComeAgain()
{
    QFETCH(QString, format);
    QFETCH(bool, byPlc);
    const QString file = path("case.pcapng");
    const QString capture = QString::fromLatin1("--capture %1 %2 ").arg(file, format);
    QVERIFY(serve(QString::fromLatin1("--ramp D_W:100-119@50 --fault noise-before=3@30% --fault "
                                      "truncate@15% --fault wrong-check@15% --fault refuse@10% "
                                      "--fault repeat@10% --fault silence@10% --fault "
                                      "delay=1..400@20% ") +
                  (byPlc ? capture : QString())));
    panel(QString::fromLatin1("monitor --for 2 --interval 0 --timeout 150 --link %1 D_W:100*20 "
                              "M_W:3 7/D_W:1 ")
              .arg(link()) +
          (byPlc ? QString() : capture));
    m_plc->signal(SIGTERM);
    QCOMPARE(m_plc->exitCode(), 0);
    QVERIFY(serve(QLatin1String("--replay ") + file));
    // The second time as the first: a master that connects begins at the beginning.
    for (const char *speed : {"1", "full"}) {
        const int code = panel(QString::fromLatin1("replay %1 --link %2 --speed %3 --format json")
                                   .arg(file, link(), QLatin1String(speed)));
        QVERIFY2(code == 0, printed().constData());
        const QList<QJsonObject> lines = jsonLines(m_panel->lines());
        QCOMPARE(lines.size(), 1);
        QVERIFY(lines.first().value(QLatin1String("same")).toInt() > 10);
        QCOMPARE(m_panel->errors(), QByteArray());
    }
}

void TestReplay::findsTheOneRegisterThatChanged()
{
    const QString file = path("good.pcapng");
    QVERIFY(serve(QLatin1String("--set D_W:100=1,2,3 --set M_W:5=9")));
    QCOMPARE(
        panel(QString::fromLatin1("read --link %1 --capture %2 D_W:100*3 M_W:5").arg(link(), file)),
        0);
    QCOMPARE(panel(QString::fromLatin1("replay %1 --link %2").arg(file, link())), 0);
    QVERIFY2(printed().endsWith(" same"), printed().constData());
    QVERIFY(serve(QLatin1String("--set D_W:100=1,2,4 --set M_W:5=9")));
    QCOMPARE(panel(QString::fromLatin1("replay %1 --link %2").arg(file, link())), kDeviceFailed);
    const QList<QByteArray> lines = m_panel->lines();
    QVERIFY2(lines.size() == 6, printed().constData());
    QVERIFY(lines.at(0).endsWith(" s: other values"));
    QCOMPARE(lines.at(4), QByteArray("  1/D_W:102: 3 0x0003 -> 4 0x0004"));
    QVERIFY2(lines.at(5).endsWith(" same, 1 other values"), lines.at(5).constData());
}

void TestReplay::findsWhatIsRefusedNowAndWhatIsSilent()
{
    const QString file = path("two.pcapng");
    QVERIFY(CaptureFile()
                .line("tcp 1")
                .sent(kReadOne)
                .received(kOne)
                .sent(kReadTwo)
                .received(kTwo)
                .sent(kReadOne, 50)
                .sent(kReadOne, 50)
                .received(kOne)
                .store(file));
    QVERIFY(serve(QLatin1String("--set D_W:100=1 --fault 1:refuse*1")));
    QCOMPARE(panel(QString::fromLatin1("replay %1 --timeout 200 --format json --link %2")
                       .arg(file, link())),
             kDeviceFailed);
    QByteArray kinds;
    const QList<QJsonObject> lines = jsonLines(m_panel->lines());
    for (const QJsonObject &line : lines) {
        kinds += line.value(QLatin1String("kind")).toString().toLatin1() + '|';
    }
    QCOMPARE(kinds, QByteArray("refused instead of answered|no answer|"
                               "answered where nothing had come||"));
    QCOMPARE(lines.last().value(QLatin1String("same")).toInt(), 1);
}

void TestReplay::sendsWritesWhereAsked()
{
    const QString file = path("writes.pcapng");
    QVERIFY(CaptureFile()
                .line("tcp 1")
                .sent(kReadOne)
                .received(kOne)
                .sent(kWrite)
                .received(kDone)
                .store(file));
    QVERIFY(serve(QLatin1String("--set D_W:100=1")));
    const QString replay = QString::fromLatin1("replay %1 --link %2 ").arg(file, link());
    const QString look = QString::fromLatin1("read --format csv --link %1 D_W:200").arg(link());
    QCOMPARE(panel(replay), kUsage);
    QVERIFY2(m_panel->errors().contains(": 1 of 2 requests write, or are no plain readings: the "
                                        "first is packet 3, station 1, write "),
             m_panel->errors().constData());
    QCOMPARE(panel(replay + QLatin1String("--skip-writes")), 0);
    QCOMPARE(printed(), QByteArray("1 of 1 request: 1 same"));
    QCOMPARE(panel(look), 0);
    QVERIFY(printed().endsWith(",0"));
    QCOMPARE(panel(replay + QLatin1String("--yes")), 0);
    QCOMPARE(printed(), QByteArray("2 of 2 requests: 2 same"));
    QCOMPARE(panel(look), 0);
    QVERIFY(printed().endsWith(",7"));
}

void TestReplay::keepsTheTime()
{
    const QString file = path("slow.pcapng");
    CaptureFile capture;
    capture.line("tcp 1").sent(kReadOne).received(kOne).sent(kReadOne, 2000).received(kOne);
    QVERIFY(capture.store(file));
    QVERIFY(serve(QLatin1String("--set D_W:100=1")));
    const auto takes = [&](const char *speed) {
        QElapsedTimer timer;
        timer.start();
        const int code = panel(QString::fromLatin1("replay %1 --link %2 --speed %3")
                                   .arg(file, link(), QLatin1String(speed)));
        return code == 0 ? timer.elapsed() : -1;
    };
    QVERIFY(takes("1") >= 2000);
    const qint64 fast = takes("full");
    QVERIFY2(fast >= 0 && fast < 2000, QByteArray::number(fast).constData());
    QVERIFY(takes("2") >= 1000);
}

// Or it would pass for the answer to the next request, which had another value.
void TestReplay::waitsForWhatCameLate()
{
    const QString file = path("late.pcapng");
    QVERIFY(CaptureFile()
                .line("tcp 1")
                .sent(kReadOne)
                .received(kOne)
                .received(kOne, 300)
                .sent(kReadOne)
                .received(kSeven)
                .store(file));
    QVERIFY(serve(QLatin1String("--replay ") + file));
    QCOMPARE(panel(QString::fromLatin1("replay %1 --speed full --link %2").arg(file, link())), 0);
    QCOMPARE(printed(), QByteArray("2 of 2 requests: 2 same"));
}

void TestReplay::saysThatTheLinkIsLost()
{
    const QString file = path("lost.pcapng");
    CaptureFile capture;
    capture.line("tcp 1").sent(kReadOne).received(kOne).sent(kReadOne, 60000).received(kOne);
    QVERIFY(capture.store(file));
    QVERIFY(serve(QLatin1String("--set D_W:100=1")));
    Program lost;
    QVERIFY(
        lost.start(QLatin1String(CNET_PANEL),
                   words(QString::fromLatin1("replay %1 --trace --link %2").arg(file, link()))));
    QTRY_VERIFY_WITH_TIMEOUT(lost.errors().contains("<- "), 60000);
    m_plc->signal(SIGTERM);
    QCOMPARE(lost.exitCode(), kDeviceFailed);
    QVERIFY2(lost.errors().contains(" is lost: "), lost.errors().constData());
    QCOMPARE(lost.lines(), QList<QByteArray>{"1 of 2 requests: 1 same"});
    QCOMPARE(panel(QString::fromLatin1("replay %1 --link tcp:127.0.0.1:1").arg(file)), 3);
}

// With the values of the capture, whatever way they are asked for.
void TestReplay::plcAnswersOthersFromTheMemory()
{
    const QString file = path("two.pcapng");
    QVERIFY(CaptureFile()
                .line("tcp 1")
                .sent(kReadOne)
                .received(kOne)
                .sent(kReadTwo)
                .received(kTwo)
                .store(file));
    QVERIFY(serve(QString::fromLatin1("--replay %1 --set 1/D_W:101=5 --station 3").arg(file)));
    QCOMPARE(panel(QString::fromLatin1("read --format csv --link %1 1/D_W:100*2 2/D_W:100*2 "
                                       "3/D_W:100")
                       .arg(link())),
             0);
    QCOMPARE(printed(), QByteArray("station,register,address,value\n1,D_W,100,1\n1,D_W,101,5\n"
                                   "2,D_W,100,2\n2,D_W,101,0\n3,D_W,100,0"));
}

void TestReplay::plcChoosesALine()
{
    const QString file = path("lines.pcapng");
    QVERIFY(CaptureFile()
                .line("first")
                .sent(kReadOne)
                .received(kOne)
                .line("second")
                .sent(kReadTwo)
                .received(kTwo)
                .store(file));
    Program plc;
    QVERIFY(plc.start(QLatin1String(CNET_PLC),
                      words(QLatin1String("--tcp 127.0.0.1:0 --replay ") + file)));
    QCOMPARE(plc.exitCode(), kUsage);
    QVERIFY2(plc.errors().endsWith("2 lines in it, expected the name of one: 'first', 'second'\n"),
             plc.errors().constData());
    QVERIFY(serve(QString::fromLatin1("--replay %1 --replay-line second").arg(file)));
    const QString replay = QString::fromLatin1("replay %1 --link %2 ").arg(file, link());
    QCOMPARE(panel(replay), kUsage);
    QCOMPARE(panel(replay + QLatin1String("--replay-line second")), 0);
    QCOMPARE(panel(replay + QLatin1String("--replay-line first --timeout 100")), kDeviceFailed);
}

// The driver is fed with what was on the line, and nobody else is needed.
void TestReplay::driverGetsTheRecordedAnswers()
{
    const QString file = path("ramp.pcapng");
    QVERIFY(serve(QLatin1String("--ramp D_W:100=10..9999@20 --fault wrong-check@20%")));
    panel(QString::fromLatin1("monitor --count 15 --interval 30 --format csv --capture %1 --link "
                              "%2 D_W:100")
              .arg(file, link()));
    QByteArrayList then;
    for (const QByteArray &line : m_panel->lines()) {
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() == 7 && !fields.at(5).isEmpty()) {
            then << fields.at(5);
        }
    }
    m_plc.reset();
    QCOMPARE(panel(QString::fromLatin1("replay %1 --offline --speed full --format json").arg(file)),
             0);
    QByteArrayList now{"value"};
    for (const QJsonObject &line : jsonLines(m_panel->lines())) {
        if (line.value(QLatin1String("event")) == QLatin1String("change")) {
            now << QByteArray::number(line.value(QLatin1String("value")).toInt());
        }
    }
    QVERIFY2(then.size() > 5, then.join(' ').constData());
    QCOMPARE(now, then);
}

void TestReplay::driverMakesTheSameOfThem()
{
    const QString file = path("refused.pcapng");
    QVERIFY(serve(QLatin1String("--model k120s --set D_W:4999=7")));
    QCOMPARE(panel(QString::fromLatin1("read --retries 1 --timeout 100 --capture %1 --link %2 "
                                       "D_W:4999 D_W:5000 9/D_W:7")
                       .arg(file, link())),
             kDeviceFailed);
    QCOMPARE(panel(QString::fromLatin1("replay %1 --offline --speed full --timeout 100 --format "
                                       "json")
                       .arg(file)),
             kDeviceFailed);
    QMap<QString, QString> qualities;
    for (const QJsonObject &line : jsonLines(m_panel->lines())) {
        if (line.value(QLatin1String("event")) == QLatin1String("value")) {
            qualities.insert(line.value(QLatin1String("item")).toString(),
                             line.value(QLatin1String("quality")).toString());
        }
    }
    QCOMPARE(qualities.value(QLatin1String("1/D_W:4999")), QLatin1String("good"));
    QCOMPARE(qualities.value(QLatin1String("1/D_W:5000")), QLatin1String("refused"));
}

QTEST_GUILESS_MAIN(TestReplay)
#include "test_replay.moc"
