#include "host/support/test_types.h"
#include "panel/sim_session.h"

#include "panel/runs/monitor_keys.h"

#include <QtTest>

#include <unistd.h>

#include <array>
#include <memory>

using namespace cnet;
using namespace cnet::panel;

class TestMonitorKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void asks_data();
    void asks();
    void refuses_data();
    void refuses();
    void writesAndSaysHowItEnded_data();
    void writesAndSaysHowItEnded();
    void writesByName();
    void asksForAReload();
    void correctsALine();
    void choosesViews_data();
    void choosesViews();
    void filters_data();
    void filters();
    void countsAnew();
    void moves();
    void arrowsDoNotMoveWhileALineIsTyped();
    void listensToTerminalsOnly();

private:
    Driver m_driver;
    QStringList m_said;
    Messages m_messages;
    std::unique_ptr<SimSession> m_panel;
    std::unique_ptr<MonitorKeys> m_keys;
};

void TestMonitorKeys::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    m_messages.setSink([this](const QString &line) { m_said.append(line); });
}

void TestMonitorKeys::init()
{
    m_said.clear();
    m_panel = std::make_unique<SimSession>(m_driver);
    m_keys = std::make_unique<MonitorKeys>(m_driver, m_panel->session, m_messages, 2);
    m_panel->session.open();
}

void TestMonitorKeys::cleanup()
{
    m_keys.reset();
    m_panel.reset();
}

void TestMonitorKeys::asks_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("line");
    const QString closed = QLatin1String("w: write");
    const auto row = [](const QByteArray &keys, const QString &line) {
        QTest::newRow(keys.toPercentEncoding().constData()) << keys << line;
    };
    row("", closed);
    row("x", closed);
    row("w", QLatin1String("write ITEM=VALUE (Esc leaves): _"));
    row("wD_W:1", QLatin1String("write ITEM=VALUE (Esc leaves): D_W:1_"));
    row("Ww", QLatin1String("write ITEM=VALUE (Esc leaves): w_"));
    row("wabc\x1b", closed);
    row("w\r", closed);
    row("w  \r", closed);
    row("wabc\x1b\x1bw", QLatin1String("write ITEM=VALUE (Esc leaves): _"));
}

void TestMonitorKeys::asks()
{
    QFETCH(QByteArray, keys);
    QFETCH(QString, line);
    m_keys->type(keys);
    QVERIFY2(m_keys->bottomLine().startsWith(line), qPrintable(m_keys->bottomLine()));
}

void TestMonitorKeys::refuses_data()
{
    QTest::addColumn<QString>("said");
    const auto row = [](const char *text, const char *said) {
        QTest::newRow(text) << QString::fromLatin1(said);
    };
    row("D_W:1", "expected ITEM=VALUE");
    row("D_W:1=x", "'x' is no value of D_W");
    row("D_W:10000=1", "an address of D_W is a number from 0 to 9999");
    row("D_W:9999=1,2", "'2/D_W:9999*2': out of range");
    row("X:1=1", "the driver has no register 'X'");
}

// What is refused never reaches the line, and stays to be corrected.
void TestMonitorKeys::refuses()
{
    QFETCH(QString, said);
    m_keys->type("w" + QByteArray(QTest::currentDataTag()) + "\r");
    QCOMPARE(m_said.size(), 1);
    QVERIFY2(m_said.first().contains(said), qPrintable(m_said.first()));
    QVERIFY(m_keys->bottomLine().contains(QLatin1String(QTest::currentDataTag())));
    QTest::qWait(20);
    QVERIFY(m_panel->frames.isEmpty());
}

void TestMonitorKeys::writesAndSaysHowItEnded_data()
{
    QTest::addColumn<QString>("said");
    QTest::newRow("D_W:5=7") << "cnet-panel: 2/D_W:5=7: written";
    QTest::newRow("1/D_W:5=7,8") << "cnet-panel: 1/D_W:5*2=7,8: written";
    QTest::newRow(" TX:3=1 ") << "cnet-panel: 2/TX:3=1: written";
    QTest::newRow("F_W:0=1") << "cnet-panel: 2/F_W:0=1: not written (refused: 1132, no such "
                                "device, or address outside the device); it holds 0 0x0000";
}

void TestMonitorKeys::writesByName()
{
    Tag tag = testTag("1/D_W:5@i16*0.1");
    tag.name = QLatin1String("speed");
    m_keys->setTags(TagSet({tag}));
    m_keys->type("wsped=1\r");
    QVERIFY2(m_said.value(0).contains(QLatin1String("did you mean speed?")),
             qPrintable(m_said.value(0)));
    QCOMPARE(m_keys->bottomLine(), QLatin1String("write NAME=VALUE (Esc leaves): sped=1_"));
    m_keys->type("\x15speed=1.5\r");
    QTRY_COMPARE(m_said.value(1), QLatin1String("cnet-panel: speed=1.5: written"));
    m_keys->type("wD_W:5=7\r");
    QTRY_COMPARE(m_said.value(2), QLatin1String("cnet-panel: 2/D_W:5=7: written"));
}

void TestMonitorKeys::asksForAReload()
{
    QSignalSpy asked(m_keys.get(), &MonitorKeys::reloadAsked);
    m_keys->type("r");
    QCOMPARE(asked.size(), 0);
    QVERIFY(!m_keys->bottomLine().contains(QLatin1String("reload")));
    Tag tag = testTag("1/D_W:5@i16*0.1");
    tag.name = QLatin1String("speed");
    m_keys->setTags(TagSet({tag}));
    m_keys->type("r/r");
    QCOMPARE(asked.size(), 1);
    m_keys->type("\r");
    QVERIFY(m_keys->bottomLine().contains(QLatin1String("r: reload")));
}

void TestMonitorKeys::writesAndSaysHowItEnded()
{
    m_keys->type("w" + QByteArray(QTest::currentDataTag()) + "\r");
    QVERIFY(m_keys->bottomLine().startsWith(QLatin1String("w: write")));
    QTRY_COMPARE(m_said.size(), 1);
    QTEST(m_said.first(), "said");
}

void TestMonitorKeys::correctsALine()
{
    m_keys->type("wD_W:5=70000\r\x7f\x7f\r");
    QTRY_COMPARE(m_said.size(), 2);
    QCOMPARE(m_said.last(), QLatin1String("cnet-panel: 2/D_W:5=700: written"));
    QCOMPARE(m_panel->memory(2).word('D', 5).value_or(0), quint16(700));
}

void TestMonitorKeys::choosesViews_data()
{
    QTest::addColumn<int>("view");
    QTest::addColumn<bool>("trend");
    const auto row = [](const QByteArray &keys, View view, bool trend = false) {
        QTest::newRow(keys.toPercentEncoding().constData()) << static_cast<int>(view) << trend;
    };
    row("1", View::Values);
    row("2", View::Stations);
    row("3", View::Blocks);
    row("4", View::Log);
    row("5", View::Values);
    row("41", View::Values);
    row("v", View::Stations);
    row("vvv", View::Log);
    row("vvvv", View::Values);
    row("\t", View::Stations);
    row("m", View::Values, true);
    row("mm", View::Values);
    row("\x1b[1~", View::Values); // a key that sends a digit
    row("\x1b[4~m", View::Values, true);
    row("w2", View::Values);
    row("w2\x1b", View::Values);
    row("/2\r3", View::Blocks);
}

void TestMonitorKeys::choosesViews()
{
    m_keys->type(QByteArray::fromPercentEncoding(QTest::currentDataTag()));
    QTEST(static_cast<int>(m_keys->viewState().view), "view");
    QFETCH(bool, trend);
    QCOMPARE(m_keys->viewState().trend == Trend::Shown, trend);
}

void TestMonitorKeys::filters_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("line");
    const QString closed = QLatin1String("w: write");
    const auto row = [](const QByteArray &keys, const char *filter, const QString &line) {
        QTest::newRow(keys.toPercentEncoding().constData()) << QString::fromLatin1(filter) << line;
    };
    row("/", "", QLatin1String("show only (Esc: all): _"));
    row("/D_W", "D_W", QLatin1String("show only (Esc: all): D_W_"));
    row("/D_W\x7f", "D_", QLatin1String("show only (Esc: all): D__"));
    row("/ x ", "x", QLatin1String("show only (Esc: all):  x _"));
    row("/D_W\r", "D_W", closed);
    row("/w\r", "w", closed);
    row("/D_W\x1b", "", closed);
    row("/\r", "", closed);
    row("/D_W\rw", "D_W", QLatin1String("write ITEM=VALUE (Esc leaves): _"));
}

void TestMonitorKeys::filters()
{
    QFETCH(QString, line);
    m_keys->type(QByteArray::fromPercentEncoding(QTest::currentDataTag()));
    QTEST(m_keys->viewState().filter, "filter");
    QVERIFY2(m_keys->bottomLine().startsWith(line), qPrintable(m_keys->bottomLine()));
    // And the key that takes it away later; it leaves the line that is typed first.
    m_keys->type("\x1b");
    m_keys->type("\x1b");
    QVERIFY(m_keys->viewState().filter.isEmpty());
}

void TestMonitorKeys::countsAnew()
{
    m_keys->type("wD_W:5=7\r");
    QTRY_COMPARE(m_said.size(), 1);
    QVERIFY(m_panel->session.stations().value(2).frames > 0);
    m_keys->type("R");
    QCOMPARE(m_panel->session.stations().value(2).frames, Q_INT64_C(0));
}

void TestMonitorKeys::moves()
{
    QVector<MoveKey> keys;
    connect(m_keys.get(), &MonitorKeys::moved, this, [&](MoveKey key) { keys.append(key); });
    m_keys->type("\x1b[A\x1b[6~x\x1b[F");
    QCOMPARE(keys, (QVector<MoveKey>{MoveKey::Up, MoveKey::PageDown, MoveKey::End}));
    QVERIFY(m_keys->bottomLine().startsWith(QLatin1String("w: write")));
}

void TestMonitorKeys::arrowsDoNotMoveWhileALineIsTyped()
{
    QSignalSpy moved(m_keys.get(), &MonitorKeys::moved);
    m_keys->type("wD_W:1\x1b[A=5");
    QCOMPARE(moved.size(), 0);
    QVERIFY(m_keys->bottomLine().endsWith(QLatin1String("D_W:1=5_")));
}

void TestMonitorKeys::listensToTerminalsOnly()
{
    std::array<int, 2> ends{};
    QCOMPARE(pipe(ends.data()), 0);
    QVERIFY(!m_keys->listenTo(ends[0]));
    close(ends[0]);
    close(ends[1]);
}

QTEST_GUILESS_MAIN(TestMonitorKeys)
#include "test_monitor_keys.moc"
