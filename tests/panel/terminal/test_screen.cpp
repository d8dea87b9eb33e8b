#include "host/support/test_registers.h"

#include "panel/terminal/screen.h"

#include <QBuffer>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hidesAndShowsTheCursor();
    void drawsInPlace();
    void startsAfreshAtANewSize();
    void saysAboveTheTable();

private:
    QByteArray taken();

    Monitor m_monitor{{testItem("D_W", 100, 1)}, 60, [](int, const RegisterInfo &, int, int count) {
                          return QVector<quint16>(count, 0);
                      }};
    MonitorStatus m_status;
    QBuffer m_device;
    QSize m_size;
};

void TestScreen::init()
{
    m_device.close();
    m_device.setData(QByteArray());
    QVERIFY(m_device.open(QIODevice::ReadWrite));
    m_size = QSize(80, 24);
}

QByteArray TestScreen::taken()
{
    QByteArray bytes = m_device.data();
    m_device.buffer().clear();
    m_device.seek(0);
    return bytes;
}

void TestScreen::hidesAndShowsTheCursor()
{
    {
        const Screen screen(m_device, [this] { return m_size; });
        QCOMPARE(taken(), QByteArray("\x1b[?25l"));
    }
    QCOMPARE(taken(), QByteArray("\x1b[?25h"));
}

void TestScreen::drawsInPlace()
{
    Screen screen(m_device, [this] { return m_size; });
    taken();
    screen.refresh(m_monitor, m_status);
    const QByteArray first = taken();
    const int lines = static_cast<int>(first.count('\n'));
    QCOMPARE(lines, 4); // heading, titles, one item, titles of the stations
    QVERIFY(first.startsWith("\r"));
    screen.refresh(m_monitor, m_status);
    QCOMPARE(taken(), "\r\x1b[4A" + first.mid(1));
}

void TestScreen::startsAfreshAtANewSize()
{
    Screen screen(m_device, [this] { return m_size; });
    screen.refresh(m_monitor, m_status);
    taken();
    m_size = QSize(40, 24);
    screen.refresh(m_monitor, m_status);
    QVERIFY(taken().startsWith("\x1b[2J\x1b[H\r"));
}

void TestScreen::saysAboveTheTable()
{
    Screen screen(m_device, [this] { return m_size; });
    screen.refresh(m_monitor, m_status);
    taken();
    screen.say(QLatin1String("station 1 does not answer"));
    const QByteArray bytes = taken();
    QVERIFY(bytes.startsWith("\r\x1b[4A\x1b[Jstation 1 does not answer\r\n"));
    QVERIFY(bytes.indexOf("ADDRESS") > bytes.indexOf("does not answer"));
}

QTEST_APPLESS_MAIN(TestScreen)
#include "test_screen.moc"
