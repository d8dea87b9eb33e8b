#include "panel/watched_items.h"

#include "panel/views/screen.h"
#include "support/terminal_grid.h"

#include <QBuffer>
#include <QtTest>

#include <random>

using namespace cnet;
using namespace cnet::panel;

class TestScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hidesAndShowsTheCursor();
    void sendsOnlyWhatChanged();
    void showsWhateverItShowedBefore();
    void startsAfreshAtANewSize();
    void saysAboveTheTable();
    void keepsALog();
    void showsWhatChanged();
    void cutsTheBottomLine_data();
    void cutsTheBottomLine();
    void scrolls();
    void eachViewKeepsItsPlace();

private:
    QByteArray taken();
    QByteArray refreshed(Screen &screen);
    QString refreshedGrid(Screen &screen, TerminalGrid &grid);
    void read(quint16 value, qint64 nowMs);

    std::unique_ptr<Monitor> m_monitor;
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
    m_monitor = std::make_unique<Monitor>(60);
    m_monitor->setItems({testItem("D_W", 100, 1)});
    m_status = MonitorStatus();
    m_status.nowMs = 1000;
    m_status.time = wallTime(momentAt(1000).wallMs);
}

QByteArray TestScreen::taken()
{
    QByteArray bytes = m_device.data();
    m_device.buffer().clear();
    m_device.seek(0);
    return bytes;
}

QByteArray TestScreen::refreshed(Screen &screen)
{
    taken();
    screen.refresh(*m_monitor, m_status);
    return taken();
}

QString TestScreen::refreshedGrid(Screen &screen, TerminalGrid &grid)
{
    screen.refresh(*m_monitor, m_status);
    grid.write(taken());
    return grid.text();
}

void TestScreen::read(quint16 value, qint64 nowMs)
{
    m_status.nowMs = nowMs;
    m_status.time = wallTime(momentAt(nowMs).wallMs);
    m_monitor->blockRead(0, 0, {value}, momentAt(nowMs));
}

void TestScreen::hidesAndShowsTheCursor()
{
    {
        const Screen screen(m_device, [this] { return m_size; });
        QCOMPARE(taken(), QByteArray("\x1b[?25l"));
    }
    QCOMPARE(taken(), QByteArray("\x1b[?25h"));
}

void TestScreen::sendsOnlyWhatChanged()
{
    Screen screen(m_device, [this] { return m_size; });
    const QByteArray first = refreshed(screen);
    QCOMPARE(first.count('\n'), 4); // heading, titles, one item, titles of the stations
    QVERIFY(first.startsWith("\r"));
    QCOMPARE(refreshed(screen), QByteArray());
    m_status.rounds = 7;
    QCOMPARE(refreshed(screen), QByteArray("\x1b[4A\x1b[19G7\x1b[4B\r"));
}

// After whatever was shown, the terminal shows what a new one would.
void TestScreen::showsWhateverItShowedBefore()
{
    m_size = QSize(60, 12);
    TerminalGrid grid(m_size.width(), m_size.height());
    Screen screen(m_device, [this] { return m_size; });
    std::mt19937 random(7);
    const auto any = [&random](int below) {
        return static_cast<int>(random() % static_cast<unsigned int>(below));
    };
    for (int i = 0; i < 500; ++i) {
        QVector<Item> items;
        for (int item = any(15); item >= 0; --item) {
            items.append(testItem("D_W", 100 * any(20), 1 + any(4)));
        }
        m_monitor->setItems(items);
        read(static_cast<quint16>(any(65536)), 1000 + 100 * i);
        m_status.linkLost = QString(any(70) / 10, QLatin1Char('x'));
        m_status.stations.clear();
        m_status.stations[any(32)].frames = any(1000);
        ViewState state;
        state.view = static_cast<View>(any(kViews));
        state.trend = any(2) == 0 ? Trend::Hidden : Trend::Shown;
        state.filter = any(3) == 0 ? QLatin1String("5") : QString();
        screen.setView(state);
        screen.scroll(any(9) - 4);
        if (any(20) == 0) {
            screen.say(QString(1 + any(50), QLatin1Char('s')));
        }
        const QStringList shown = refreshedGrid(screen, grid).split(QLatin1Char('\n'));
        // All of it anew, for the same screen.
        screen.say(QLatin1String("again"));
        TerminalGrid fresh(m_size.width(), m_size.height());
        const QByteArray all = taken();
        fresh.write(all.mid(all.indexOf("\r\n") + 2));
        const int lines = static_cast<int>(all.count('\n')) - 1;
        const int begin = static_cast<int>(shown.indexOf(fresh.lines().first()));
        QVERIFY2(begin >= 0, qPrintable(shown.join(QLatin1Char('\n'))));
        QCOMPARE(shown.mid(begin, lines), fresh.lines().mid(0, lines));
        QCOMPARE(shown.mid(begin + lines).join(QString()), QString());
        grid.write(all);
    }
}

void TestScreen::startsAfreshAtANewSize()
{
    Screen screen(m_device, [this] { return m_size; });
    refreshed(screen);
    m_size = QSize(40, 24);
    QVERIFY(refreshed(screen).startsWith("\x1b[2J\x1b[H\r"));
}

void TestScreen::saysAboveTheTable()
{
    Screen screen(m_device, [this] { return m_size; });
    refreshed(screen);
    screen.say(QLatin1String("station 1 does not answer"));
    const QByteArray bytes = taken();
    QVERIFY(bytes.startsWith("\x1b[4A\r\x1b[Jstation 1 does not answer\r\n"));
    QVERIFY(bytes.indexOf("ADDRESS") > bytes.indexOf("does not answer"));
}

// A station that comes and goes for a week does not fill the memory.
void TestScreen::keepsALog()
{
    Screen screen(m_device, [this] { return m_size; });
    for (int i = 1; i <= Screen::kLogLines + 1; ++i) {
        screen.say(QString::fromLatin1("message %1").arg(i));
    }
    ViewState state;
    state.view = View::Log;
    screen.setView(state);
    const QByteArray top = refreshed(screen);
    QVERIFY(top.contains("  message 2\r\n"));
    QVERIFY(!top.contains("  message 1\r\n"));
    QVERIFY(top.contains(" of 500"));
    screen.scroll(1000);
    QVERIFY(refreshed(screen).contains("01"));
}

// In reverse and with a mark, and not for ever; a first reading is no change.
void TestScreen::showsWhatChanged()
{
    Screen screen(m_device, [this] { return m_size; });
    TerminalGrid grid(80, 24);
    QObject::connect(
        m_monitor.get(), &Monitor::valuesChanged, m_monitor.get(),
        [&](const QVector<ValueChange> &changes) { screen.showChanges(*m_monitor, changes); });
    read(5, 1000);
    m_monitor->tell();
    QVERIFY(refreshedGrid(screen, grid).contains(QLatin1String("5 0x0005 ")));
    read(6, 2000);
    m_monitor->tell();
    QVERIFY(refreshedGrid(screen, grid).contains(QLatin1String("6 0x0006* ")));
    QVERIFY(grid.reversed().contains(QLatin1String("6*")));
    read(6, 3600);
    QVERIFY(refreshedGrid(screen, grid).contains(QLatin1String("6 0x0006 ")));
}

void TestScreen::cutsTheBottomLine_data()
{
    QTest::addColumn<int>("cut");
    QTest::addColumn<QString>("shown");
    QTest::newRow("front") << static_cast<int>(Cut::Front) << "3456789";
    QTest::newRow("back") << static_cast<int>(Cut::Back) << "0123456";
}

void TestScreen::cutsTheBottomLine()
{
    QFETCH(int, cut);
    QFETCH(QString, shown);
    m_size = QSize(7, 24);
    TerminalGrid grid(7, 24);
    Screen screen(m_device, [this] { return m_size; });
    screen.setBottomLine(QLatin1String("0123456789"), static_cast<Cut>(cut));
    QCOMPARE(refreshedGrid(screen, grid).trimmed().split(QLatin1Char('\n')).last(), shown);
}

// The list stays where it was left, and its ends stop the keys rather than being run over.
void TestScreen::scrolls()
{
    m_monitor->setItems({testItem("D_W", 100, 200)});
    m_size = QSize(40, 14);
    TerminalGrid grid(40, 14);
    Screen screen(m_device, [this] { return m_size; });
    const auto shows = [&](int lines, const char *text) {
        screen.scroll(lines);
        return refreshedGrid(screen, grid).contains(QLatin1String(text)) &&
               refreshedGrid(screen, grid).contains(QLatin1String(text));
    };
    QVERIFY(shows(0, "... lines 1 to 9 of 200"));
    QVERIFY(shows(1, "... lines 2 to 10 of 200"));
    QVERIFY(shows(1000000, "... lines 192 to 200 of 200"));
    QVERIFY(shows(-1, "... lines 191 to 199 of 200"));
    QVERIFY(shows(-1000000, "... lines 1 to 9 of 200"));
}

void TestScreen::eachViewKeepsItsPlace()
{
    m_monitor->setItems({testItem("D_W", 100, 200)});
    m_size = QSize(40, 14);
    TerminalGrid grid(40, 14);
    Screen screen(m_device, [this] { return m_size; });
    screen.scroll(5);
    refreshedGrid(screen, grid);
    ViewState state;
    state.view = View::Log;
    screen.setView(state);
    screen.scroll(3);
    QVERIFY(refreshedGrid(screen, grid).contains(QLatin1String("nothing was said yet")));
    screen.setView(ViewState());
    QVERIFY(refreshedGrid(screen, grid).contains(QLatin1String("... lines 6 to 14 of 200")));
}

QTEST_APPLESS_MAIN(TestScreen)
#include "test_screen.moc"
