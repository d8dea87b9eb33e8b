#include "support/full_disk.h"
#include "support/random.h"
#include "view/project/project_store.h"
#include "view/project/recent_files.h"
#include "view/project/recovery.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace cnet::view {

namespace {

Project projectWith(const QString &text)
{
    Project project;
    project.window.insert(QLatin1String("title"), text);
    return project;
}

QString titleOf(const std::optional<Project> &project)
{
    return project ? project->window.value(QLatin1String("title")).toString() : QString();
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

/** The number of a process that is no more. */
qint64 deadProcess()
{
    QProcess process;
    process.start(QLatin1String("sleep"), {QLatin1String("600")});
    if (!process.waitForStarted(60000)) {
        return 0;
    }
    const qint64 id = process.processId();
    process.kill();
    process.waitForFinished(60000);
    return id;
}

/** What a process leaves that was killed: its file, and its lock. */
QString leaveWork(const QString &folder, const QString &title, int number)
{
    const qint64 process = deadProcess();
    QString path = QString::fromLatin1("%1/%2-%3.json").arg(folder).arg(process).arg(number);
    QString written;
    {
        Recovery recovery(
            [&] {
                return Unsaved{QLatin1String("/somewhere/line.cnet-view"), projectWith(title)};
            },
            folder);
        recovery.writeNow();
        written = recovery.path();
    }
    QFile::rename(written, path);
    put(path + QLatin1String(".lock"),
        QByteArray::number(process) + "\nsleep\n" + QSysInfo::machineHostName().toUtf8() + '\n');
    return path;
}

} // namespace

class TestProjectKeeping : public QObject
{
    Q_OBJECT

private:
    QScopedPointer<QTemporaryDir> m_folder;

    QString in(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    Recovery::Work work(const char *title) const
    {
        return [title] { return Unsaved{QString(), projectWith(QLatin1String(title))}; };
    }

private Q_SLOTS:
    void init() { m_folder.reset(new QTemporaryDir); }

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
        QVERIFY(!load(m_folder->path(), error));
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

    void loosesNothingOnAFullDisk()
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
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
    }

    void recentOnesComeFirst()
    {
        const RecentFiles recent(in("config/recent.json"));
        QVERIFY(recent.projects().isEmpty() && recent.connections().isEmpty());
        for (int i = 0; i < 14; ++i) {
            QVERIFY(recent.addProject(QString::fromLatin1("/plant/%1").arg(i)));
            Connection connection;
            connection.station = i;
            QVERIFY(recent.addConnection(connection));
        }
        QVERIFY(recent.addProject(QLatin1String("/plant/./7")));
        QCOMPARE(recent.projects().size(), RecentFiles::kMost);
        QCOMPARE(recent.projects().mid(0, 3),
                 QStringList({QLatin1String("/plant/7"), QLatin1String("/plant/13"),
                              QLatin1String("/plant/12")}));
        QCOMPARE(recent.projects().count(QLatin1String("/plant/7")), 1);
        QCOMPARE(recent.connections().size(), RecentFiles::kMost);
        QCOMPARE(recent.connections().first().station, 13);
        QVERIFY(recent.clear());
        QVERIFY(recent.projects().isEmpty() && recent.connections().isEmpty());
    }

    void recentOnesThatAreGoneAreDropped()
    {
        put(in("there"), "");
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.addProject(in("there")) && recent.addProject(in("gone")));
        QVERIFY(recent.addConnection(Connection()));
        QCOMPARE(recent.projects().size(), 2);
        QVERIFY(recent.dropMissing());
        QCOMPARE(recent.projects(), QStringList{in("there")});
        QCOMPARE(recent.connections().size(), 1);
    }

    void recentRubbishIsNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("]");
        QTest::newRow("another list") << QByteArray("[1, 2]");
        QTest::newRow("other kinds")
            << QByteArray("{\"projects\": {\"a\": 1}, \"connections\": \"x\"}");
        QTest::newRow("other entries")
            << QByteArray("{\"projects\": [1, \"relative\", \"\", null], \"connections\": [[], 7, "
                          "{\"link\": \"carrier pigeon\"}]}");
    }
    void recentRubbishIsNothing()
    {
        QFETCH(QByteArray, content);
        put(in("recent.json"), content);
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.projects().isEmpty());
        QVERIFY(recent.connections().isEmpty());
        QVERIFY(recent.addProject(QLatin1String("/a")));
        QCOMPARE(recent.projects(), QStringList{QLatin1String("/a")});
    }

    void recentBytesMayFlip()
    {
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.addProject(QLatin1String("/a")) && recent.addProject(QLatin1String("/b")));
        QVERIFY(recent.addConnection(Connection()));
        const QByteArray whole = bytesOf(recent.path());
        Random random(21);
        for (int round = 0; round < 500; ++round) {
            QByteArray bytes = whole;
            bytes[random.below(static_cast<int>(bytes.size()))] =
                static_cast<char>(random.below(256));
            put(recent.path(), bytes);
            for (const QString &path : recent.projects()) {
                QVERIFY(QDir::isAbsolutePath(path));
            }
            QVERIFY(recent.connections().size() <= 1);
        }
    }

    void recentStaysOnAFullDisk()
    {
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.addProject(QLatin1String("/a")));
        {
            const FullDisk full(10);
            QVERIFY(!recent.addProject(QLatin1String("/b")));
        }
        QCOMPARE(recent.projects(), QStringList{QLatin1String("/a")});
    }

    void recoveryIsWrittenWhenThereIsAChange()
    {
        int asked = 0;
        QString title = QLatin1String("one");
        Recovery recovery(
            [&] {
                ++asked;
                return Unsaved{QString(), projectWith(title)};
            },
            in("recovery"));
        recovery.setBeat(1);
        QVERIFY(recovery.path().isEmpty());
        recovery.noteChange();
        QCOMPARE(asked, 0);
        QVERIFY(!QFileInfo::exists(in("recovery")));
        QTRY_COMPARE_WITH_TIMEOUT(asked, 1, 60000);
        QVERIFY(QFileInfo::exists(recovery.path()));
        const QString own = recovery.path();
        QFile::remove(own); // so that one sees whether it is written again
        QVERIFY(recovery.writeNow());
        QVERIFY(!QFileInfo::exists(own));
        title = QLatin1String("two");
        QVERIFY(recovery.writeNow());
        QVERIFY(QFileInfo::exists(own));
        recovery.discard();
        QVERIFY(!QFileInfo::exists(own));
        QVERIFY(QDir(in("recovery")).isEmpty());
    }

    void whatAKilledProcessLeftIsClaimedOnce()
    {
        QVERIFY(QDir().mkpath(in("recovery")));
        const QString left = leaveWork(in("recovery"), QLatin1String("lost and found"), 0);
        QString error;
        Recovery first(work("first"), in("recovery"));
        Recovery second(work("second"), in("recovery"));
        QCOMPARE(first.left(), 1);
        const auto claimed = first.claim(error);
        QVERIFY2(claimed, qPrintable(error));
        QCOMPARE(titleOf(claimed->project), QLatin1String("lost and found"));
        QCOMPARE(claimed->file, QLatin1String("/somewhere/line.cnet-view"));
        QCOMPARE(first.path(), left);
        QCOMPARE(second.left(), 0);
        QVERIFY(!second.claim(error));
        QVERIFY(!first.claim(error)); // one at a time
        // It goes on in that file, so that it is never in none.
        QVERIFY(first.writeNow());
        QVERIFY(bytesOf(left).contains("\"first\""));
        first.discard();
        QVERIFY(QDir(in("recovery")).isEmpty());
    }

    void whatIsWorkedOnIsNotClaimed()
    {
        Recovery first(work("first"), in("recovery"));
        Recovery second(work("second"), in("recovery"));
        Recovery third(work("third"), in("recovery"));
        QVERIFY(first.writeNow() && second.writeNow());
        QVERIFY(first.path() != second.path());
        QString error;
        QCOMPARE(third.left(), 0);
        QVERIFY(!third.claim(error));
        QVERIFY(error.isEmpty());
    }

    // As when the desktop ends the session.
    void whatIsNotDiscardedStays()
    {
        {
            Recovery recovery(work("first"), in("recovery"));
            QVERIFY(recovery.writeNow());
        }
        Recovery next(work("next"), in("recovery"));
        QString error;
        const auto claimed = next.claim(error);
        QVERIFY(claimed);
        QCOMPARE(titleOf(claimed->project), QLatin1String("first"));
    }

    void severalAreOfferedOneByOne()
    {
        QVERIFY(QDir().mkpath(in("recovery")));
        QSet<QString> titles;
        for (int i = 0; i < 3; ++i) {
            leaveWork(in("recovery"), QString::number(i), i);
        }
        QString error;
        Recovery recovery(work("next"), in("recovery"));
        QCOMPARE(recovery.left(), 3);
        for (int i = 0; i < 3; ++i) {
            const auto claimed = recovery.claim(error);
            QVERIFY(claimed);
            titles.insert(titleOf(claimed->project));
            recovery.discard();
        }
        QCOMPARE(titles.size(), 3);
        QVERIFY(!recovery.claim(error));
        QVERIFY(QDir(in("recovery")).isEmpty());
    }

    void brokenWorkIsPutAside()
    {
        QVERIFY(QDir().mkpath(in("recovery")));
        put(in("recovery/1-0.json"), "{\"format\": \"cnet-view unsaved work\", ");
        put(in("recovery/2-0.json"), "{\"format\": \"something\"}");
        put(in("recovery/notes.txt"), "mine");
        QString error;
        Recovery recovery(work("next"), in("recovery"));
        QVERIFY(!recovery.claim(error));
        QCOMPARE(error.count(QLatin1Char('\n')), 1);
        QVERIFY2(error.contains(QLatin1String("1-0.json cannot be read: line 1, column ")),
                 qPrintable(error));
        QVERIFY(!recovery.claim(error));
        QVERIFY(error.isEmpty());
        QCOMPARE(bytesOf(in("recovery/2-0.json.broken")),
                 QByteArray("{\"format\": \"something\"}"));
        QCOMPARE(bytesOf(in("recovery/notes.txt")), QByteArray("mine"));
    }

    void aFullDiskIsToldOnce()
    {
        QString title = QLatin1String("one");
        Recovery recovery([&] { return Unsaved{QString(), projectWith(title)}; }, in("recovery"));
        QSignalSpy troubles(&recovery, &Recovery::troubled);
        QVERIFY(recovery.writeNow());
        const QByteArray before = bytesOf(recovery.path());
        title = QLatin1String("two");
        {
            const FullDisk full(20);
            QVERIFY(!recovery.writeNow());
            QVERIFY(!recovery.writeNow());
        }
        QCOMPARE(troubles.count(), 1);
        QCOMPARE(bytesOf(recovery.path()), before);
        QVERIFY(recovery.writeNow());
        QVERIFY(bytesOf(recovery.path()).contains("\"two\""));
    }

    void aFolderThatCannotBeMadeIsTold()
    {
        put(in("recovery"), "a file");
        Recovery recovery(work("one"), in("recovery"));
        QSignalSpy troubles(&recovery, &Recovery::troubled);
        QVERIFY(!recovery.writeNow());
        QCOMPARE(troubles.count(), 1);
        QCOMPARE(recovery.left(), 0);
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestProjectKeeping)
#include "test_project_keeping.moc"
