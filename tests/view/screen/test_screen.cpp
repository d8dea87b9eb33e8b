#include "view/screen/view_window.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

#include <csignal>
#include <memory>

/** A day at a press: cnet-view on a screen, and cnet-plc as the PLC that it talks to. Each function
 * goes on where the one before has ended. */
class TestScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void connects();
    void watches();
    void writes();
    void recordsTrend();
    void writesRecipe();
    void takesRecipe();
    void cableIsPulledAndPutBack();
    void asksBeforeWorkIsLost();
    void opensProjectAgain();

private:
    bool startPlc();
    /** The answer of the PLC to a command. */
    QByteArray told(const QByteArray &command);
    bool startWindow(const QStringList &arguments);
    QString pathOf(const char *name) const { return m_home.filePath(QLatin1String(name)); }
    bool showsValue(const char *value);
    bool write(const QString &value);
    /** The last row of the recording, without its time. */
    QByteArray lastRecorded() const;

    QTemporaryDir m_home;
    QString m_host;
    QString m_place = QLatin1String("0"); ///< where the PLC serves; a port
    std::unique_ptr<Screen> m_screen;
    std::unique_ptr<PlcProgram> m_plc;
    QTcpSocket m_control;
    std::unique_ptr<ViewWindow> m_window;
    bool m_hasFailed = false;
};

namespace {

constexpr int kPatienceMs = 60000;

const QLatin1String kTag("press.pressure_set"); // D_W:101, one bar a digit

QStringList keys(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/** A row of the recording, without its time. */
QByteArray recorded(const char *valueAndQuality)
{
    return QByteArray(kTag.data()) + ',' + valueAndQuality;
}

QString example(const char *name)
{
    return QLatin1String(PRESS_EXAMPLE "/") + QLatin1String(name);
}

} // namespace

// QtTest's own count how often they have looked, and here a look takes its time.
#define TRY(condition) QVERIFY(QTest::qWaitFor([&] { return condition; }, kPatienceMs))
#define TRY_COMPARE(actual, expected)                                                \
    do {                                                                             \
        if (!QTest::qWaitFor([&] { return (actual) == (expected); }, kPatienceMs)) { \
            QCOMPARE(actual, expected);                                              \
        }                                                                            \
    } while (false)

void TestScreen::initTestCase()
{
    QStringList missing;
    if (!Screen::isInstalled(missing)) {
        const QByteArray text = "not installed: " + missing.join(QLatin1String(", ")).toLatin1();
        QVERIFY2(!qEnvironmentVariableIsSet("CI"), text.constData());
        QSKIP(text.constData());
    }
    // A host of its own: whoever looks for a free port meanwhile does not get that of the PLC that
    // is away.
    const auto process = static_cast<int>(::getpid());
    m_host = QString::fromLatin1("127.77.%1.%2").arg(process / 256 % 256).arg(process % 256);
    m_screen = std::make_unique<Screen>();
    const QString error = m_screen->start();
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY(startPlc());
    QVERIFY(QFile::copy(example("cover.csv"), pathOf("recipe.csv")));
    QVERIFY(QFile::setPermissions(pathOf("recipe.csv"), QFile::ReadOwner | QFile::WriteOwner));
    const QJsonObject pages{
        {QLatin1String("values"),
         QJsonObject{{QLatin1String("tags"), QString::fromUtf8(contentOf(example("tags.csv")))}}},
        {QLatin1String("recipes"), QJsonObject{{QLatin1String("file"), pathOf("recipe.csv")}}}};
    const QJsonObject project{{QLatin1String("format"), QLatin1String("cnet-view project")},
                              {QLatin1String("version"), 1},
                              {QLatin1String("pages"), pages}};
    QVERIFY(writeFile(pathOf("plant.cnet-view"), QJsonDocument(project).toJson()));
    QVERIFY(startWindow(
        {QLatin1String("--link"), QString::fromLatin1("tcp:%1:%2").arg(m_host, m_place)}));
}

void TestScreen::init()
{
    if (m_hasFailed) {
        QSKIP("the function before has failed");
    }
}

void TestScreen::cleanup()
{
    if (QTest::currentTestFailed() && !m_hasFailed && m_window) {
        qWarning("active window: '%s', the program says: %s", qPrintable(m_screen->activeTitle()),
                 m_window->errors().constData());
    }
    m_hasFailed = m_hasFailed || QTest::currentTestFailed();
}

void TestScreen::cleanupTestCase()
{
    m_control.abort();
    m_window.reset();
    m_plc.reset();
    m_screen.reset();
}

bool TestScreen::startPlc()
{
    m_control.abort();
    m_plc = std::make_unique<PlcProgram>();
    if (!m_plc->serve({QLatin1String("--tcp"), QString::fromLatin1("%1:%2").arg(m_host, m_place)},
                      keys("--scenario press --control 127.0.0.1:0"))) {
        return false;
    }
    m_place = m_plc->place().section(QLatin1Char(':'), -1);
    const QByteArray control = m_plc->waitForLine(
        [](const QByteArray &line) { return line.startsWith("taking commands at "); });
    m_control.connectToHost(QLatin1String("127.0.0.1"),
                            control.mid(control.lastIndexOf(':') + 1).toUShort());
    return m_control.waitForConnected(kPatienceMs);
}

QByteArray TestScreen::told(const QByteArray &command)
{
    m_control.write(command + '\n');
    while (!m_control.canReadLine() && m_control.waitForReadyRead(kPatienceMs)) {
    }
    return m_control.readLine().trimmed();
}

bool TestScreen::startWindow(const QStringList &arguments)
{
    m_window = std::make_unique<ViewWindow>(*m_screen, m_home.path(), pathOf("plant.cnet-view"));
    return m_window->start(arguments);
}

bool TestScreen::showsValue(const char *value)
{
    const auto row = m_window->row(kTag);
    return row.value(QLatin1String("Value")) == QLatin1String(value) &&
           row.value(QLatin1String("Quality")) == QLatin1String("good");
}

bool TestScreen::write(const QString &value)
{
    return m_window->choose(kTag) && m_window->press(keys("F2 ctrl+a")) && m_window->type(value) &&
           m_window->press(keys("Return"));
}

QByteArray TestScreen::lastRecorded() const
{
    const QByteArray row = contentOf(pathOf("record.csv")).trimmed().split('\n').last();
    return row.mid(row.indexOf(',') + 1);
}

void TestScreen::connects()
{
    TRY(m_window->title().startsWith(QLatin1String("plant")));
    const QJsonObject connection = m_window->saved().value(QLatin1String("connection")).toObject();
    QCOMPARE(connection.value(QLatin1String("link")).toString(),
             QString::fromLatin1("tcp:%1:%2").arg(m_host, m_place));
    TRY(told("clients") != "none");
    TRY(!m_window->isChanged());
}

void TestScreen::watches()
{
    QCOMPARE(told("set D_W:101=123"), QByteArray("ok"));
    TRY(showsValue("123 bar"));
    QCOMPARE(told("set D_W:101=124"), QByteArray("ok"));
    TRY(showsValue("124 bar"));
    const QString counter = QLatin1String("count.strokes");
    QString strokes;
    const auto isMoving = [&] {
        const QString now = m_window->row(counter).value(QLatin1String("Value"));
        const QString before = strokes.isEmpty() ? now : strokes;
        strokes = before;
        return now.toInt() > before.toInt();
    };
    TRY(isMoving());
}

void TestScreen::writes()
{
    QVERIFY(write(QLatin1String("77")));
    TRY_COMPARE(told("show D_W:101"), QByteArray("1/D_W:101 = 77"));
    const auto outcome = [this] { return m_window->row(kTag).value(QLatin1String("Write")); };
    TRY_COMPARE(outcome(), QLatin1String("taken, reads 77 bar"));
    // Above what the tag allows: Enter leaves it in its place, and Escape gives it up.
    QVERIFY(write(QLatin1String("251")));
    QVERIFY(m_window->press(keys("Escape")));
    TRY_COMPARE(outcome(), QLatin1String("taken, reads 77 bar"));
    QVERIFY(write(QLatin1String("78")));
    TRY_COMPARE(told("show D_W:101"), QByteArray("1/D_W:101 = 78"));
}

void TestScreen::recordsTrend()
{
    QVERIFY(m_window->choose(kTag));
    QVERIFY(m_window->press(keys("t")));
    const QJsonArray traces = m_window->savedPage("trend").value(QLatin1String("traces")).toArray();
    QCOMPARE(traces.size(), 1);
    QCOMPARE(traces.first().toObject().value(QLatin1String("name")).toString(), kTag);
    QVERIFY(m_window->press(keys("ctrl+3 ctrl+r")));
    TRY_COMPARE(m_screen->activeTitle(), QLatin1String("Record samples"));
    QVERIFY(m_screen->type(pathOf("record.csv")));
    QVERIFY(m_screen->press(keys("Return")));
    TRY_COMPARE(lastRecorded(), recorded("78,good"));
    QCOMPARE(told("set D_W:101=79"), QByteArray("ok"));
    TRY_COMPARE(lastRecorded(), recorded("79,good"));
}

void TestScreen::writesRecipe()
{
    const QByteArray recipe("1/D_W:200 = 2 180 230 870 3200 800 2100 2150 2150 2100");
    QVERIFY(told("show D_W:200*10") != recipe);
    QVERIFY(m_window->press(keys("ctrl+6 ctrl+shift+w alt+y")));
    TRY_COMPARE(told("show D_W:200*10"), recipe);
    TRY_COMPARE(told("show D_W:150"), QByteArray("1/D_W:150 = 37")); // 25 in BCD
}

void TestScreen::takesRecipe()
{
    QCOMPARE(told("set D_W:204=3300"), QByteArray("ok"));
    QVERIFY(!contentOf(pathOf("recipe.csv")).contains("3300"));
    // What it read can be saved once it has been read.
    const auto hasTaken = [this] {
        return m_window->press(keys("ctrl+6 ctrl+shift+t ctrl+shift+s")) &&
               contentOf(pathOf("recipe.csv")).contains("3300");
    };
    TRY(hasTaken());
}

void TestScreen::cableIsPulledAndPutBack()
{
    m_plc->signal(SIGKILL);
    QCOMPARE(m_plc->exitCode(), -1);
    TRY_COMPARE(m_window->row(kTag).value(QLatin1String("Quality")), QLatin1String("line down"));
    TRY(lastRecorded().startsWith(recorded(",")));
    TRY(startPlc());
    QCOMPARE(told("set D_W:101=55"), QByteArray("ok"));
    TRY(showsValue("55 bar"));
    TRY_COMPARE(lastRecorded(), recorded("55,good"));
    QVERIFY(write(QLatin1String("66")));
    TRY_COMPARE(told("show D_W:101"), QByteArray("1/D_W:101 = 66"));
}

void TestScreen::asksBeforeWorkIsLost()
{
    QVERIFY(!m_window->saved().isEmpty());
    QVERIFY(m_window->press(keys("ctrl+2 alt+l ctrl+a BackSpace"))); // a filter is part of it
    QVERIFY(m_window->type(QLatin1String("press")));
    TRY(m_window->isChanged());
    QVERIFY(m_window->press(keys("ctrl+q")));
    // The question is in the window, and its first answer has the keyboard: to save.
    QVERIFY(m_window->press(keys("space")));
    TRY(!m_window->isChanged());
    QVERIFY(m_window->isRunning());
    QVERIFY(contentOf(pathOf("plant.cnet-view")).contains("\"filter\": \"press\""));
    QVERIFY(m_window->press(keys("ctrl+q")));
    QCOMPARE(m_window->exitCode(), 0);
}

void TestScreen::opensProjectAgain()
{
    const QJsonObject before =
        QJsonDocument::fromJson(contentOf(pathOf("plant.cnet-view"))).object();
    QVERIFY(!before.isEmpty());
    TRY_COMPARE(told("clients"), QByteArray("none"));
    QVERIFY(startWindow({}));
    TRY(told("clients") != "none");
    const QJsonObject after = m_window->saved();
    for (const char *part : {"connection", "window", "pages"}) {
        QCOMPARE(after.value(QLatin1String(part)), before.value(QLatin1String(part)));
    }
    TRY(showsValue("66 bar"));
    QVERIFY(!m_window->saved().isEmpty());
    QVERIFY(m_window->press(keys("ctrl+q")));
    QCOMPARE(m_window->exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestScreen)

#include "test_screen.moc"
