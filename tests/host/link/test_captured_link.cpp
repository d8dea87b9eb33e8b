#include "host/link/captured_link.h"
#include "host/support/fake_link.h"
#include "support/pcapng_reader.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;

/** A link with a capture does what the link does, and all of it stands in the capture. */
class TestCapturedLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void handsEverythingOn();
    void writesWhatGoesOverTheWire();
    void writesNothingWhileClosed();

private:
    QList<QByteArray> written() const;

    std::unique_ptr<QTemporaryDir> m_directory;
    FakeLink *m_inner = nullptr;
    std::unique_ptr<CapturedLink> m_link;
};

namespace {

const QByteArray kRequest("\x05"
                          "01rSB\x04"
                          "AA");
const QByteArray kAnswer("\x06"
                         "01rSB\x03"
                         "BB");

} // namespace

void TestCapturedLink::init()
{
    m_link.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    CaptureOptions options;
    options.path = m_directory->filePath(QLatin1String("line.pcapng"));
    QString error;
    std::shared_ptr<Capture> capture = Capture::open(options, error);
    QVERIFY2(capture, qPrintable(error));
    auto inner = std::make_unique<FakeLink>();
    m_inner = inner.get();
    m_link = std::make_unique<CapturedLink>(std::move(inner), capture);
}

// "<" for what came in, ">" for what went out.
QList<QByteArray> TestCapturedLink::written() const
{
    const int header = 20;
    const PcapngFile file = readPcapngFile(m_directory->filePath(QLatin1String("line.pcapng")));
    QList<QByteArray> all;
    if (!file.error.isEmpty()) {
        all.append(file.error);
    }
    for (const PcapngPacket &packet : file.packets) {
        all.append((packet.direction == 1 ? "<" : ">") + packet.data.mid(header));
    }
    return all;
}

void TestCapturedLink::handsEverythingOn()
{
    QSignalSpy opened(m_link.get(), &Link::opened);
    QSignalSpy failed(m_link.get(), &Link::failed);
    QSignalSpy received(m_link.get(), &Link::received);
    QCOMPARE(m_link->name(), QLatin1String("fake"));
    QVERIFY(!m_link->isOpen());
    m_link->open();
    QVERIFY(m_link->isOpen());
    QCOMPARE(opened.size(), 1);
    m_link->send(kRequest);
    QCOMPARE(m_inner->sentFrames, QList<QByteArray>{kRequest});
    m_inner->say("bytes");
    QCOMPARE(received.size(), 1);
    QCOMPARE(received.first().first().toByteArray(), QByteArray("bytes"));
    m_inner->breakDown("unplugged");
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first().first().toString(), QLatin1String("unplugged"));
    m_link->open();
    m_link->close();
    QVERIFY(!m_inner->isOpen());
}

// In the order of the wire: what has come in part stands in front of the next request, too, and
// before the end of the line.
void TestCapturedLink::writesWhatGoesOverTheWire()
{
    m_link->open();
    m_link->send(kRequest);
    m_inner->say(kAnswer.left(3));
    m_link->send("no frame");
    m_inner->say("late");
    m_inner->say(kAnswer);
    m_inner->say("cut");
    m_inner->breakDown();
    const QList<QByteArray> untilLost{'>' + kRequest,      '<' + kAnswer.left(3), ">no frame",
                                      QByteArray("<late"), '<' + kAnswer,         "<cut"};
    QCOMPARE(written(), untilLost);
    m_link->open();
    m_inner->say("last");
    m_link->close();
    QCOMPARE(written(), untilLost + QList<QByteArray>{"<last"});
}

void TestCapturedLink::writesNothingWhileClosed()
{
    m_link->send(kRequest);
    QCOMPARE(written(), QList<QByteArray>());
    QCOMPARE(m_inner->sentFrames, QList<QByteArray>());
}

QTEST_GUILESS_MAIN(TestCapturedLink)
#include "test_captured_link.moc"
