#include "projects_made.h"
#include "support/full_disk.h"
#include "support/random.h"
#include "view/project/recent_files.h"

namespace cnet::view {

/** What was opened last, whatever became of the file that keeps it. */
class TestRecentFiles : public QObject, private FreshFolder
{
    Q_OBJECT

private Q_SLOTS:
    void init() { empty(); }

    void lastOnesComeFirst()
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

    void dropsWhatIsGone()
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

    void takesRubbishForNothing_data()
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

    void takesRubbishForNothing()
    {
        QFETCH(QByteArray, content);
        put(in("recent.json"), content);
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.projects().isEmpty());
        QVERIFY(recent.connections().isEmpty());
        QVERIFY(recent.addProject(QLatin1String("/a")));
        QCOMPARE(recent.projects(), QStringList{QLatin1String("/a")});
    }

    void standsAnyBytes()
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

    void staysOnAFullDisk()
    {
        const RecentFiles recent(in("recent.json"));
        QVERIFY(recent.addProject(QLatin1String("/a")));
        {
            const FullDisk full(10);
            QVERIFY(!recent.addProject(QLatin1String("/b")));
        }
        QCOMPARE(recent.projects(), QStringList{QLatin1String("/a")});
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecentFiles)
#include "test_recent_files.moc"
