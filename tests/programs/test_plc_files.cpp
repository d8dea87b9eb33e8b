#include "program.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

/** cnet-plc with scripts and memory files, and the files of the press example. */
class TestPlcFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsAScript();
    void tellsAllMistakes_data();
    void tellsAllMistakes();
    void keepsItsMemory();
    void saysThatItCannotSave();
    void thePressFollowsItsRecipes_data();
    void thePressFollowsItsRecipes();
    void thePressDemoIsAScript();
    void tagsOfThePressExist();

private:
    QString written(const QByteArray &content);

    QTemporaryDir m_folder;
};

namespace {

const int kUsage = 2;
const int kCannotOpen = 3;

QString example(const char *name)
{
    return QLatin1String(PRESS_EXAMPLE "/") + QLatin1String(name);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString TestPlcFiles::written(const QByteArray &content)
{
    const QString path = m_folder.filePath(QLatin1String("file"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? path
                                                                                    : QString();
}

void TestPlcFiles::playsAScript()
{
    const QString script = written("set D_W:1=7\n"
                                   "at 50ms show D_W:1   \n"
                                   "# a remark\n"
                                   "after 10ms set D_W:1=8\n"
                                   "show D_W:1\n"
                                   "after 20ms quit\n");
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0"), QLatin1String("--script")},
                      {script}));
    QCOMPARE(plc.exitCode(), 0);
    QCOMPARE(plc.lines().mid(1), QList<QByteArray>({"1/D_W:1 = 7", "1/D_W:1 = 8"}));
    QCOMPARE(plc.errors(), QByteArray());
}

void TestPlcFiles::tellsAllMistakes_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<QByteArray>>("places");
    QTest::newRow("times of a script")
        << QByteArray("--script")
        << QByteArray("at x set D_W:1=1\nevery 0s show D_W:1\nafter -1s quit\n"
                      "at 99999999999s quit\nat 1s at 2s quit\n")
        << QList<QByteArray>({":1: \"x\": expected a time", ":2: \"0s\": expected 10ms or more",
                              ":3: \"-1s\": expected a time", ":4: \"99999999999s\": expected",
                              ":5: \"at\": expected one of set"});
    QTest::newRow("endless memory line")
        << QByteArray("--memory") << "D_W:1=" + QByteArray("1,").repeated(100000) + "x"
        << QList<QByteArray>({":1: "});
    QTest::newRow("addresses of a memory")
        << QByteArray("--memory")
        << QByteArray("D_W:10000=1\nD_W:1=65536\nQ:1=1\nset D_W:1=1\n\x1b[2J\n")
        << QList<QByteArray>({":1: D_W:10000 does not exist", ":2: ", ":3: ", ":4: ", ":5: "});
    QTest::newRow("script") << QByteArray("--script")
                            << QByteArray("set D_W:1=1\nsing\nat 5s\n\x1b\xff\n")
                            << QList<QByteArray>({":2: ", ":3: ", ":4: "});
    QTest::newRow("memory") << QByteArray("--memory") << QByteArray("D_W:1\n#\n9/D_W:1=1\n")
                            << QList<QByteArray>({":1: ", ":3: "});
}

void TestPlcFiles::tellsAllMistakes()
{
    QFETCH(QByteArray, option);
    QFETCH(QByteArray, content);
    QFETCH(QList<QByteArray>, places);
    const QByteArray path = written(content).toLocal8Bit();
    Program plc;
    QVERIFY(plc.startBytes(CNET_PLC, {"--tcp", "0", option, path}));
    QCOMPARE(plc.exitCode(), kUsage);
    QCOMPARE(plc.lines(), QList<QByteArray>());
    const QList<QByteArray> errors = plc.errors().split('\n');
    QCOMPARE(errors.size(), places.size() + 1);
    for (int i = 0; i < places.size(); ++i) {
        QVERIFY2(errors.at(i).startsWith("cnet-plc: " + path + places.at(i)), errors.at(i));
        QVERIFY(!errors.at(i).contains('\x1b'));
    }
    QCOMPARE(contentOf(QString::fromLocal8Bit(path)), content);
}

void TestPlcFiles::keepsItsMemory()
{
    const QString path = m_folder.filePath(QLatin1String("memory"));
    const QStringList arguments{QLatin1String("--tcp"), QLatin1String("0"),
                                QLatin1String("--memory"), path};
    PlcProgram first;
    QVERIFY(first.serve(arguments, {}));
    QVERIFY(!QFile::exists(path));
    first.type("set D_W:5=7\nsave\nset TX:1=1\n");
    first.waitForLine([&first](const QByteArray &) { return first.lines().size() == 4; });
    QVERIFY(contentOf(path).contains("1/D_W:0=0,0,0,0,0,7\n"));
    first.signal(SIGTERM);
    QCOMPARE(first.exitCode(), 0);
    PlcProgram second;
    QVERIFY(second.serve(arguments, {QLatin1String("--set"), QLatin1String("D_W:4=9")}));
    second.type("show D_W:4-5 TX:1\nquit\n");
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(second.lines().mid(1, 2), QList<QByteArray>({"1/D_W:4 = 9 7", "1/TX:1 = 1"}));
}

void TestPlcFiles::saysThatItCannotSave()
{
    const QString path = m_folder.filePath(QLatin1String("taken"));
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0"), QLatin1String("--memory"), path},
                      {}));
    QVERIFY(QDir().mkdir(path));
    plc.type("save\nquit\n");
    QCOMPARE(plc.exitCode(), kCannotOpen);
    QVERIFY(plc.lines().at(1).startsWith("error: cannot save the memory to "));
    QVERIFY2(plc.errors().startsWith("cnet-plc: cannot save the memory to "),
             plc.errors().constData());
}

void TestPlcFiles::thePressFollowsItsRecipes_data()
{
    QTest::addColumn<QByteArray>("setPoints");
    QTest::newRow("bracket.csv") << QByteArray("1/D_W:100 = 300 180 850");
    QTest::newRow("cover.csv") << QByteArray("1/D_W:100 = 180 230 870");
}

void TestPlcFiles::thePressFollowsItsRecipes()
{
    QFETCH(QByteArray, setPoints);
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0")},
                      {QLatin1String("--scenario"), QLatin1String("press")}));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        {QLatin1String("recipe"), QLatin1String("write"), QLatin1String("--link"),
                         QLatin1String("tcp:") + plc.place(), example(QTest::currentDataTag())}));
    QCOMPARE(panel.exitCode(), 0);
    QTest::qWait(100); // longer than a step of the press
    plc.type("show D_W:100*3\n");
    QCOMPARE(plc.waitForLine([](const QByteArray &line) { return line.contains(" = "); }),
             setPoints);
}

void TestPlcFiles::thePressDemoIsAScript()
{
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0")},
                      {QLatin1String("--scenario"), QLatin1String("press"),
                       QLatin1String("--script"), example("demo.script")}));
    plc.type("quit\n");
    QCOMPARE(plc.exitCode(), 0);
}

void TestPlcFiles::tagsOfThePressExist()
{
    // register, address and number of columns; quoted fields come behind them
    PlcProgram plc;
    QVERIFY(plc.serve({QLatin1String("--tcp"), QLatin1String("0")},
                      {QLatin1String("--model"), QLatin1String("k120s"),
                       QLatin1String("--scenario"), QLatin1String("press")}));
    const QList<QByteArray> lines = contentOf(example("tags.csv")).trimmed().split('\n');
    QVERIFY(lines.size() > 30);
    QList<QByteArray> places;
    for (const QByteArray &line : lines.mid(2)) {
        const QList<QByteArray> fields = line.split(',');
        QVERIFY2(fields.size() >= 16, line.constData());
        places << fields.at(3) + '/' + fields.at(1) + ':' + fields.at(2);
    }
    plc.type("show " + places.join(' ') + "\nquit\n");
    QCOMPARE(plc.exitCode(), 0);
    const QList<QByteArray> shown = plc.lines().mid(1);
    QCOMPARE(shown.size(), places.size() + 1);
    for (int i = 0; i < places.size(); ++i) {
        QVERIFY2(shown.at(i).startsWith(places.at(i) + " = "), shown.at(i).constData());
    }
}

QTEST_GUILESS_MAIN(TestPlcFiles)
#include "test_plc_files.moc"
