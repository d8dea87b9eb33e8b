#include "program.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/** cnet-panel recipe and cnet-plc as the programs that a user starts. */
class TestRecipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheFileBack_data();
    void givesTheFileBack();
    void readsIntoAFile();
    void saysAtWhichBlockItFailed_data();
    void saysAtWhichBlockItFailed();
    void verifiesUnlessToldNot_data();
    void verifiesUnlessToldNot();
    void transfersNothingOfAWrongFile();

private:
    QString file(const QByteArray &content);
    QByteArray contentOf(const QString &path);
    QString serve(PlcProgram &plc, const QString &kind, const char *arguments);
    static int run(Program &panel, const QStringList &arguments);

    QTemporaryDir m_directory;
};

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// Rows out of order, of which two touch and are longer than a block together.
QByteArray recipe()
{
    QByteArray text("# line 3\nregister,address,count,value\nM_W,7,2,0xBEEF,-5\nD_W,103,70");
    for (int i = 0; i < 70; ++i) {
        text += ',' + QByteArray::number(1000 + i);
    }
    return text + "\nD_W,100,3,1,2,3\n";
}

} // namespace

QString TestRecipes::file(const QByteArray &content)
{
    const QString path = m_directory.filePath(QLatin1String("recipe.csv"));
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(content) == content.size() ? path
                                                                                  : QString();
}

QByteArray TestRecipes::contentOf(const QString &path)
{
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

QString TestRecipes::serve(PlcProgram &plc, const QString &kind, const char *arguments)
{
    const bool isTcp = kind == QLatin1String("tcp");
    const QStringList place =
        isTcp ? words("--tcp 127.0.0.1:0")
              : QStringList{QLatin1String("--pty"), m_directory.filePath(QLatin1String("plc"))};
    return plc.serve(place, words(arguments))
               ? (isTcp ? QLatin1String("tcp:") : QLatin1String("serial:")) + plc.place()
               : QString();
}

int TestRecipes::run(Program &panel, const QStringList &arguments)
{
    return panel.start(QLatin1String(CNET_PANEL), arguments) ? panel.exitCode() : -1;
}

void TestRecipes::givesTheFileBack_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("pty") << "pty";
    QTest::newRow("tcp") << "tcp";
}

void TestRecipes::givesTheFileBack()
{
    QFETCH(QString, kind);
    PlcProgram plc;
    const QString link = serve(plc, kind, "--trace");
    const QString path = file(recipe());
    const QStringList toLink{QLatin1String("--link"), link};

    Program write;
    QCOMPARE(run(write, words("recipe write") + QStringList{path} + toLink), 0);
    // 73 words that touch are two blocks.
    QVERIFY2(write.errors().startsWith("cnet-panel: recipe write: 3 blocks, 75 words, verified, "),
             write.errors().constData());
    QCOMPARE(write.lines(), QList<QByteArray>());

    Program read;
    QCOMPARE(run(read, words("recipe read") + QStringList{path} + toLink), 0);
    QCOMPARE(read.lines().join('\n') + '\n', recipe());

    Program change;
    QCOMPARE(run(change, words("write D_W:101=-2 M_W:7=0x10 D_W:172=5") + toLink), 0);
    Program changed;
    QCOMPARE(run(changed, words("recipe read") + QStringList{path} + toLink), 0);
    QCOMPARE(
        changed.lines().join('\n') + '\n',
        recipe().replace("1,2,3", "1,65534,3").replace("0xBEEF", "0x0010").replace("1069", "5"));
}

void TestRecipes::readsIntoAFile()
{
    PlcProgram plc;
    const QString link = serve(plc, QLatin1String("tcp"), "--set D_W:1=5,6");
    const QString path = file("register,address,count\nD_W,1,2\n");
    Program read;
    QCOMPARE(run(read, words("recipe read") + QStringList{path, QLatin1String("--output"), path,
                                                          QLatin1String("--link"), link}),
             0);
    QCOMPARE(read.lines(), QList<QByteArray>());
    QCOMPARE(contentOf(path), QByteArray("register,address,count,value\nD_W,1,2,5,6\n"));
}

void TestRecipes::saysAtWhichBlockItFailed_data()
{
    QTest::addColumn<QString>("direction");
    QTest::addColumn<QByteArray>("line"); // the second block
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("write to what is read only")
        << "write" << QByteArray("1,F_W,3,1,5")
        << QByteArray("recipe write failed at block 2 (1/F_W:3*1): refused: 1132, no such device, "
                      "or address outside the device; 2 of 3 words");
    QTest::newRow("write to a silent station")
        << "write" << QByteArray("2,D_W,3,1,5")
        << QByteArray("recipe write failed at station 2: no answer; 0 of 3 words");
    QTest::newRow("read from a silent station")
        << "read" << QByteArray("2,D_W,3,1,5")
        << QByteArray("recipe read failed at station 2: no answer; 0 of 3 words");
}

void TestRecipes::saysAtWhichBlockItFailed()
{
    QFETCH(QString, direction);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, message);
    PlcProgram plc;
    const QString link = serve(plc, QLatin1String("tcp"), "");
    const QByteArray content =
        "station,register,address,count,value\n1,D_W,1,2,8,9\n" + line + '\n';
    const QString path = file(content);
    Program panel;
    QCOMPARE(run(panel, QStringList{QLatin1String("recipe"), direction, path,
                                    QLatin1String("--link"), link, QLatin1String("--timeout"),
                                    QLatin1String("50"), QLatin1String("--output"), path}
                            .mid(0, direction == QLatin1String("read") ? 9 : 7)),
             1);
    QVERIFY2(panel.errors().contains(message), panel.errors().constData());
    QCOMPARE(panel.lines(), QList<QByteArray>());
    QCOMPARE(contentOf(path), content);
}

void TestRecipes::verifiesUnlessToldNot_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<int>("reads"); // beside the host's own
    QTest::newRow("verified") << "" << QByteArray("75 words, verified, ") << 3;
    QTest::newRow("--no-verify") << "--no-verify" << QByteArray("75 words, ") << 0;
}

void TestRecipes::verifiesUnlessToldNot()
{
    QFETCH(QString, option);
    QFETCH(QByteArray, end);
    PlcProgram plc;
    const QString link = serve(plc, QLatin1String("tcp"), "");
    Program write;
    QCOMPARE(run(write, words("recipe write --trace") + QStringList{file(recipe())} +
                            option.split(QLatin1Char(' '), Qt::SkipEmptyParts) +
                            QStringList{QLatin1String("--link"), link}),
             0);
    QVERIFY2(write.errors().contains(end), write.errors().constData());
    QCOMPARE(write.errors().contains("verified"), option.isEmpty());
    const QRegularExpression blocks(QLatin1String("read \\d+ words from %(DW001|MW007)"));
    QTEST(static_cast<int>(QString::fromLatin1(write.errors()).count(blocks)), "reads");
}

void TestRecipes::transfersNothingOfAWrongFile()
{
    PlcProgram plc;
    const QString link = serve(plc, QLatin1String("tcp"), "--trace");
    const QString path = file("register,address,value\nD_W,1,5\nD_W,2,70000\n");
    Program write;
    QCOMPARE(run(write, words("recipe write") + QStringList{path, QLatin1String("--link"), link}),
             2);
    QCOMPARE(write.errors(), "cnet-panel: " + path.toLocal8Bit() +
                                 ":3: '70000' is no value of D_W, which is -32768 to 65535 or 0x0 "
                                 "to 0xFFFF\n");
    Program read;
    QCOMPARE(run(read, words("read D_W:1 --link") + QStringList{link}), 0);
    QCOMPARE(read.lines(), QList<QByteArray>{"1/D_W:1  0 0x0000"});
    QVERIFY(!plc.errors().contains("wSB"));
}

QTEST_GUILESS_MAIN(TestRecipes)
#include "test_recipes.moc"
