#include "panel/system/file_watch.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet::panel;

class TestFileWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tells_data();
    void tells();

private:
    bool store(const char *name, const QByteArray &content) const;
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    void act(const QByteArray &what) const;

    QTemporaryDir m_directory;
};

bool TestFileWatch::store(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

void TestFileWatch::act(const QByteArray &what) const
{
    if (what == "another file") {
        QVERIFY(store("other", "a"));
    } else if (what == "gone") {
        QVERIFY(QFile::remove(path("file")));
    } else if (what == "replaced") {
        QVERIFY(store("new", "replaced"));
        QVERIFY(QFile::remove(path("file")));
        QVERIFY(QFile::rename(path("new"), path("file")));
    } else {
        QVERIFY(store("file", what));
    }
}

void TestFileWatch::tells_data()
{
    QTest::addColumn<QList<QByteArray>>("acts");
    QTest::addColumn<QList<int>>("told"); // before each pause, and at the end
    QTest::newRow("stored") << QList<QByteArray>{"longer"} << QList<int>{1};
    QTest::newRow("stored in steps") << QList<QByteArray>{"a", "ab", "abcd"} << QList<int>{1};
    QTest::newRow("stored twice") << QList<QByteArray>{"longer", "", "longer still"}
                                  << QList<int>{1, 2};
    QTest::newRow("replaced") << QList<QByteArray>{"replaced"} << QList<int>{1};
    QTest::newRow("replaced, and stored")
        << QList<QByteArray>{"replaced", "", "abcdefghijk"} << QList<int>{1, 2};
    QTest::newRow("gone") << QList<QByteArray>{"gone"} << QList<int>{0};
    QTest::newRow("gone for a while")
        << QList<QByteArray>{"gone", "", "abcdefghijk"} << QList<int>{0, 1};
    QTest::newRow("another file") << QList<QByteArray>{"another file"} << QList<int>{0};
}

void TestFileWatch::tells()
{
    QFETCH(QList<QByteArray>, acts);
    QVERIFY(store("file", "abc"));
    FileWatch watch(path("file"));
    QSignalSpy changes(&watch, &FileWatch::changed);
    QFETCH(QList<int>, told);
    acts.append(QByteArray());
    for (const QByteArray &what : std::as_const(acts)) {
        if (!what.isEmpty()) {
            act(what);
            continue;
        }
        const int expected = told.takeFirst();
        QTRY_COMPARE_WITH_TIMEOUT(static_cast<int>(changes.size()), expected, 60000);
        QTest::qWait(2 * FileWatch::kSettleMs); // and it stays so
        QCOMPARE(static_cast<int>(changes.size()), expected);
    }
}

QTEST_GUILESS_MAIN(TestFileWatch)
#include "test_file_watch.moc"
