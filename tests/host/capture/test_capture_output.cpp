#include "host/capture/capture_output.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>

using namespace cnet;

/** Files, pipes and devices that a capture goes to, and what happens when they take no more. */
class TestCaptureOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { std::signal(SIGPIPE, SIG_IGN); }
    void fileStaysUntilItIsEmptied();
    void refusesPlaces_data();
    void refusesPlaces();
    void oneWriterOnly();
    void fullFileHoldsWholeBlocks();
    void slowReaderLosesBlocksAndIsNotWaitedFor();
    void readerThatGoesAway();
    void ringShiftsItsFiles();
    void ringNames_data();
    void ringNames();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    QByteArray content(const QString &path) const;
    void fill(const QString &path, const QByteArray &content) const;

    QTemporaryDir m_directory;
};

QByteArray TestCaptureOutput::content(const QString &path) const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

void TestCaptureOutput::fill(const QString &path, const QByteArray &content) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

void TestCaptureOutput::fileStaysUntilItIsEmptied()
{
    fill(path("old"), "older than this");
    CaptureOutput output;
    QVERIFY(output.open(path("old")));
    QVERIFY(output.isRegular());
    QCOMPARE(output.size(), qint64(15));
    QCOMPARE(content(path("old")), QByteArray("older than this"));
    QVERIFY(output.empty());
    QCOMPARE(output.write("new"), CaptureWrite::Done);
    QCOMPARE(output.size(), qint64(3));
    QCOMPARE(content(path("old")), QByteArray("new"));
}

void TestCaptureOutput::refusesPlaces_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("reason");
    mkfifo(QFile::encodeName(path("fifo")).constData(), 0600);
    QTest::newRow("directory") << QString::fromLatin1("/") << QString::fromLatin1("Is a directory");
    QTest::newRow("no directory") << QString::fromLatin1("/nowhere/x")
                                  << QString::fromLatin1("No such file or directory");
    QTest::newRow("pipe without a reader")
        << path("fifo") << QString::fromLatin1("nobody reads from this pipe");
}

void TestCaptureOutput::refusesPlaces()
{
    QFETCH(QString, place);
    QFETCH(QString, reason);
    CaptureOutput output;
    QVERIFY(!output.open(place));
    QVERIFY(!output.isOpen());
    QCOMPARE(output.errorText(), reason);
}

void TestCaptureOutput::oneWriterOnly()
{
    CaptureOutput first;
    CaptureOutput second;
    QVERIFY(first.open(path("shared")));
    QVERIFY(!second.open(path("shared")));
    QCOMPARE(second.errorText(), QLatin1String("another program writes a capture there"));
    first.close();
    QVERIFY(second.open(path("shared")));
}

void TestCaptureOutput::fullFileHoldsWholeBlocks()
{
    CaptureOutput output;
    QVERIFY(output.open(path("full")));
    const QByteArray block(300, 'b');
    QList<CaptureWrite> results;
    {
        const FullDisk full(1000);
        for (int i = 0; i < 4; ++i) {
            results.append(output.write(block));
        }
    }
    QCOMPARE(results, (QList<CaptureWrite>{CaptureWrite::Done, CaptureWrite::Done,
                                           CaptureWrite::Done, CaptureWrite::Failed}));
    QCOMPARE(output.errorText(), QLatin1String("File too large"));
    QCOMPARE(content(path("full")), QByteArray(900, 'b'));
}

void TestCaptureOutput::slowReaderLosesBlocksAndIsNotWaitedFor()
{
    mkfifo(QFile::encodeName(path("slow")).constData(), 0600);
    const int reader = ::open(QFile::encodeName(path("slow")).constData(), O_RDONLY | O_NONBLOCK);
    CaptureOutput output;
    QVERIFY(output.open(path("slow")));
    const QByteArray block(CaptureOutput::kLongestBlock, 'b');
    int written = 0;
    while (output.write(block) == CaptureWrite::Done) {
        ++written;
    }
    QVERIFY(written > 0);
    // It was waited for just now; not again as long as it does not read.
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 100; ++i) {
        QCOMPARE(output.write(block), CaptureWrite::Dropped);
    }
    QVERIFY2(clock.elapsed() < 2000, QByteArray::number(clock.elapsed()).constData());
    std::array<char, 65536> bytes{};
    qint64 came = 0;
    for (ssize_t count = 1; count > 0; came += count > 0 ? count : 0) {
        count = ::read(reader, bytes.data(), bytes.size());
    }
    QCOMPARE(came, qint64(written) * block.size());
    QCOMPARE(output.write(block), CaptureWrite::Done);
    ::close(reader);
}

void TestCaptureOutput::readerThatGoesAway()
{
    mkfifo(QFile::encodeName(path("gone")).constData(), 0600);
    const int reader = ::open(QFile::encodeName(path("gone")).constData(), O_RDONLY | O_NONBLOCK);
    CaptureOutput output;
    QVERIFY(output.open(path("gone")));
    QVERIFY(!output.isRegular());
    QCOMPARE(output.write("block"), CaptureWrite::Done);
    ::close(reader);
    QCOMPARE(output.write("block"), CaptureWrite::Failed);
    QCOMPARE(output.errorText(), QLatin1String("Broken pipe"));
}

void TestCaptureOutput::ringShiftsItsFiles()
{
    const QString file = path("ring.pcapng");
    for (const char *content : {"1", "2", "3", "4", "5"}) {
        QVERIFY(makeRoomInRing(file, 3));
        fill(file, content);
    }
    QCOMPARE(content(file), QByteArray("5"));
    QCOMPARE(content(path("ring.1.pcapng")), QByteArray("4"));
    QCOMPARE(content(path("ring.2.pcapng")), QByteArray("3"));
    QVERIFY(!QFile::exists(path("ring.3.pcapng")));
    QVERIFY(makeRoomInRing(file, 1));
    QCOMPARE(content(file), QByteArray("5"));
    QVERIFY(QDir().mkpath(path("other.1.pcapng/taken")));
    fill(path("other.pcapng"), "stays");
    QVERIFY(!makeRoomInRing(path("other.pcapng"), 2));
    QCOMPARE(content(path("other.pcapng")), QByteArray("stays"));
}

void TestCaptureOutput::ringNames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("second");
    const auto row = [](const char *path, const char *second) {
        QTest::newRow(path) << QString::fromLatin1(path) << QString::fromLatin1(second);
    };
    row("line.pcapng", "line.2.pcapng");
    row("/a.b/line", "/a.b/line.2");
    row("a.b.c", "a.b.2.c");
    row("line.", "line..2");
}

void TestCaptureOutput::ringNames()
{
    QFETCH(QString, path);
    QFETCH(QString, second);
    QCOMPARE(ringFile(path, 2), second);
}

QTEST_GUILESS_MAIN(TestCaptureOutput)
#include "test_capture_output.moc"
