#include "plc/servers/pty_server.h"

#include "plc/support/served_bus.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace plc;

namespace {

/** A master that opens the device as a plain file, without settings of its own. */
class Master
{
public:
    explicit Master(const QString &device)
        : m_handle(::open(QFile::encodeName(device).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK))
    {}
    ~Master() { ::close(m_handle); }
    Master(const Master &) = delete;
    Master &operator=(const Master &) = delete;

    bool isOpen() const { return m_handle >= 0; }

    bool send(const QByteArray &bytes) const
    {
        return ::write(m_handle, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
               bytes.size();
    }

    const QByteArray &received()
    {
        char buffer[1024];
        const ssize_t size = ::read(m_handle, buffer, sizeof buffer);
        if (size > 0) {
            m_received.append(buffer, static_cast<int>(size));
        }
        return m_received;
    }

private:
    int m_handle;
    QByteArray m_received;
};

} // namespace

class TestPtyServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_served = std::make_unique<ServedBus>(); }

    void everyByteArrives()
    {
        // No terminal may act upon the control characters of a frame, nor double what it is sent.
        PtyServer server(m_served->setup);
        QVERIFY2(server.open(QString()), qPrintable(server.errorString()));
        Master master(server.device());
        QVERIFY(master.isOpen());
        QVERIFY(master.send(wire("[0D][0A][11][13][1A][1C][7F][00][FF]") + kRead));
        QTRY_COMPARE(master.received(), kData);
    }

    void clientsComeAndGo()
    {
        PtyServer server(m_served->setup);
        QVERIFY(server.open(QString()));
        for (int i = 0; i < 3; ++i) {
            Master master(server.device());
            QVERIFY(master.isOpen());
            QVERIFY(master.send(kRead));
            QTRY_COMPARE(master.received(), kData);
        }
    }

    void nobodyReads()
    {
        PtyServer server(m_served->setup);
        QVERIFY(server.open(QString()));
        {
            const Master deaf(server.device());
            for (int i = 0; i < 2000; ++i) {
                QTRY_VERIFY(deaf.send(kRead));
                QCoreApplication::processEvents();
            }
        }
        Master master(server.device());
        const QByteArray marked = wire("[ENQ]01RSS0104%DW5[EOT]");
        m_served->bus.find(1)->station.memory().setWord('D', 5, 0xBEEF);
        QVERIFY(master.send(marked));
        QTRY_VERIFY(master.received().endsWith(wire("[ACK]01RSS0102BEEF[ETX]")));
    }

    void linkComesAndGoes()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QLatin1String("plc"));
        {
            PtyServer server(m_served->setup);
            QVERIFY(server.open(link));
            QCOMPARE(server.device(), link);
            Master master(link);
            QVERIFY(master.send(kRead));
            QTRY_COMPARE(master.received(), kData);
        }
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void linkOfAnEarlierRunIsReplaced()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QLatin1String("plc"));
        QVERIFY(QFile::link(QLatin1String("/dev/pts/999999"), link));
        PtyServer server(m_served->setup);
        QVERIFY(server.open(link));
        const Master master(link);
        QVERIFY(master.isOpen());
    }

    void otherFilesStay()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QLatin1String("precious"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("keep");
        file.close();
        {
            PtyServer server(m_served->setup);
            QVERIFY(!server.open(path));
            QVERIFY(server.errorString().contains(path));
        }
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("keep"));
    }

    void foreignLinkStaysAtTheEnd()
    {
        const QTemporaryDir folder;
        const QString link = folder.filePath(QLatin1String("plc"));
        {
            PtyServer server(m_served->setup);
            QVERIFY(server.open(link));
            QVERIFY(QFile::remove(link));
            QVERIFY(QFile::link(folder.path(), link));
        }
        QVERIFY(QFileInfo(link).isSymLink());
    }

private:
    std::unique_ptr<ServedBus> m_served;
};

QTEST_GUILESS_MAIN(TestPtyServer)
#include "test_pty_server.moc"
