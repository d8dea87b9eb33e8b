#include "gateway/config/sparkplug_kind.h"
#include "gateway/sparkplug/bd_seq.h"
#include "gateway/sparkplug/host_state.h"
#include "gateway/sparkplug/sparkplug_names.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet::gateway;

/** What a node keeps to itself: how its host does, its number, and its names. */
class TestHostState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheHost_data();
    void followsTheHost();
    void countsOverRestarts();
    void beginsAnewWithoutItsFile();
    void knowsItsTopics();
    void keepsNamesApart();
};

void TestHostState::followsTheHost_data()
{
    QTest::addColumn<QList<QByteArray>>("words");
    QTest::addColumn<int>("is");
    const QByteArray on = "{\"online\":true,\"timestamp\":1000}";
    const auto row = [](const char *name, const QList<QByteArray> &words, HostState::Is is) {
        QTest::newRow(name) << words << int(is);
    };
    const auto off = [](const char *time) {
        return QByteArray("{\"online\":false,\"timestamp\":") + time + '}';
    };
    row("nothing", {}, HostState::Is::Unknown);
    row("online", {on}, HostState::Is::Online);
    row("offline", {off("1000")}, HostState::Is::Offline);
    row("goes", {on, off("1001")}, HostState::Is::Offline);
    row("goes at once", {on, off("1000")}, HostState::Is::Offline);
    row("outdated", {on, off("999")}, HostState::Is::Online);
    row("no JSON", {on, "OFFLINE"}, HostState::Is::Online);
    row("two words in one", {on, R"({"online":true,"online":false,"timestamp":2000})"},
        HostState::Is::Online);
    row("no time", {on, "{\"online\":false}"}, HostState::Is::Online);
    row("text for a time", {on, off("\"2000\"")}, HostState::Is::Online);
    row("number for a truth", {on, "{\"online\":0,\"timestamp\":2000}"}, HostState::Is::Online);
    row("a long word", {on, off("2000").leftJustified(4096, ' ')}, HostState::Is::Offline);
    row("too long a word", {on, off("2000").leftJustified(4097, ' ')}, HostState::Is::Online);
    row("beyond all times", {on, off("1e300")}, HostState::Is::Online);
}

void TestHostState::followsTheHost()
{
    QFETCH(QList<QByteArray>, words);
    QFETCH(int, is);
    HostState host;
    for (const QByteArray &word : qAsConst(words)) {
        host.take(word);
    }
    QCOMPARE(int(host.is()), is);
    host.forget();
    QVERIFY(host.is() == HostState::Is::Unknown);
}

void TestHostState::countsOverRestarts()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QLatin1String("number"));
    for (int wanted = 0; wanted < 600; ++wanted) {
        BdSeq number(path);
        QCOMPARE(number.next(), wanted % 256);
        QCOMPARE(number.now(), wanted % 256);
    }
}

void TestHostState::beginsAnewWithoutItsFile()
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QLatin1String("number")));
    for (const char *content : {"", "x", "-3", "256", "99999999999999999999"}) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QCOMPARE(BdSeq(file.fileName()).next(), 0);
    }
    BdSeq nowhere(directory.filePath(QLatin1String("none/number")));
    QCOMPARE(nowhere.next(), 0);
    QCOMPARE(nowhere.next(), 1);
}

void TestHostState::knowsItsTopics()
{
    const SparkplugTopics topics(QLatin1String("plant"), QLatin1String("gate"));
    QCOMPARE(topics.ofNode("NBIRTH"), QLatin1String("spBv1.0/plant/NBIRTH/gate"));
    QCOMPARE(topics.ofDevice("DDATA", QLatin1String("press.1")),
             QLatin1String("spBv1.0/plant/DDATA/gate/press.1"));
    QCOMPARE(SparkplugTopics::ofHost(QLatin1String("scada")), QLatin1String("spBv1.0/STATE/scada"));
    const auto device = [&topics](const char *topic) {
        return topics.commandedDevice(QString::fromLatin1(topic));
    };
    QCOMPARE(device("spBv1.0/plant/DCMD/gate/press.1"), QLatin1String("press.1"));
    for (const char *none : {"", "spBv1.0/plant/DCMD/gate/", "spBv1.0/plant/DCMD/gate/a/b",
                             "spBv1.0/plant/DCMD/gate", "spBv1.0/plant/NCMD/gate/press.1"}) {
        QCOMPARE(device(none), QString());
    }
}

void TestHostState::keepsNamesApart()
{
    SparkplugNames names;
    const auto take = [&names](const char *name) {
        return names.take(QString::fromLatin1(name), true);
    };
    QCOMPARE(take("press.1"), QLatin1String("press.1"));
    QCOMPARE(take("PRESS.1"), QLatin1String("PRESS.1~2"));
    QCOMPARE(take("press.1"), QLatin1String("press.1~3"));
    QCOMPARE(take("a/b+c#"), QLatin1String("a_b_c_"));
    QCOMPARE(names.take(QLatin1String("a/b\n"), false), QLatin1String("a/b_"));
    QVERIFY(!sparkplugIdMisfit(QString()).isEmpty());
    QVERIFY(!sparkplugIdMisfit(QLatin1String("a/b")).isEmpty());
    QVERIFY(sparkplugIdMisfit(QLatin1String("a b.c~2")).isEmpty());
}

QTEST_APPLESS_MAIN(TestHostState)
#include "test_host_state.moc"
