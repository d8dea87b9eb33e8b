#include "program.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** --stats of the real program. */
class TestStatisticsFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesAtTheEnd_data();
    void storesAtTheEnd();
    void storesOnASignal();
    void countsWhatThePlcDoes();
    void saysWhatItCannotWrite_data();
    void saysWhatItCannotWrite();

private:
    QJsonObject stored() const;
    QStringList command(const char *arguments) const;

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath(QLatin1String("stats.json"));
};

namespace {

const QString kPanel = QLatin1String(CNET_PANEL);

int number(const QJsonObject &object, const char *name)
{
    return object.value(QLatin1String(name)).toInt(-1);
}

QJsonObject station(const QJsonObject &stats, int index)
{
    return stats.value(QLatin1String("stations")).toArray().at(index).toObject();
}

} // namespace

QJsonObject TestStatisticsFile::stored() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

QStringList TestStatisticsFile::command(const char *arguments) const
{
    return QString::fromLatin1(arguments).split(QLatin1Char(' ')) +
           QStringList{QLatin1String("--stats"), m_path};
}

void TestStatisticsFile::storesAtTheEnd_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("blocks");
    QTest::newRow("read D_W:0*10 M_W:1") << 0 << 2;
    QTest::newRow("write --link sim D_W:5=1") << 0 << 1;
    QTest::newRow("monitor --count 3 --format csv D_W:0*10") << 0 << 1;
    QTest::newRow("write --link sim F_W:0=1") << 1 << 1;
    QTest::newRow("read --link serial:/nowhere/tty D_W:0") << 3 << 0;
}

void TestStatisticsFile::storesAtTheEnd()
{
    QFETCH(int, blocks);
    QFile::remove(m_path);
    Program panel;
    QVERIFY(panel.start(kPanel, command(QTest::currentDataTag())));
    QTEST(panel.exitCode(), "exitCode");
    const QJsonObject stats = stored();
    QCOMPARE(stats.value(QLatin1String("format")).toString(), QLatin1String("cnet-statistics"));
    QCOMPARE(stats.value(QLatin1String("blocks")).toArray().size(), blocks);
}

// It goes on reading, and the file is whole whenever somebody looks.
void TestStatisticsFile::storesOnASignal()
{
    QFile::remove(m_path);
    Program panel;
    QVERIFY(panel.start(kPanel, command("monitor --format json D_W:0")));
    QVERIFY(!panel.waitForLine([](const QByteArray &line) { return line.contains("change"); })
                 .isEmpty());
    QVERIFY(!QFile::exists(m_path));
    panel.signal(SIGUSR1);
    QTRY_VERIFY(QFile::exists(m_path));
    const int first = number(station(stored(), 0), "answers");
    QVERIFY(first > 0);
    QTRY_VERIFY((panel.signal(SIGUSR1), number(station(stored(), 0), "answers") > first));
    QVERIFY(panel.isRunning());
    panel.signal(SIGINT);
    QCOMPARE(panel.exitCode(), 0);
}

void TestStatisticsFile::countsWhatThePlcDoes()
{
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                      {QLatin1String("--fault"), QLatin1String("wrong-check*2")}));
    Program panel;
    QStringList arguments =
        command("monitor --count 10 --format csv --timeout 300 --line 9600,8,EVEN,1 D_W:0 --link");
    arguments.insert(arguments.indexOf(QLatin1String("--link")) + 1,
                     QLatin1String("tcp:") + plc.place());
    QVERIFY(panel.start(kPanel, arguments));
    QVERIFY(panel.exitCode() >= 0);
    const QJsonObject stats = stored();
    QCOMPARE(number(station(stats, 0), "bad_checks"), 2);
    const QJsonObject line = stats.value(QLatin1String("line")).toObject();
    QCOMPARE(line.value(QLatin1String("settings")).toString(), QLatin1String("9600,8,EVEN,1"));
    QVERIFY(line.value(QLatin1String("load_percent")).toDouble() > 0);
    QCOMPARE(number(line, "sent_bytes"), number(station(stats, 0), "sent_bytes"));
}

void TestStatisticsFile::saysWhatItCannotWrite_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("said");
    const auto row = [](const char *arguments, const char *said) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' '))
                                 << QByteArray(said);
    };
    row("read D_W:0 --stats /nowhere/stats.json", "cannot write /nowhere/stats.json: ");
    row("read D_W:0 --stats /dev/null", "cannot write /dev/null: it is no regular file");
    row("read D_W:0 --stats=", "the name is empty");
    row("read D_W:0 --line 0", "--line '0': expected BAUD[,7|8,NONE|EVEN|ODD,1|2]");
    row("read D_W:0 --line 9600,9", "--line '9600,9': expected BAUD");
    row("read D_W:0 --link serial:/dev/null,9600 --line 9600",
        "--line '9600': a serial link has its settings behind the device");
}

// Before anything is sent.
void TestStatisticsFile::saysWhatItCannotWrite()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, said);
    Program panel;
    QVERIFY(panel.start(kPanel, arguments));
    QCOMPARE(panel.exitCode(), 2);
    const QByteArray errors = panel.errors();
    QVERIFY2(errors.contains(said), errors.constData());
    QCOMPARE(errors.count('\n'), 1);
}

QTEST_GUILESS_MAIN(TestStatisticsFile)
#include "test_statistics_file.moc"
