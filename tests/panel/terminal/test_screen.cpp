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
    void scrolls();

private:
    QByteArray taken();

    Monitor m_monitor{60};
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
    m_monitor.setItems({testItem("D_W", 100, 1)});
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

// The list stays where it was left, and its ends stop the keys rather than being run over.
void TestScreen::scrolls()
{
    m_monitor.setItems({testItem("D_W", 100, 200)});
    m_size = QSize(40, 14);
    Screen screen(m_device, [this] { return m_size; });
    const auto shows = [&](int lines, const char *text) {
        taken();
        screen.scroll(lines);
        screen.refresh(m_monitor, m_status);
        screen.refresh(m_monitor, m_status);
        return taken().count(text) == 2;
    };
    QVERIFY(shows(0, "... lines 1 to 9 of 200"));
    QVERIFY(shows(1, "... lines 2 to 10 of 200"));
    QVERIFY(shows(1000000, "... lines 192 to 200 of 200"));
    QVERIFY(shows(-1, "... lines 191 to 199 of 200"));
    QVERIFY(shows(-1000000, "... lines 1 to 9 of 200"));
}

QTEST_APPLESS_MAIN(TestScreen)
#include "test_screen.moc"
