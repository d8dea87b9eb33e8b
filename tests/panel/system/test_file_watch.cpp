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
    QTest::addColumn<int>("told");
    QTest::newRow("stored") << QList<QByteArray>{"longer"} << 1;
    QTest::newRow("stored in steps") << QList<QByteArray>{"a", "ab", "abcd"} << 1;
    QTest::newRow("stored twice") << QList<QByteArray>{"longer", "", "longer still"} << 2;
    QTest::newRow("replaced") << QList<QByteArray>{"replaced"} << 1;
    QTest::newRow("replaced, and stored") << QList<QByteArray>{"replaced", "", "abcdefghijk"} << 2;
    QTest::newRow("gone") << QList<QByteArray>{"gone"} << 0;
    QTest::newRow("gone for a while") << QList<QByteArray>{"gone", "", "abcdefghijk"} << 1;
    QTest::newRow("another file") << QList<QByteArray>{"another file"} << 0;
}

void TestFileWatch::tells()
{
    QFETCH(QList<QByteArray>, acts);
    QVERIFY(store("file", "abc"));
    FileWatch watch(path("file"));
    QSignalSpy told(&watch, &FileWatch::changed);
    for (const QByteArray &what : acts) {
        if (what.isEmpty()) { // time passes
            QTest::qWait(2 * FileWatch::kSettleMs);
        } else {
            act(what);
        }
    }
    QTest::qWait(3 * FileWatch::kSettleMs);
    QTEST(static_cast<int>(told.size()), "told");
}

QTEST_GUILESS_MAIN(TestFileWatch)
#include "test_file_watch.moc"
