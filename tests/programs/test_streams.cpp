#include "program.h"

#include <QtTest>

#include <csignal>

/** What a monitor prints for other programs: values, how far they can be trusted, and the link. */
class TestStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aPlcThatComesAndGoes_data();
    void aPlcThatComesAndGoes();
    void aPlcThatIsStopped();

private:
    bool start(const char *format);
    bool prints(const char *pattern);

    std::unique_ptr<PlcProgram> m_plc;
    std::unique_ptr<Program> m_panel;
    int m_seen = 0; ///< lines before
};

namespace {

const char kTime[] = "20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\+02:00";

} // namespace

void TestStreams::init()
{
    m_seen = 0;
    m_plc = std::make_unique<PlcProgram>();
    m_panel = std::make_unique<Program>();
    m_panel->setVariable("TZ", "XXX-2");
    QVERIFY(m_plc->serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                         {QLatin1String("--set"), QLatin1String("D_W:1=6,7")}));
}

void TestStreams::cleanup()
{
    m_panel.reset();
    m_plc.reset();
}

bool TestStreams::start(const char *format)
{
    return m_panel->start(QLatin1String(CNET_PANEL),
                          {QLatin1String("monitor"), QLatin1String("--format"),
                           QLatin1String(format), QLatin1String("--timeout"), QLatin1String("300"),
                           QLatin1String("D_W:1*2"), QLatin1String("--link"),
                           QLatin1String("tcp:") + m_plc->place()});
}

// The next line, among those behind the last one that was waited for. "TIME" stands for a time.
bool TestStreams::prints(const char *pattern)
{
    const QRegularExpression wanted(QRegularExpression::anchoredPattern(
        QString::fromLatin1(pattern).replace(QLatin1String("TIME"), QLatin1String(kTime))));
    const auto find = [&] {
        const QList<QByteArray> lines = m_panel->lines();
        for (int i = m_seen; i < lines.size(); ++i) {
            if (wanted.match(QString::fromLocal8Bit(lines.at(i))).hasMatch()) {
                m_seen = i + 1;
                return true;
            }
        }
        return false;
    };
    return !m_panel->waitForLine([&](const QByteArray &) { return find(); }).isEmpty();
}

void TestStreams::aPlcThatComesAndGoes_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QList<QByteArray>>("before");
    QTest::addColumn<QList<QByteArray>>("lost");
    QTest::addColumn<QList<QByteArray>>("back");
    QTest::newRow("text") << QByteArray("text")
                          << QList<QByteArray>{"TIME  1/D_W:1  6 0x0006", "TIME  1/D_W:2  7 0x0007",
                                               "TIME  1/D_W:1\\*2  quality good"}
                          << QList<QByteArray>{"TIME  tcp 127.0.0.1:\\d+  lost: .+"}
                          << QList<QByteArray>{"TIME  tcp 127.0.0.1:\\d+  open",
                                               "TIME  1/D_W:1  8 0x0008",
                                               "TIME  1/D_W:1\\*2  quality good"};
    QTest::newRow("csv") << QByteArray("csv")
                         << QList<QByteArray>{"time,station,register,address,count,value,quality",
                                              "TIME,1,D_W,1,1,6,good", "TIME,1,D_W,2,1,7,good",
                                              "TIME,1,D_W,1,2,,good"}
                         << QList<QByteArray>{"TIME,,,,,,line down"}
                         << QList<QByteArray>{"TIME,,,,,,line open", "TIME,1,D_W,1,1,8,good",
                                              "TIME,1,D_W,1,2,,good"};
    QTest::newRow("json")
        << QByteArray("json")
        << QList<QByteArray>{"\\{\"address\":\"1\",\"event\":\"change\",.*\"time\":\"TIME\","
                             "\"value\":6\\}",
                             "\\{.*\"event\":\"quality\",\"good\":true,.*\"time\":\"TIME\"\\}"}
        << QList<QByteArray>{"\\{\"event\":\"link\",\"link\":\"tcp .*\",\"open\":false,"
                             "\"reason\":\".+\",\"time\":\"TIME\"\\}"}
        << QList<QByteArray>{"\\{\"event\":\"link\",.*\"open\":true,\"time\":\"TIME\"\\}",
                             "\\{.*\"event\":\"change\",.*\"value\":8\\}",
                             "\\{.*\"event\":\"quality\",\"good\":true,.*\\}"};
}

void TestStreams::aPlcThatComesAndGoes()
{
    QFETCH(QByteArray, format);
    QFETCH(QList<QByteArray>, before);
    QFETCH(QList<QByteArray>, lost);
    QFETCH(QList<QByteArray>, back);
    QVERIFY(start(format.constData()));
    const auto printsAll = [this](const QList<QByteArray> &patterns) {
        for (const QByteArray &pattern : patterns) {
            if (!prints(pattern.constData())) {
                qWarning("no %s in\n%s", pattern.constData(),
                         m_panel->lines().join('\n').constData());
                return false;
            }
        }
        return true;
    };
    QVERIFY(printsAll(before));
    const QString place = m_plc->place();
    m_plc.reset();
    QVERIFY(printsAll(lost));
    m_plc = std::make_unique<PlcProgram>();
    QVERIFY(m_plc->serve({QLatin1String("--tcp"), place},
                         {QLatin1String("--set"), QLatin1String("D_W:1=8,7")}));
    QVERIFY(printsAll(back));
    // The quality while the link was down is told, too.
    const QByteArray all = m_panel->lines().join('\n');
    QVERIFY2(all.contains(format == "text"  ? "1/D_W:1*2  quality line down"
                          : format == "csv" ? ",1,D_W,1,2,,line down"
                                            : "\"quality\":\"line down\""),
             all.constData());
}

// The values stay as they were, and nobody takes them for what the PLC has now.
void TestStreams::aPlcThatIsStopped()
{
    QVERIFY(start("json"));
    QVERIFY(prints("\\{.*\"event\":\"quality\",\"good\":true,.*"));
    m_plc->signal(SIGSTOP);
    QVERIFY(
        prints("\\{.*\"event\":\"quality\",\"good\":false,.*\"quality\":\"(no answer|stale)\".*"));
    m_panel->signal(SIGINT);
    QCOMPARE(m_panel->exitCode(), 1);
    m_plc->signal(SIGCONT);
    QVERIFY2(prints("\\{.*\"event\":\"value\",\"good\":false,.*\"values\":\\[6,7\\]\\}"),
             m_panel->lines().join('\n').constData());
}

QTEST_GUILESS_MAIN(TestStreams)
#include "test_streams.moc"
