#include "program.h"
#include "relay.h"

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** What cnet-panel says of writes and recipes whose answers, or whose PLC, got lost on the way. */
class TestLostAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheWriteOfALostAnswer();
    void doesNotKnowWhatItCannotReadBack();
    void findsThatAPlcLostARecipe_data();
    void findsThatAPlcLostARecipe();
    void recipeOfALostLine();
    void countsAnAnswerThatWasCutShort();

private:
    QString recipe();
    bool run(Relay &relay, Program &panel, const QStringList &arguments);

    QTemporaryDir m_directory;
};

namespace {

const QStringList kPlace{QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

// Two blocks, far apart.
QString TestLostAnswers::recipe()
{
    const QString path = m_directory.filePath(QLatin1String("recipe.csv"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
                   file.write("register,address,value\nD_W,1,11\nD_W,5000,22\n") > 0
               ? path
               : QString();
}

bool TestLostAnswers::run(Relay &relay, Program &panel, const QStringList &arguments)
{
    return panel.start(QLatin1String(CNET_PANEL),
                       arguments + QStringList{QLatin1String("--link"), relay.link()}) &&
           QTest::qWaitFor([&panel] { return !panel.isRunning(); }, 30000);
}

// The PLC has carried it out, and so the panel must not say that it has not.
void TestLostAnswers::findsTheWriteOfALostAnswer()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, {}));
    Relay relay(plc.place());
    relay.onAnswer = [](const QByteArray &request, const QByteArray &answer) {
        return request.contains("wS") ? QByteArray() : answer;
    };
    Program panel;
    QVERIFY(run(relay, panel, words("write D_W:1=5 D_W:7=6 --timeout 100 --retries 1")));
    QVERIFY2(panel.lines().first() == "1/D_W:1=5: written", panel.lines().join('\n').constData());
    QVERIFY(relay.count("wS") >= 1);
}

// Nothing comes any more once the write is out: whether the PLC has it nobody knows.
void TestLostAnswers::doesNotKnowWhatItCannotReadBack()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, {}));
    Relay relay(plc.place());
    bool gone = false;
    relay.onAnswer = [&](const QByteArray &request, const QByteArray &answer) {
        gone = gone || request.contains("wS");
        return gone ? QByteArray() : answer;
    };
    Program panel;
    QVERIFY(run(relay, panel, words("write D_W:1=5 D_W:7=6 --timeout 100 --retries 2")));
    QCOMPARE(panel.exitCode(), 1);
    QCOMPARE(panel.lines().value(0),
             QByteArray("1/D_W:1=5: not confirmed (no answer); what it holds is not known (no "
                        "answer)"));
    QCOMPARE(panel.lines().value(1),
             QByteArray("1/D_W:7=6: not written (no answer); nothing was sent"));
}

void TestLostAnswers::findsThatAPlcLostARecipe_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("says");
    QTest::newRow("verified") << "" << 1
                              << QByteArray("verifying: 1 of 2 words differ; 1/D_W:1 holds 0, 11 "
                                            "was written");
    QTest::newRow("--no-verify") << "--no-verify" << 0
                                 << QByteArray("recipe write: 2 blocks, 2 words, ");
}

// A PLC behind a serial server restarts between two blocks: the line never breaks, and every block
// is confirmed.
void TestLostAnswers::findsThatAPlcLostARecipe()
{
    QFETCH(QString, option);
    QFETCH(QByteArray, says);
    auto plc = std::make_unique<PlcProgram>();
    QVERIFY(plc->serve(kPlace, {}));
    const QString place = plc->place();
    Relay relay(place);
    bool restarted = false;
    relay.onAnswer = [&](const QByteArray &request, const QByteArray &answer) {
        if (request.contains("wS") && !restarted) {
            restarted = true;
            relay.plcGone();
            plc = std::make_unique<PlcProgram>();
            plc->serve({QLatin1String("--tcp"), place}, {});
        }
        return answer;
    };
    Program panel;
    QVERIFY(run(relay, panel,
                QStringList{QLatin1String("recipe"), QLatin1String("write"), recipe()} +
                    option.split(QLatin1Char(' '), Qt::SkipEmptyParts)));
    QTEST(panel.exitCode(), "exitCode");
    QVERIFY2(panel.errors().contains(says), panel.errors().constData());
    QCOMPARE(panel.errors().contains("verified"), false);
    // Nothing is read but the fences, without it.
    QCOMPARE(relay.count("rSB") == 0, !option.isEmpty());
}

// What the PLC has of it nobody knows, and nobody goes on in the middle when it is back.
void TestLostAnswers::recipeOfALostLine()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, words("--fault delay=500")));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        QStringList{QLatin1String("recipe"), QLatin1String("write"), recipe(),
                                    QLatin1String("--trace"), QLatin1String("--link"),
                                    QLatin1String("tcp:") + plc.place()}));
    QVERIFY(QTest::qWaitFor([&panel] { return panel.errors().contains("write"); }, 30000));
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
    PlcProgram again;
    QVERIFY(again.serve({QLatin1String("--tcp"), plc.place()}, {}));
    QCOMPARE(panel.exitCode(), 1);
    QVERIFY2(panel.errors().contains("recipe write failed at block 1"), panel.errors().constData());
    QVERIFY(panel.errors().contains("0 of 2 words had been transferred"));
}

// It came, so it is no time-out, and nobody says that the station does not answer.
void TestLostAnswers::countsAnAnswerThatWasCutShort()
{
    PlcProgram plc;
    QVERIFY(plc.serve(kPlace, {}));
    Relay relay(plc.place());
    relay.onAnswer = [](const QByteArray &, const QByteArray &answer) { return answer.left(5); };
    Program panel;
    QVERIFY(
        run(relay, panel, words("monitor D_W:1 --for 2 --format json --timeout 100 --retries 2")));
    QCOMPARE(panel.exitCode(), 1);
    const QJsonObject station = jsonLines(panel.lines()).last();
    QCOMPARE(station.value(QLatin1String("state")).toString(), QLatin1String("disturbed"));
    QVERIFY(station.value(QLatin1String("bad_answers")).toInt() > 0);
    QCOMPARE(station.value(QLatin1String("timeouts")).toInt(-1), 0);
    QVERIFY2(panel.errors().contains("station 1 sends answers that cannot be used"),
             panel.errors().constData());
    QVERIFY(!panel.errors().contains("does not answer"));
}

QTEST_GUILESS_MAIN(TestLostAnswers)
#include "test_lost_answers.moc"
