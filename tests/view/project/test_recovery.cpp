#include "projects_made.h"
#include "support/full_disk.h"
#include "view/project/recovery.h"

#include <QProcess>

namespace cnet::view {

namespace {

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

/** Unsaved work that outlives its process. */
class TestRecovery : public QObject, private FreshFolder
{
    Q_OBJECT

private:
    Recovery::Work work(const char *title) const
    {
        return [title] { return Unsaved{QString(), projectWith(QLatin1String(title))}; };
    }

private Q_SLOTS:
    void init() { empty(); }

    void isWrittenWhenThereIsAChange()
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

QTEST_MAIN(cnet::view::TestRecovery)
#include "test_recovery.moc"
