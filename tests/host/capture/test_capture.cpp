#include "host/capture/capture_line.h"
#include "support/pcapng_reader.h"

#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace cnet;

/** Lines into files, with a clock in the test's hand. */
class TestCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void framesWithTimeDirectionAndComment();
    void timeOnlyGoesForward();
    void whatIsNoFrameIsWrittenAfterASecond();
    void linesComeAndGo();
    void fileStaysUntilTheFirstLine();
    void newFileOfACaptureThatNeverBeganGoes();
    void rotatesBySize();
    void rotatesByAge();
    void ringKeepsWhatAnEarlierRunLeft();
    void packetsThatAReaderMissesAreCounted();
    void endsOnceAndSaysWhy_data();
    void endsOnceAndSaysWhy();
    void blocksFitIntoAPipe();

private:
    bool open(CaptureOptions options = CaptureOptions());
    void pass(qint64 ms) { m_steadyNs += ms * 1000000; }
    PcapngFile written(const char *name = "line.pcapng") const
    {
        return readPcapngFile(m_directory->filePath(QLatin1String(name)));
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
    std::unique_ptr<Capture> m_capture;
    QString m_error;
    QStringList m_troubles;
    qint64 m_wallNs = 0;
    qint64 m_steadyNs = 0;
};

namespace {

const QByteArray kRequest("\x05"
                          "01rSB\x04"
                          "AA");
const QByteArray kAnswer("\x06"
                         "01rSB\x03"
                         "BB");
constexpr int kHeader = 20; // of an exported PDU

QList<QByteArray> bytesOf(const PcapngFile &file)
{
    QList<QByteArray> all;
    for (const PcapngPacket &packet : file.packets) {
        all.append(packet.data.mid(kHeader));
    }
    return all;
}

} // namespace

void TestCapture::init()
{
    m_capture.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    m_path = m_directory->filePath(QLatin1String("line.pcapng"));
    m_troubles.clear();
    m_wallNs = 1700000000000000000;
    m_steadyNs = 5000000000;
}

bool TestCapture::open(CaptureOptions options)
{
    if (options.path.isEmpty()) {
        options.path = m_path;
    }
    options.program = QLatin1String("test 1");
    m_capture = Capture::open(options, m_error,
                              {[this] { return m_wallNs; }, [this] { return m_steadyNs; }});
    if (m_capture) {
        m_capture->setTrouble([this](const QString &what) { m_troubles.append(what); });
        m_capture->setWords([](const QByteArray &frame, CaptureDirection direction) {
            return QString::fromLatin1("%1 bytes %2")
                .arg(frame.size())
                .arg(QLatin1String(direction == CaptureDirection::Sent ? "out" : "in"));
        });
    }
    return m_capture != nullptr;
}

void TestCapture::framesWithTimeDirectionAndComment()
{
    QVERIFY(open());
    CaptureLine line(*m_capture, QString::fromUtf8("línea 1"));
    pass(2);
    line.add(CaptureDirection::Sent, kRequest);
    pass(10);
    line.add(CaptureDirection::Received, kAnswer.left(4));
    pass(5);
    line.add(CaptureDirection::Received, kAnswer.mid(4),
             [](const QByteArray &) { return QString::fromLatin1("a\nfault"); });
    const PcapngFile file = written();
    QCOMPARE(file.error, QByteArray());
    QCOMPARE(file.program, QByteArray("test 1"));
    QCOMPARE(bytesOf(file), (QList<QByteArray>{kRequest, kAnswer}));
    QCOMPARE(file.packets.at(0).interfaceName, QByteArray("línea 1"));
    QCOMPARE(file.packets.at(0).timeNs, m_wallNs + 2000000);
    QCOMPARE(file.packets.at(0).direction, 2);
    QCOMPARE(file.packets.at(0).comment, QByteArray("9 bytes out"));
    QCOMPARE(file.packets.at(1).timeNs, m_wallNs + 17000000);
    QCOMPARE(file.packets.at(1).direction, 1);
    QCOMPARE(file.packets.at(1).comment, QByteArray("9 bytes in; a?fault"));
}

// The wall clock is set back; the packets' times are not.
void TestCapture::timeOnlyGoesForward()
{
    QVERIFY(open());
    CaptureLine line(*m_capture, QLatin1String("line"));
    const qint64 startNs = m_wallNs;
    line.add(CaptureDirection::Sent, kRequest);
    m_wallNs -= 3600000000000;
    pass(1);
    line.add(CaptureDirection::Received, kAnswer);
    QCOMPARE(written().error, QByteArray());
    QCOMPARE(written().packets.last().timeNs, startNs + 1000000);
}

// Of another line, too, and not among the frames that came later.
void TestCapture::whatIsNoFrameIsWrittenAfterASecond()
{
    QVERIFY(open());
    CaptureLine first(*m_capture, QLatin1String("first"));
    CaptureLine second(*m_capture, QLatin1String("second"));
    first.add(CaptureDirection::Received, "half");
    pass(900);
    second.add(CaptureDirection::Sent, kRequest);
    QCOMPARE(bytesOf(written()), QList<QByteArray>{kRequest});
    pass(200);
    second.add(CaptureDirection::Received, kAnswer);
    QCOMPARE(bytesOf(written()), (QList<QByteArray>{kRequest, "half", kAnswer}));
    QCOMPARE(written().error, QByteArray());
}

void TestCapture::linesComeAndGo()
{
    QVERIFY(open());
    for (int i = 0; i < 3; ++i) {
        CaptureLine line(*m_capture, QString::number(i));
        CaptureLine silent(*m_capture, QLatin1String("silent"));
        line.add(CaptureDirection::Sent, kRequest);
        line.add(CaptureDirection::Received, "left");
    }
    const PcapngFile file = written();
    QCOMPARE(file.error, QByteArray());
    QCOMPARE(file.interfaces, (QList<QByteArray>{"0", "1", "2"}));
    QCOMPARE(bytesOf(file),
             (QList<QByteArray>{kRequest, "left", kRequest, "left", kRequest, "left"}));
    QCOMPARE(file.packets.at(5).interfaceName, QByteArray("2"));
}

void TestCapture::fileStaysUntilTheFirstLine()
{
    QVERIFY(open());
    {
        CaptureLine line(*m_capture, QLatin1String("line"));
    }
    const QByteArray before = readPcapngFile(m_path).program;
    QCOMPARE(before, QByteArray("test 1"));
    m_capture.reset();
    QVERIFY(open());
    m_capture.reset();
    QCOMPARE(readPcapngFile(m_path).program, before);
}

void TestCapture::newFileOfACaptureThatNeverBeganGoes()
{
    QVERIFY(open());
    QVERIFY(QFile::exists(m_path));
    m_capture.reset();
    QVERIFY(!QFile::exists(m_path));
}

void TestCapture::rotatesBySize()
{
    CaptureOptions options;
    options.fileBytes = 16384;
    options.files = 3;
    QVERIFY(open(options));
    CaptureLine line(*m_capture, QLatin1String("line"));
    int frames = 0;
    while (!QFile::exists(m_directory->filePath(QLatin1String("line.2.pcapng")))) {
        pass(1);
        line.add(CaptureDirection::Sent, "\x05" + QByteArray::number(++frames) + "\x04");
        QVERIFY(frames < 1000);
    }
    int expected = 0;
    for (const char *name : {"line.2.pcapng", "line.1.pcapng", "line.pcapng"}) {
        const PcapngFile file = written(name);
        QCOMPARE(file.error, QByteArray());
        QCOMPARE(file.interfaces, QList<QByteArray>{"line"});
        QVERIFY(QFile(m_directory->filePath(QLatin1String(name))).size() <= options.fileBytes);
        for (const QByteArray &bytes : bytesOf(file)) {
            QCOMPARE(bytes, "\x05" + QByteArray::number(++expected) + "\x04");
        }
    }
    QCOMPARE(expected, frames);
    while (frames < 2000) {
        line.add(CaptureDirection::Sent, "\x05" + QByteArray::number(++frames) + "\x04");
    }
    QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files).size(), 3);
    QCOMPARE(m_troubles, QStringList());
}

// Each file asks the wall clock anew.
void TestCapture::rotatesByAge()
{
    CaptureOptions options;
    options.fileSeconds = 60;
    options.files = 2;
    QVERIFY(open(options));
    CaptureLine line(*m_capture, QLatin1String("line"));
    line.add(CaptureDirection::Sent, kRequest);
    pass(59999);
    line.add(CaptureDirection::Received, kAnswer);
    QCOMPARE(bytesOf(written()).size(), 2);
    pass(1);
    m_wallNs += 1000;
    line.add(CaptureDirection::Sent, kRequest);
    QCOMPARE(bytesOf(written("line.1.pcapng")).size(), 2);
    QCOMPARE(bytesOf(written()), QList<QByteArray>{kRequest});
    QCOMPARE(written().packets.first().timeNs, m_wallNs);
}

void TestCapture::ringKeepsWhatAnEarlierRunLeft()
{
    CaptureOptions options;
    options.fileSeconds = 60;
    options.files = 2;
    for (const QByteArray &frame : {kRequest, kAnswer}) {
        m_capture.reset();
        QVERIFY(open(options));
        CaptureLine line(*m_capture, QLatin1String("line"));
        line.add(CaptureDirection::Sent, frame);
    }
    QCOMPARE(bytesOf(written("line.1.pcapng")), QList<QByteArray>{kRequest});
    QCOMPARE(bytesOf(written()), QList<QByteArray>{kAnswer});
}

void TestCapture::packetsThatAReaderMissesAreCounted()
{
    CaptureOptions options;
    options.path = m_directory->filePath(QLatin1String("pipe"));
    const QByteArray path = QFile::encodeName(options.path);
    QCOMPARE(mkfifo(path.constData(), 0600), 0);
    const int reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
    QVERIFY(open(options));
    QByteArray all;
    const auto read = [&] {
        QByteArray some(1 << 20, '\0');
        const ssize_t count = ::read(reader, some.data(), static_cast<size_t>(some.size()));
        all += some.left(static_cast<int>(count));
    };
    CaptureLine line(*m_capture, QLatin1String("line"));
    const int sent = 3000;
    for (int i = 0; i < sent; ++i) {
        line.add(CaptureDirection::Sent, kRequest);
    }
    QVERIFY(m_capture->isIncomplete());
    QVERIFY(m_capture->isRunning());
    read();
    line.add(CaptureDirection::Received, kAnswer);
    read();
    ::close(reader);
    const PcapngFile file = readPcapng(all);
    QCOMPARE(file.error, QByteArray());
    QCOMPARE(bytesOf(file).last(), kAnswer);
    QVERIFY(file.packets.last().lost > 0);
    QCOMPARE(file.packets.size() - 1 + static_cast<int>(file.packets.last().lost), sent);
    QCOMPARE(m_troubles, QStringList(QLatin1String(
                             "the reader of the capture is too slow; frames are missing")));
}

void TestCapture::endsOnceAndSaysWhy_data()
{
    QTest::addColumn<bool>("rotates");
    QTest::newRow("device that is full") << false;
    QTest::newRow("directory that is gone when a file is to be rotated") << true;
}

void TestCapture::endsOnceAndSaysWhy()
{
    QFETCH(bool, rotates);
    CaptureOptions options;
    options.fileSeconds = rotates ? 1 : 0;
    options.files = 2;
    options.path = rotates ? m_path : QLatin1String("/dev/full");
    QVERIFY(open(options));
    CaptureLine line(*m_capture, QLatin1String("line"));
    line.add(CaptureDirection::Sent, kRequest);
    QDir(m_directory->path()).removeRecursively();
    pass(2000);
    line.add(CaptureDirection::Sent, kRequest);
    line.add(CaptureDirection::Sent, kRequest);
    QVERIFY(!m_capture->isRunning());
    QVERIFY(m_capture->isIncomplete());
    QCOMPARE(m_troubles, QStringList(QString::fromLatin1("the capture to %1 has ended: %2")
                                         .arg(options.path,
                                              QLatin1String(rotates ? "No such file or directory"
                                                                    : "No space left on device"))));
}

// Even with everything as long as it gets, and of letters that take most bytes.
void TestCapture::blocksFitIntoAPipe()
{
    QVERIFY(open());
    m_capture->setWords(
        [](const QByteArray &, CaptureDirection) { return QString(100000, QChar(0x20AC)); });
    CaptureLine line(*m_capture, QString(100000, QChar(0x20AC)));
    const auto before = QFile(m_path).size();
    line.add(CaptureDirection::Sent, QByteArray(FrameCutter::kLongest, 'x'),
             [](const QByteArray &) { return QString::fromLatin1("fault: silence"); });
    const auto block = QFile(m_path).size() - before;
    QVERIFY2(block > FrameCutter::kLongest && block <= CaptureOutput::kLongestBlock,
             QByteArray::number(block).constData());
    QCOMPARE(written().error, QByteArray());
    QVERIFY(written().packets.first().comment.endsWith("; fault: silence"));
}

QTEST_GUILESS_MAIN(TestCapture)
#include "test_capture.moc"
