#include "recipes_bench.h"
#include "support/full_disk.h"

#include <QPlainTextEdit>
#include <QTreeWidget>

namespace cnet::view {

/** The page of recipes and its files: their mistakes, and edits that nobody is to lose. */
class TestRecipesFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsMistakesInTheirPlaces()
    {
        Bench bench;
        const QString path = bench.file("register,address,value\nD_W,300,70000\nD_W,x,2\n");
        QVERIFY(!bench.page.openFile(path));
        QVERIFY2(bench.trouble().contains(QLatin1String("has mistakes: 2:9: ")),
                 qPrintable(bench.trouble()));
        const auto *list = bench.page.findChild<QTreeWidget *>();
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->topLevelItem(1)->text(0), QLatin1String("3"));
        QCOMPARE(list->topLevelItem(1)->text(1), QLatin1String("5"));
        auto *text = bench.page.findChild<QPlainTextEdit *>();
        QCOMPARE(text->textCursor().selectedText(), QLatin1String("70000"));
        list->topLevelItem(1)->treeWidget()->setCurrentItem(list->topLevelItem(1));
        QCOMPARE(text->textCursor().selectedText(), QLatin1String("x"));
        QVERIFY(!bench.page.startTransfer(Kind::Write));
        put(path, "register,address,value\nD_W,300,7\n");
        bench.action("Read again")->trigger();
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("7"));
    }

    void aFileThatCannotBeReadChangesNothing()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(kBracket));
        QVERIFY(!bench.page.openFile(bench.path("none.csv")));
        QVERIFY(!bench.page.openFile(bench.folder.path()));
        QCOMPARE(bench.troubles.count(), 2);
        QCOMPARE(bench.page.path(), kBracket);
        QCOMPARE(bench.table().model()->rowCount(), 11);
    }

    void asksBeforeEditsAreLost()
    {
        Bench bench;
        const QString path = bench.file("register,address,value\nD_W,300,1\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        QVERIFY(!bench.page.openFile(kBracket));
        QVERIFY(bench.question().contains(path));
        QVERIFY(bench.connectTo(9600));
        QVERIFY(bench.page.startTransfer(Kind::Compare));
        bench.answer("Open without saving")->click(); // not now
        QVERIFY(bench.trouble().contains(QLatin1String("a transfer is running")));
        QCOMPARE(bench.page.path(), path);
        bench.line.close();
        QVERIFY(!bench.page.openFile(kBracket));
        bench.answer("Keep editing")->click();
        QVERIFY(bench.question().isEmpty());
        QCOMPARE(bench.page.path(), path);
        QVERIFY(!bench.page.openFile(kBracket));
        bench.answer("Save, then open")->click();
        QCOMPARE(bench.page.path(), kBracket);
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "3");
        QVERIFY(!bench.page.openFile(kBracket));
        bench.answer("Open without saving")->click();
        QCOMPARE(bench.page.path(), kBracket);
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
    }

    void asksBeforeOthersLoseTheirWork()
    {
        Bench bench;
        const QString path = bench.file("register,address,value\nD_W,300,1\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        put(path, "register,address,value\nD_W,300,99\n");
        QVERIFY(!bench.page.saveFile(path));
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,99\n"));
        bench.answer("Replace it")->click();
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
        QVERIFY(!bench.page.hasUnsavedEdits());
        bench.type(0, "4");
        QVERIFY(bench.page.saveFile(path)); // its own change is no question
    }

    void aFullDiskLosesNothing()
    {
        Bench bench;
        const QByteArray before = "register,address,value\nD_W,300,1\n";
        const QString path = bench.file(before);
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        {
            const FullDisk full(10);
            QVERIFY(!bench.page.saveFile(path));
        }
        QVERIFY(bench.trouble().startsWith(QLatin1String("Cannot write ")));
        QCOMPARE(bytesOf(path), before);
        QVERIFY(bench.page.hasUnsavedEdits());
        QVERIFY(bench.page.saveFile(path));
        QVERIFY(!bench.page.hasUnsavedEdits());
    }

    void halfARowIsNotSaved()
    {
        Bench bench;
        const QString path = bench.file("register,address,count,value\nD_W,300,2,\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        QVERIFY(!bench.page.saveFile(path));
        QVERIFY2(bench.trouble().contains(QLatin1String("1/D_W:300")), qPrintable(bench.trouble()));
        bench.type(1, "3");
        QVERIFY(bench.page.saveFile(path));
        QCOMPARE(bytesOf(path), QByteArray("register,address,count,value\nD_W,300,2,2,3\n"));
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipesFiles)
#include "test_recipes_files.moc"
