#include "gateway/status/pages.h"
#include "gateway/support/snapshots.h"

#include <QJsonDocument>
#include <QtTest>

using namespace cnet::gateway;

/** Each request has its answer, whatever it is. */
class TestPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void beginsWithoutASnapshot();
    void knowsItsOwnName_data();
    void knowsItsOwnName();
};

void TestPages::answers_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("code");
    const auto row = [](const char *method, const QByteArray &path, int code) {
        QTest::newRow(method + path.left(40)) << QByteArray(method) << path << code;
    };
    row("GET", "/metrics", 200);
    row("HEAD", "/metrics", 200);
    row("GET", "/health", 200);
    row("GET", "/status", 200);
    row("GET", "/", 404);
    row("GET", "", 404);
    row("GET", "/metrics/", 404);
    row("GET", "//metrics", 404);
    row("GET", "/../../etc/passwd", 404);
    row("GET", "/%s%n%x", 404);
    row("GET", QByteArray(10000, '/'), 404);
    row("GET", "/\xff\xfe\x01", 404);
    row("POST", "/metrics", 405);
    row("DELETE", "/status", 405);
    row("get", "/status", 405);
    row("", "/status", 405);
}

void TestPages::answers()
{
    QFETCH(QByteArray, method);
    QFETCH(QByteArray, path);
    QFETCH(int, code);
    const Snapshot snapshot = someSnapshot();
    const Page page = pageFor(method, path, &snapshot, 100000);
    QCOMPARE(page.code, code);
    QVERIFY(page.body.endsWith('\n'));
    const bool isJson = QByteArray(page.type) == "application/json";
    QCOMPARE(QJsonDocument::fromJson(page.body).isObject(), isJson);
    QVERIFY(path.isEmpty() || code != 404 || !page.body.contains(path + '\n'));
}

void TestPages::beginsWithoutASnapshot()
{
    QCOMPARE(pageFor("GET", "/health", nullptr, 0).code, 503);
    QCOMPARE(pageFor("GET", "/nothing", nullptr, 0).code, 404);
    Snapshot snapshot = someSnapshot();
    snapshot.recorder.trouble = QLatin1String("disk full");
    const Page page = pageFor("GET", "/health", &snapshot, 100000);
    QCOMPARE(page.code, 503);
    QVERIFY(page.body.contains("ledger: disk full"));
    QCOMPARE(pageFor("GET", "/metrics", &snapshot, 100000).code, 200);
}

void TestPages::knowsItsOwnName_data()
{
    QTest::addColumn<QByteArray>("host");
    QTest::addColumn<bool>("isOwn");
    const auto rows = [](bool isOwn, const QList<QByteArray> &hosts) {
        for (const QByteArray &host : hosts) {
            QTest::newRow(("'" + host.toPercentEncoding() + "'").constData()) << host << isOwn;
        }
    };
    rows(true, {"localhost", "localhost:9464", "LocalHost:1", "127.0.0.1", "127.0.0.1:9464",
                "[::1]", "[::1]:9464", "127.0.0.2:9464", "127.0.0.2", "localhost:"});
    rows(false, {"", ":9464", "evil.example", "evil.example:9464", "localhost.evil.example",
                 "evil.example:9464@localhost", "localhost:9464:9464", "127.0.0.3:9464", "::1",
                 "localhost:999999", "localhost\n", "local host", "[::1", "[]:1", "0.0.0.0:9464",
                 "\xff\xfe"});
}

void TestPages::knowsItsOwnName()
{
    QFETCH(QByteArray, host);
    QFETCH(bool, isOwn);
    QCOMPARE(isForThisMachine(host, "127.0.0.2:9464"), isOwn);
    QVERIFY(!isForThisMachine(host, QByteArray()) || isOwn);
    QCOMPARE(strangeHostPage().code, 403);
}

QTEST_APPLESS_MAIN(TestPages)
#include "test_pages.moc"
