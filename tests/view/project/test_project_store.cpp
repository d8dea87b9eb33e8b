#include "projects_made.h"
#include "support/full_disk.h"
#include "view/project/project_store.h"

#include <sys/stat.h>

namespace cnet::view {

/** Projects on a disk, where nobody loses what was there. */
class TestProjectStore : public QObject, private FreshFolder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { empty(); }

    void savesAndLoads()
    {
        QString error;
        const QString path = in("line.cnet-view");
        QVERIFY2(save(path, projectWith(QLatin1String("one")), error), qPrintable(error));
        QVERIFY(!QFileInfo::exists(previousOf(path)));
        QCOMPARE(titleOf(load(path, error)), QLatin1String("one"));
    }

    void keepsThePreviousOne()
    {
        QString error;
        const QString path = in("line.cnet-view");
        for (const char *title : {"one", "two", "three", "three"}) {
            QVERIFY2(save(path, projectWith(QLatin1String(title)), error), qPrintable(error));
        }
        QCOMPARE(titleOf(load(path, error)), QLatin1String("three"));
        QCOMPARE(titleOf(load(previousOf(path), error)), QLatin1String("two"));
    }

    // Whatever was there may be somebody's work.
    void keepsRubbishToo()
    {
        QString error;
        const QString path = in("line.cnet-view");
        put(path, "rubbish");
        QVERIFY(save(path, projectWith(QLatin1String("one")), error));
        QCOMPARE(bytesOf(previousOf(path)), QByteArray("rubbish"));
    }

    void saysWhatCannotBeRead()
    {
        QString error;
        QVERIFY(!load(in("none"), error));
        QVERIFY2(error.startsWith(QLatin1String("Cannot read ") + in("none")), qPrintable(error));
        QVERIFY(!load(in("."), error));
        QVERIFY2(error.endsWith(QLatin1String("it is no file")), qPrintable(error));
        put(in("broken"), "{\n\"format\": }");
        QVERIFY(!load(in("broken"), error));
        QVERIFY2(error.startsWith(
                     QString::fromLatin1("Cannot open %1: line 2, column ").arg(in("broken"))),
                 qPrintable(error));
    }

    // Opening a pipe that nobody writes to would hang the window.
    void leavesPipesAlone()
    {
        QCOMPARE(mkfifo(QFile::encodeName(in("pipe")).constData(), 0600), 0);
        QString error;
        QVERIFY(!load(in("pipe"), error));
        QVERIFY(!save(in("pipe"), Project(), error));
        QVERIFY(!error.isEmpty());
    }

    void saysWhatCannotBeWritten()
    {
        QString error;
        QVERIFY(!save(in("no/such/folder"), Project(), error));
        QVERIFY2(error.startsWith(QLatin1String("Cannot write ")), qPrintable(error));
    }

    void losesNothingOnAFullDisk()
    {
        QString error;
        const QString path = in("line.cnet-view");
        QVERIFY(save(path, projectWith(QLatin1String("one")), error));
        QVERIFY(save(path, projectWith(QLatin1String("two")), error));
        {
            const FullDisk full(60);
            QVERIFY(!save(path, projectWith(QLatin1String("three")), error));
        }
        QVERIFY2(error.startsWith(QLatin1String("Cannot write ")), qPrintable(error));
        QCOMPARE(titleOf(load(path, error)), QLatin1String("two"));
        QCOMPARE(titleOf(load(previousOf(path), error)), QLatin1String("one"));
        QCOMPARE(QDir(in(".")).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestProjectStore)
#include "test_project_store.moc"
