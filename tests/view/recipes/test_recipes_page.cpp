#include "recipes_bench.h"
#include "view/support/unnamed_fields.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>

namespace cnet::view {

/** The page of recipes on its own, and what a project keeps of it. */
class TestRecipesPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyItSaysWhatToDo()
    {
        Bench bench;
        QString all;
        for (const QLabel *label : bench.page.findChildren<QLabel *>()) {
            all += label->text();
        }
        QVERIFY(all.contains(QLatin1String("No recipe is open.")));
        QVERIFY(!bench.page.startTransfer(Kind::Compare));
        QCOMPARE(bench.trouble(), QLatin1String("No recipe is open."));
        for (const char *name : {"Save", "Compare with PLC", "Write to PLC", "Undo"}) {
            QVERIFY2(!bench.action(name)->isEnabled(), name);
        }
        QVERIFY(!bench.page.saveFile(bench.path("new.csv")));
    }

    void theKeyboardAndScreenReadersFindEverything()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(kBracket));
        int count = 0;
        QCOMPARE(unnamedFields(bench.page, count), QStringList());
        QVERIFY(count >= 3);
        QSet<QString> keys;
        for (const QAction *action : bench.page.actions()) {
            QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
            keys.insert(action->shortcut().toString());
        }
        QCOMPARE(keys.size(), bench.page.actions().size());
    }

    void copiesAndPastes()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(kBracket));
        const auto trigger = [&](int action) { bench.table().actions().at(action)->trigger(); };
        bench.table().setCurrentIndex(bench.table().model()->index(1, RecipeModel::kValue));
        QGuiApplication::clipboard()->setText(QLatin1String("11\t0x12\n13\n"));
        trigger(1);
        QCOMPARE(bench.at(1, RecipeModel::kValue), QLatin1String("11"));
        QCOMPARE(bench.at(2, RecipeModel::kValue), QLatin1String("18"));
        QCOMPARE(bench.at(3, RecipeModel::kValue), QLatin1String("13"));
        bench.table().selectionModel()->select(
            QItemSelection(bench.table().model()->index(1, RecipeModel::kAddress),
                           bench.table().model()->index(2, RecipeModel::kValue)),
            QItemSelectionModel::ClearAndSelect);
        trigger(0);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QLatin1String("1/D_W:201\tspeed\t11\n1/D_W:202\tpressure\t18"));
        QGuiApplication::clipboard()->setText(QLatin1String("fast"));
        trigger(1);
        QVERIFY(bench.trouble().contains(QLatin1String("'fast'")));
    }

    void aProjectKeepsEditsToo()
    {
        Bench bench;
        const QString path = bench.file("register,address,count,value\nD_W,300,2,1,2\n");
        QVERIFY(bench.page.openFile(path));
        bench.action("Only differences")->trigger();
        bench.changes.clear();
        bench.type(1, "0xFFFF");
        QCOMPARE(bench.changes.count(), 1);
        const QJsonObject state = bench.page.saved();
        Bench other;
        other.page.restore(state);
        QCOMPARE(other.page.path(), path);
        QVERIFY(other.page.hasUnsavedEdits());
        QCOMPARE(other.at(1, RecipeModel::kValue), QLatin1String("65535"));
        QVERIFY(other.action("Only differences")->isChecked());
        QCOMPARE(other.page.saved(), state);
        other.action("Undo")->trigger();
        QVERIFY(!other.page.hasUnsavedEdits());
        put(path, "register,address,count,value\nD_W,400,1,1\n");
        Bench third;
        third.page.restore(state);
        QVERIFY2(third.trouble().contains(QLatin1String("do not fit")),
                 qPrintable(third.trouble()));
        QVERIFY(!third.page.hasUnsavedEdits());
    }

    void aProjectGoesOnNamingAFileThatIsAway()
    {
        Bench bench;
        const QString path = bench.path("later.csv");
        const QJsonObject state{{QLatin1String("file"), path},
                                {QLatin1String("onlyDifferences"), false}};
        bench.page.restore(state);
        QCOMPARE(bench.troubles.count(), 1);
        QCOMPARE(bench.page.saved(), state);
        put(path, "register,address,value\nD_W,300,1\n");
        bench.action("Read again")->trigger();
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("1"));
    }

    void restoresFromRubbish()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(kBracket));
        const QJsonObject before = bench.page.saved();
        const QVector<QJsonObject> rubbish = {
            {},
            {{QLatin1String("file"), 7},
             {QLatin1String("onlyDifferences"), QLatin1String("yes")},
             {QLatin1String("edits"), QLatin1String("x")}}};
        for (const QJsonObject &state : rubbish) {
            QVERIFY(bench.page.openFile(kBracket));
            bench.action("Only differences")->trigger();
            bench.page.restore(state); // the recipe of another project is not this one's
            QCOMPARE(bench.page.path(), QString());
            QCOMPARE(bench.table().model()->rowCount(), 0);
            QVERIFY(!bench.action("Only differences")->isChecked());
        }
        QJsonObject state = before;
        state.insert(QLatin1String("edits"),
                     QJsonArray{7, QJsonObject(),
                                QJsonObject{{QLatin1String("address"), QLatin1String("1/D_W:201")},
                                            {QLatin1String("value"), 65536}},
                                QJsonObject{{QLatin1String("address"), QLatin1String("1/D_W:202")},
                                            {QLatin1String("value"), 5}}});
        bench.page.restore(state);
        QCOMPARE(bench.at(1, RecipeModel::kValue), QLatin1String("300"));
        QCOMPARE(bench.at(2, RecipeModel::kValue), QLatin1String("5"));
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipesPage)
#include "test_recipes_page.moc"
