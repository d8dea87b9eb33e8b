#include "sparkplug_site.h"

/** What hosts ask of cnet-gateway by NCMD and DCMD, with a real broker and a PLC program. */
class TestGatewaySparkplugCommands : public QObject, private SparkplugSite
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writesWhatIsAllowed();
    void writesNothingElse();
    void writesNothingWhileTheLineIsDown();
    void heedsNoRetainedCommand();
    void livesThroughAStormOfRebirths();

private:
    void ask(const spcheck::ReadMetric &metric, bool isRetained = false);
    QList<QJsonObject> results() const;
    QByteArray lastAnswer();
};

namespace {

const char *const kTopic = "spBv1.0/plant/DCMD/gate/press.1";

spcheck::ReadMetric wanted(const QByteArray &name, quint64 number)
{
    spcheck::ReadMetric metric;
    metric.name = name;
    metric.timestamp = 1U;
    metric.datatype = 6U;
    metric.field = spcheck::Field::Int;
    metric.number = number;
    return metric;
}

QString textAt(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString();
}

} // namespace

void TestGatewaySparkplugCommands::init()
{
    start();
    configure(m_relay->port(),
              "commands = true\n[writes.press]\ntag_burst = 100\nline_burst = 100\n"
              "allow = [{tag = \"setpoint\", min = 10, max = 100}]\n");
}

void TestGatewaySparkplugCommands::ask(const spcheck::ReadMetric &metric, bool isRetained)
{
    m_watcher->publish(
        {kTopic, spcheck::MessageWriter::write({1U, std::nullopt, {metric}}), 0, isRetained});
}

/** Of the audit log. */
QList<QJsonObject> TestGatewaySparkplugCommands::results() const
{
    QFile file(m_gateway->path("writes.jsonl"));
    QList<QJsonObject> results;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QJsonObject &line : jsonLines(file.readAll().split('\n'))) {
            if (!textAt(line, "outcome").isEmpty()) {
                results.append(line);
            }
        }
    }
    return results;
}

/** That the node told last. */
QByteArray TestGatewaySparkplugCommands::lastAnswer()
{
    QByteArray answer;
    for (const spcheck::Message &message : m_watcher->seen()) {
        if (message.topic == "spBv1.0/plant/NDATA/gate") {
            answer = spcheck::readMessage(message.payload)->metrics.last().text;
        }
    }
    return answer;
}

void TestGatewaySparkplugCommands::writesWhatIsAllowed()
{
    run();
    WAIT_FOR(valuesSeen("setpoint") == QSet<qint64>({0}) && data() > 1);
    ask(wanted("setpoint", 55));
    WAIT_FOR(valuesSeen("setpoint") == QSet<qint64>({0, 55}));
    WAIT_FOR(lastAnswer() == "press setpoint: taken, 55");
    spcheck::ReadMetric byAlias = wanted("", 66);
    byAlias.name.reset();
    byAlias.datatype.reset();
    valuesSeen("setpoint", &byAlias.alias);
    ask(byAlias);
    WAIT_FOR(valuesSeen("setpoint") == QSet<qint64>({0, 55, 66}));
    WAIT_FOR(results().size() == 2);
    for (const QJsonObject &result : results()) {
        QCOMPARE(textAt(result, "outcome"), QLatin1String("taken"));
    }
    QCOMPARE(textAt(results().last(), "is"), QLatin1String("66"));
    end();
    check();
}

void TestGatewaySparkplugCommands::writesNothingElse()
{
    run();
    WAIT_FOR(!valuesSeen("setpoint").isEmpty() && data() > 1);
    spcheck::ReadMetric misfit = wanted("setpoint", 55);
    misfit.datatype = 8U;
    misfit.field = spcheck::Field::Long;
    spcheck::ReadMetric unknown = wanted("", 55);
    unknown.name.reset();
    unknown.alias = 4711U;
    const QList<QPair<spcheck::ReadMetric, const char *>> useless{
        {wanted("fixed", 55), "may not be written from outside"},
        {wanted("setpoint", 101), "is above"},
        {wanted("setpoint", 9), "is below"},
        {misfit, "no value of the metric's datatype"},
        {unknown, "no such metric"},
        {wanted("speed", 55), "no such metric"},
    };
    for (int i = 0; i < useless.size(); ++i) {
        ask(useless.at(i).first);
        WAIT_FOR(results().size() == i + 1);
        const QJsonObject result = results().last();
        QCOMPARE(textAt(result, "outcome"), QLatin1String("refused"));
        QVERIFY2(textAt(result, "reason").contains(QLatin1String(useless.at(i).second)),
                 qPrintable(textAt(result, "reason")));
    }
    m_watcher->publish({kTopic, "{\"v\":55}", 0, false});
    WAIT_FOR(results().size() == useless.size() + 1);
    const int before = data();
    WAIT_FOR(data() > before + 3);
    for (const char *name : {"setpoint", "fixed"}) {
        QCOMPARE(valuesSeen(name), QSet<qint64>({0}));
    }
    end();
    check();
}

void TestGatewaySparkplugCommands::writesNothingWhileTheLineIsDown()
{
    run();
    WAIT_FOR(data() > 1);
    const QString place = m_plc->place();
    m_plc->signal(SIGKILL);
    WAIT_FOR(m_relay->count("DDEATH") == 1);
    ask(wanted("setpoint", 55));
    WAIT_FOR(results().size() == 1);
    QCOMPARE(textAt(results().first(), "outcome"), QLatin1String("refused"));
    QVERIFY2(textAt(results().first(), "reason").endsWith(QLatin1String("nothing was sent")),
             qPrintable(textAt(results().first(), "reason")));
    startPlc(place);
    WAIT_FOR(m_relay->count("DBIRTH") >= 2);
    const int before = data();
    WAIT_FOR(data() > before + 3);
    QCOMPARE(valuesSeen("setpoint"), QSet<qint64>({0}));
    QCOMPARE(int(results().size()), 1);
    end();
    check();
}

// A broker hands it over at each connect.
void TestGatewaySparkplugCommands::heedsNoRetainedCommand()
{
    ask(wanted("setpoint", 55), true);
    for (int start = 1; start <= 2; ++start) {
        run();
        WAIT_FOR(results().size() == start);
        QCOMPARE(textAt(results().last(), "outcome"), QLatin1String("refused"));
        QVERIFY(textAt(results().last(), "reason")
                    .startsWith(QLatin1String("a retained command is not carried out")));
        const int before = data();
        WAIT_FOR(data() > before + 3);
        end();
    }
    QCOMPARE(valuesSeen("setpoint"), QSet<qint64>({0}));
    check();
}

void TestGatewaySparkplugCommands::livesThroughAStormOfRebirths()
{
    run();
    WAIT_FOR(data() > 1);
    const int devices = m_relay->count("DBIRTH");
    for (int i = 0; i < 1000; ++i) {
        askForRebirth();
    }
    // One at once, one for all others a moment later; data goes on in between and behind it.
    WAIT_FOR(births() == 2);
    const int between = data();
    WAIT_FOR(data() > between + 3);
    QCOMPARE(births(), 2);
    WAIT_FOR(births() == 3);
    const int behind = data();
    WAIT_FOR(data() > behind + 3);
    end();
    QCOMPARE(births(), 3);
    QCOMPARE(m_relay->count("DBIRTH"), devices + 2);
    check();
}

QTEST_GUILESS_MAIN(TestGatewaySparkplugCommands)
#include "test_gateway_sparkplug_commands.moc"
