#include "host/capture/capture_command_line.h"

#include <QtTest>

using namespace cnet;

/** --capture and its companions. */
class TestCaptureCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
};

namespace {

bool readLine(const QString &line, std::optional<CaptureOptions> &options, QString &error)
{
    QCommandLineParser parser;
    addCaptureOptions(parser);
    return parser.parse(QStringList(QLatin1String("program")) +
                        line.split(QLatin1Char(' '), Qt::SkipEmptyParts)) &&
           readCaptureOptions(parser, QLatin1String("program 1"), options, error);
}

} // namespace

void TestCaptureCommandLine::reads_data()
{
    QTest::addColumn<bool>("rtac");
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<int>("files");
    const auto row = [](const char *line, bool rtac, qint64 bytes, qint64 seconds, int files) {
        QTest::newRow(line) << rtac << bytes << seconds << files;
    };
    row("--capture x", false, 0, 0, 10);
    row("--capture x --capture-as pdu", false, 0, 0, 10);
    row("--capture x --capture-as rtac", true, 0, 0, 10);
    row("--capture x --capture-size 16384", false, 16384, 0, 10);
    row("--capture x --capture-size 64k --capture-files 1", false, 65536, 0, 1);
    row("--capture x --capture-size 10M --capture-age 1", false, 10485760, 1, 10);
    row("--capture x --capture-size 1024G", false, 1099511627776, 0, 10);
    row("--capture x --capture-age 30m --capture-files 1000", false, 0, 1800, 1000);
    row("--capture x --capture-age 2h", false, 0, 7200, 10);
    row("--capture x --capture-age 366d", false, 0, 31622400, 10);
}

void TestCaptureCommandLine::reads()
{
    QFETCH(bool, rtac);
    QFETCH(qint64, bytes);
    QFETCH(qint64, seconds);
    QFETCH(int, files);
    std::optional<CaptureOptions> options;
    QString error;
    QVERIFY2(readLine(QString::fromLatin1(QTest::currentDataTag()), options, error),
             qPrintable(error));
    QVERIFY(options);
    QCOMPARE(options->path, QLatin1String("x"));
    QCOMPARE(options->program, QLatin1String("program 1"));
    QCOMPARE(options->format == CaptureFormat::RtacSerial, rtac);
    QCOMPARE(options->fileBytes, bytes);
    QCOMPARE(options->fileSeconds, seconds);
    QCOMPARE(options->files, files);
    QCOMPARE(options->isRing(), bytes > 0 || seconds > 0);
    std::optional<CaptureOptions> none;
    QVERIFY(readLine(QString(), none, error));
    QVERIFY(!none);
}

void TestCaptureCommandLine::refuses_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char *line, const char *message) {
        QTest::newRow(line) << QString::fromLatin1(message);
    };
    const char size[] = "expected bytes from 16k to 1024G, for example 10M";
    const char age[] = "expected seconds from 1 to 366d, for example 90, 30m, 1h or 1d";
    row("--capture=", "expected the name of a file");
    row("--capture-as rtac", "--capture-as: expected --capture FILE with it");
    row("--capture-size 1M", "--capture-size: expected --capture FILE with it");
    row("--capture x --capture-as pcap", "--capture-as 'pcap': expected pdu or rtac");
    row("--capture x --capture-as RTAC", "expected pdu or rtac");
    row("--capture x --capture-size 16383", size);
    row("--capture x --capture-size 1025G", size);
    row("--capture x --capture-size 9223372036854775807G", size);
    row("--capture x --capture-size 1m", size);
    row("--capture x --capture-size M", size);
    row("--capture x --capture-size=-1M", size);
    row("--capture x --capture-size 1.5M", size);
    row("--capture x --capture-age 0", age);
    row("--capture x --capture-age 367d", age);
    row("--capture x --capture-age 1M", age);
    row("--capture x --capture-age 1s", age);
    row("--capture x --capture-age 1 --capture-files 0", "expected a number from 1 to 1000");
    row("--capture x --capture-age 1 --capture-files 1001", "expected a number from 1 to 1000");
    row("--capture x --capture-age 1 --capture-files 1k", "expected a number from 1 to 1000");
    row("--capture x --capture-files 2", "expected --capture-size or --capture-age with it");
}

void TestCaptureCommandLine::refuses()
{
    QFETCH(QString, message);
    std::optional<CaptureOptions> options;
    QString error;
    QVERIFY(!readLine(QString::fromLatin1(QTest::currentDataTag()), options, error));
    QVERIFY2(error.contains(message), qPrintable(error));
    QVERIFY(!options);
}

QTEST_GUILESS_MAIN(TestCaptureCommandLine)
#include "test_capture_command_line.moc"
