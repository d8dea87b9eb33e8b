#include "gateway/postgresql/pg_answer.h"

#include <QtTest>

using namespace cnet::gateway;

/** What the server and libpq say, in one line for people. */
class TestPgAnswer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatTheServerMeans_data();
    void saysWhatTheServerMeans();
    void findsTheReason_data();
    void findsTheReason();
};

void TestPgAnswer::saysWhatTheServerMeans_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isTriedAgain");

    const auto row = [](const char *state, const char *text, bool isTriedAgain) {
        QTest::newRow(state) << QByteArray(state) << QString::fromLatin1(text) << isTriedAgain;
    };
    row("40P01", "others write the same rows: M %1", true);
    row("40001", "others write the same rows: M %1", true);
    row("40002", "others write the same rows: M %1", false);
    row("42501", "the user lacks a right: M %1", false);
    row("53100", "the server has no room on its disk", false);
    row("57P01", "the server ends: M %1", false);
    row("57014", "M %1", false);
    row("22003", "M %1", false);
    row("23514", "there is no place for this month: M %1; create = true makes it", false);
}

void TestPgAnswer::saysWhatTheServerMeans()
{
    QFETCH(QByteArray, state);
    const PgFailure failure = failureOf(state, QLatin1String("M %1"));
    QTEST(failure.text, "text");
    QTEST(failure.kind == PgFailure::Kind::Again, "isTriedAgain");
}

void TestPgAnswer::findsTheReason_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<QString>("reason");

    const auto row = [](const char *title, const char *words, const char *reason) {
        QTest::newRow(title) << QByteArray(words) << QString::fromLatin1(reason);
    };
    row("address", "connection to server at \"h\" (::1), port 1 failed: FATAL:  no such role\n",
        "no such role");
    row("folder", "connection to server on socket \"/run/x: y\" failed: No such file\n\tIs it?\n",
        "No such file");
    row("lost", "server closed the connection unexpectedly\n\tThis probably means\n",
        "server closed the connection unexpectedly");
    row("other language", "FEHLER: nein\n", "nein");
    row("nothing behind", "FATAL:  \n", "FATAL:");
    row("nothing", "\n", "the connection was lost");
    row("empty", "", "the connection was lost");
}

void TestPgAnswer::findsTheReason()
{
    QFETCH(QByteArray, words);
    QTEST(firstReason(words), "reason");
}

QTEST_APPLESS_MAIN(TestPgAnswer)
#include "test_pg_answer.moc"
