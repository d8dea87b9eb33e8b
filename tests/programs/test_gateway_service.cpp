#include "gateway.h"

#include "gateway/support/notify_socket.h"
#include "gateway/support/prometheus_check.h"

#include <QDir>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>
#include <sys/ptrace.h>
#include <sys/wait.h>

using cnet::gateway::NotifySocket;
using cnet::gateway::PrometheusCheck;

/** cnet-gateway as its service manager, its monitoring system and its people see it. */
class TestGatewayService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_gateway = std::make_unique<GatewayProgram>(); }
    void tellsItsServiceManager();
    void isNotAliveWhileAThreadHangs_data();
    void isNotAliveWhileAThreadHangs();
    void showsItsStatus();
    void showsItsStatusWhereItsStateIs();
    void refusesToShow_data();
    void refusesToShow();
    void servesMetrics();
    void goesOnWithoutItsPort();
    void tellsTheJournalHowMuchItMatters();

private:
    QByteArray folder() const { return QFile::encodeName(m_gateway->path("")); }
    bool configure(int port) const
    {
        return m_gateway->store("tags.csv", "name,register,address\na,D_W,100\n") &&
               m_gateway->store("gateway.toml",
                                "[metrics]\nlisten = \"127.0.0.1:" + QByteArray::number(port) +
                                    "\"\n[line.press]\nlink = \"simulated\"\n"
                                    "tags = \"tags.csv\"\n");
    }
    bool startConfigured(Program &program) const
    {
        return m_gateway->start(program,
                                {"run", QFile::encodeName(m_gateway->path("gateway.toml"))});
    }

    std::unique_ptr<GatewayProgram> m_gateway;
};

namespace {

/** A thread of another process that does not run while this lives. */
class FrozenThread
{
public:
    explicit FrozenThread(pid_t thread)
        : m_thread(thread)
    {
        m_isFrozen = ptrace(PTRACE_SEIZE, thread, nullptr, nullptr) == 0 &&
                     ptrace(PTRACE_INTERRUPT, thread, nullptr, nullptr) == 0 &&
                     waitpid(thread, nullptr, __WALL) == thread;
    }
    ~FrozenThread()
    {
        if (m_isFrozen) {
            ptrace(PTRACE_DETACH, m_thread, nullptr, nullptr);
        }
    }
    FrozenThread(const FrozenThread &) = delete;
    FrozenThread &operator=(const FrozenThread &) = delete;

    bool isFrozen() const { return m_isFrozen; }

private:
    pid_t m_thread;
    bool m_isFrozen = false;
};

/** @return number of a process's thread of that name; 0: there is none */
pid_t threadOf(qint64 process, const QByteArray &name)
{
    const QString tasks = QString::fromLatin1("/proc/%1/task").arg(process);
    const QStringList numbers = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &number : numbers) {
        QFile file(tasks + QLatin1Char('/') + number + QLatin1String("/comm"));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name) {
            return number.toInt();
        }
    }
    return 0;
}

QByteArray fetch(int port, const QByteArray &path)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(port));
    socket.waitForConnected(5000);
    socket.write("GET " + path + " HTTP/1.0\r\n\r\n");
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(10000)) {
    }
    return socket.readAll();
}

} // namespace

void TestGatewayService::tellsItsServiceManager()
{
    const NotifySocket manager;
    Program program;
    program.setVariable("NOTIFY_SOCKET", manager.path().constData());
    program.setVariable("WATCHDOG_USEC", "400000");
    QVERIFY(m_gateway->start(program, {"--demo"}));
    QList<QByteArray> heard;
    const auto hears = [&](const QByteArray &message) {
        heard += manager.heard();
        return heard.contains(message);
    };
    QTRY_VERIFY_WITH_TIMEOUT(hears("WATCHDOG=1"), 60000);
    QCOMPARE(heard.first(), QByteArray("READY=1"));
    QTRY_VERIFY_WITH_TIMEOUT(hears("STATUS=lines open: 1 of 1; sinks ready: 1 of 1"), 20000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(hears("STOPPING=1"));
    QCOMPARE(int(heard.count("READY=1")), 1);
    QCOMPARE(heard.last(), QByteArray("STOPPING=1"));
}

void TestGatewayService::isNotAliveWhileAThreadHangs_data()
{
    QTest::addColumn<QByteArray>("thread");
    QTest::newRow("of the lines") << QByteArray("cnet-gateway");
    QTest::newRow("of the recorder") << QByteArray("recorder");
}

void TestGatewayService::isNotAliveWhileAThreadHangs()
{
    QFETCH(QByteArray, thread);
    const NotifySocket manager;
    Program program;
    program.setVariable("NOTIFY_SOCKET", manager.path().constData());
    program.setVariable("WATCHDOG_USEC", "200000");
    QVERIFY(m_gateway->start(program, {"--demo"}));
    bool isAlive = false;
    const auto lives = [&] {
        isAlive = isAlive || manager.heard().contains("WATCHDOG=1");
        return isAlive;
    };
    QTRY_VERIFY_WITH_TIMEOUT(lives(), 60000);
    const pid_t number = threadOf(program.id(), thread);
    QVERIFY(number > 0);
    {
        const FrozenThread frozen(number);
        if (!frozen.isFrozen()) {
            QSKIP("this machine does not permit to stop a thread; test_gateway_pulse looks, too");
        }
        QTest::qWait(100); // what the other one still has to say
        manager.heard();
        QTest::qWait(1000);
        QCOMPARE(manager.heard(), QList<QByteArray>());
        // Its numbers can still be asked for.
        QCOMPARE(m_gateway->run({"status", "--state", folder()}), 0);
    }
    isAlive = false;
    QTRY_VERIFY_WITH_TIMEOUT(lives(), 60000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

void TestGatewayService::showsItsStatus()
{
    Program program;
    QVERIFY(m_gateway->start(program, {"--demo"}));
    const auto shows = [this](const char *pattern) {
        m_gateway->run({"status", "--state", folder()});
        const QString text = QString::fromUtf8(m_gateway->output.join('\n'));
        return QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption)
            .match(text)
            .hasMatch();
    };
    QTRY_VERIFY_WITH_TIMEOUT(shows("^press +yes +- +[1-9]"), 60000);
    QTRY_VERIFY_WITH_TIMEOUT(shows("^press/1 +answers +[1-9]"), 60000);
    QTRY_VERIFY_WITH_TIMEOUT(shows("^history +yes +[1-9]"), 60000);
    QVERIFY(shows("^health: good$"));
    QCOMPARE(m_gateway->run({"status", "--format", "json", "--state", folder()}), 0);
    QCOMPARE(int(m_gateway->output.size()), 1);
    const QJsonObject json = jsonLines(m_gateway->output).value(0);
    QVERIFY(json.contains(QLatin1String("ledger")));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(!QFile::exists(m_gateway->path("status.socket")));
    QCOMPARE(m_gateway->run({"status", "--state", folder()}), 1);
    QVERIFY2(m_gateway->errors.contains("no gateway runs in "), m_gateway->errors.constData());
}

void TestGatewayService::showsItsStatusWhereItsStateIs()
{
    QVERIFY(QDir(m_gateway->path("")).mkpath(QLatin1String("a")));
    QVERIFY(QDir(m_gateway->path("")).mkpath(QLatin1String("b")));
    const auto configureState = [this](const QByteArray &name, const QByteArray &more = {}) {
        return m_gateway->store("tags.csv", "name,register,address\na,D_W,100\n") &&
               m_gateway->store("gateway.toml", "state = \"" + name +
                                                    "\"\n[line.press]\nlink = \"simulated\"\n"
                                                    "tags = \"tags.csv\"\n" +
                                                    more);
    };
    const auto answers = [this](const char *name) {
        return m_gateway->run({"status", "--state", QFile::encodeName(m_gateway->path(name))}) == 0;
    };
    QVERIFY(configureState("a"));
    Program program;
    QVERIFY(startConfigured(program));
    QTRY_VERIFY_WITH_TIMEOUT(answers("a"), 60000);
    QVERIFY(configureState("b", "[ledger]\nsize = \"7MB\"\n"));
    program.signal(SIGHUP);
    QTRY_VERIFY_WITH_TIMEOUT(answers("b"), 60000);
    const auto showsItsRoom = [&] {
        return answers("b") && m_gateway->output.join().contains(" of 7.0 MB");
    };
    QTRY_VERIFY_WITH_TIMEOUT(showsItsRoom(), 60000);
    QVERIFY(!QFile::exists(m_gateway->path("a/status.socket")));
    // Where it cannot be, it stays.
    QVERIFY(configureState("none/such"));
    program.signal(SIGHUP);
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("status: cannot listen in "), 60000);
    QVERIFY(answers("b"));
    program.signal(SIGTERM);
    program.exitCode();
    QVERIFY(!QFile::exists(m_gateway->path("b/status.socket")));
}

void TestGatewayService::refusesToShow_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("an argument") << QList<QByteArray>{"status", "a"} << 2
                                 << QByteArray("status takes no argument, and not 'a'");
    QTest::newRow("a wrong form") << QList<QByteArray>{"status", "--format", "csv"} << 2
                                  << QByteArray("--format 'csv': expected text or json");
    QTest::newRow("nowhere") << QList<QByteArray>{"status", "--state", "/nonexistent"} << 1
                             << QByteArray("no gateway runs in /nonexistent");
}

void TestGatewayService::refusesToShow()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, message);
    QCOMPARE(m_gateway->run(arguments), exitCode);
    QVERIFY2(m_gateway->errors.contains(message), m_gateway->errors.constData());
    QVERIFY(m_gateway->output.isEmpty());
}

void TestGatewayService::servesMetrics()
{
    QVERIFY(configure(0));
    Program program;
    QVERIFY(startConfigured(program));
    static const QRegularExpression place(
        QLatin1String("metrics: http://127\\.0\\.0\\.1:([0-9]+)/metrics\\n"));
    const auto port = [&program] {
        return place.match(QString::fromUtf8(program.errors())).captured(1).toInt();
    };
    QTRY_VERIFY_WITH_TIMEOUT(port() > 0, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(
        fetch(port(), "/metrics").contains("\ncnet_gateway_line_up{line=\"press\"} 1\n"), 60000);
    const QByteArray answer = fetch(port(), "/metrics");
    QCOMPARE(PrometheusCheck().faultOf(answer.mid(answer.indexOf("\r\n\r\n") + 4)), QString());
    QVERIFY(fetch(port(), "/health").contains("\"status\":\"good\""));
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

void TestGatewayService::goesOnWithoutItsPort()
{
    auto other = std::make_unique<QTcpServer>();
    QVERIFY(other->listen(QHostAddress(QHostAddress::LocalHost)));
    QVERIFY(configure(other->serverPort()));
    Program program;
    QVERIFY(startConfigured(program));
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("metrics: cannot listen at 127.0.0.1:"),
                             20000);
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("runs; lines: 1"), 20000);
    other.reset();
    QTRY_VERIFY_WITH_TIMEOUT(program.errors().contains("metrics: works again"), 60000);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

void TestGatewayService::tellsTheJournalHowMuchItMatters()
{
    const QByteArray run = "exec \"$0\" status --state /nonexistent";
    const QByteArray journal = "JOURNAL_STREAM=$(stat -L -c %d:%i /proc/self/fd/2) ";
    for (const QByteArray &script : {run, "JOURNAL_STREAM=1:2 " + run}) {
        Program plain;
        QVERIFY(plain.startBytes("/bin/sh", {"-c", script, CNET_GATEWAY}));
        QCOMPARE(plain.exitCode(), 1);
        QCOMPARE(plain.errors(), QByteArray("cnet-gateway: no gateway runs in /nonexistent\n"));
    }
    Program told;
    QVERIFY(told.startBytes("/bin/sh", {"-c", journal + run, CNET_GATEWAY}));
    QCOMPARE(told.exitCode(), 1);
    QCOMPARE(told.errors(), QByteArray("<4>no gateway runs in /nonexistent\n"));
}

QTEST_GUILESS_MAIN(TestGatewayService)
#include "test_gateway_service.moc"
