#include "recipes_bench.h"
#include "view/support/local_port.h"

#include <QLineEdit>
#include <QTcpServer>

namespace cnet::view {

/** What goes to the PLC is what people see and mean, and edits outlive a missing file. */
class TestRecipesWriting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesWhatTheEditorShows()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2\n"));
        const QModelIndex cell = bench.table().model()->index(1, RecipeModel::kValue);
        bench.table().edit(cell);
        auto *field = bench.table().viewport()->findChild<QLineEdit *>();
        QVERIFY(field != nullptr);
        field->setText(QLatin1String("7x"));
        QVERIFY(!bench.page.startTransfer(Kind::Write));
        QVERIFY2(bench.trouble().startsWith(QLatin1String("'7x' is no value")),
                 qPrintable(bench.trouble()));
        QVERIFY(!bench.page.saveFile(bench.path("r.csv")));
        field->setText(QLatin1String("7"));
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.unit().station.memory().word('D', 301).value_or(0), quint16(7));
        bench.table().edit(cell);
        bench.table().viewport()->findChildren<QLineEdit *>().last()->setText(QLatin1String("8"));
        QVERIFY(bench.page.saveFile(bench.path("r.csv")));
        QCOMPARE(bytesOf(bench.path("r.csv")), QByteArray("register,address,value\nD_W,300,1,8\n"));
    }

    void asksForWhatTheEditorShows()
    {
        Bench bench;
        QVERIFY(bench.open("register,address,value\nD_W,300,1\n"));
        const auto typeOpenly = [&bench](const char *text) {
            bench.table().edit(bench.table().model()->index(0, RecipeModel::kValue));
            bench.table().viewport()->findChildren<QLineEdit *>().last()->setText(
                QLatin1String(text));
        };
        typeOpenly("7x");
        QVERIFY(!bench.page.openFile(kCover));
        QVERIFY2(bench.trouble().startsWith(QLatin1String("'7x' is no value")),
                 qPrintable(bench.trouble()));
        typeOpenly("7");
        QVERIFY(!bench.page.openFile(kCover));
        QVERIFY(bench.question().contains(QLatin1String("edits that are not saved")));
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("7"));
    }

    void aCellThatNobodyTypedIntoIsNoMistake()
    {
        Bench bench;
        QVERIFY(bench.open("register,address,count,value\nD_W,300,2,\n"));
        bench.table().edit(bench.table().model()->index(0, RecipeModel::kValue));
        QVERIFY(bench.page.openFile(kCover));
        QVERIFY(bench.troubles.isEmpty());
    }

    void asksBeforeItWrites()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(kCover));
        bench.action("Write to PLC")->trigger();
        QVERIFY(!bench.isRunning());
        QCOMPARE(bench.question(),
                 QLatin1String("Write 11 words to simulated press line, station 1?"));
        bench.answer("No")->click();
        QVERIFY(!bench.isRunning() && bench.question().isEmpty());
        bench.action("Write to PLC")->trigger();
        bench.answer("Yes, write")->click();
        QTRY_COMPARE_WITH_TIMEOUT(bench.unit().station.memory().word('D', 201).value_or(0),
                                  quint16(180), 60000);
        QTRY_VERIFY_WITH_TIMEOUT(!bench.isRunning(), 60000);
    }

    void asksAnewForAnotherPlc()
    {
        Bench bench;
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(kCover));
        bench.action("Write to PLC")->trigger();
        const Connection connection = connectionTo(other.serverPort());
        bench.line.open(connection);
        QTRY_VERIFY_WITH_TIMEOUT(bench.line.isOpen(), 60000);
        bench.answer("Yes, write")->click();
        QVERIFY(!bench.isRunning());
        QCOMPARE(bench.question(),
                 QString::fromLatin1("Write 11 words to %1, station 1?").arg(connection.text()));
    }

    // Each station of a line is a PLC.
    void asksAnewForAnotherStation()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.open("register,address,value\nD_W,300,7\n"));
        bench.action("Write to PLC")->trigger();
        QVERIFY(bench.connectTo(0, 2));
        bench.answer("Yes, write")->click();
        QVERIFY(!bench.isRunning());
        QCOMPARE(bench.question(),
                 QLatin1String("Write 1 words to simulated press line, station 2?"));
        QVERIFY(bench.open("station,register,address,value\n3,D_W,300,7\n2,D_W,300,8\n"));
        bench.action("Write to PLC")->trigger();
        QCOMPARE(bench.question(),
                 QLatin1String("Write 2 words to simulated press line, stations 2, 3?"));
    }

    void escapeWritesNothing()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(kCover));
        bench.page.show();
        bench.action("Write to PLC")->trigger();
        QTest::keyClick(bench.answer("Yes, write"), Qt::Key_Escape);
        QVERIFY(bench.question().isEmpty());
        QVERIFY(!bench.isRunning());
    }

    // Of a project whose recipe is on a disk that is not there today.
    void keepsEditsForAFileThatIsMissing()
    {
        Bench bench;
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2\n"));
        bench.type(1, "9");
        const QJsonObject state = bench.page.saved();
        const QString path = bench.path("r.csv");
        QVERIFY(QFile::rename(path, bench.path("away.csv")));
        Bench later;
        later.page.restore(state);
        QCOMPARE(later.page.saved(), state);
        put(path, "register,address,value\nD_W,300,one\n"); // nor while it has mistakes
        QVERIFY(!later.page.openFile(path));
        QCOMPARE(later.page.saved(), state);
        QVERIFY(QFile::remove(path) && QFile::rename(bench.path("away.csv"), path));
        QVERIFY(later.page.openFile(path));
        QCOMPARE(later.at(1, RecipeModel::kValue), QLatin1String("9"));
        QCOMPARE(later.page.saved(), state);
    }

    // Two projects may have one recipe, each with edits of its own.
    void keepsEditsForTheFileOfTheProjectBefore()
    {
        Bench bench;
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2\n"));
        bench.type(1, "9");
        const QJsonObject state = bench.page.saved();
        bench.type(1, "5");
        QVERIFY(QFile::remove(bench.path("r.csv")));
        bench.page.restore(state);
        QCOMPARE(bench.page.saved(), state);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipesWriting)
#include "test_recipes_writing.moc"
