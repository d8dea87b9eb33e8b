#include "outages/audit.h"

#include <QtTest>

/** The audit after outages sees what it is there for. */
class TestOutagesAudit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seesFaults_data();
    void seesFaults();
    void takesTheFirstOfEach();
    void countsWhatWasDropped_data();
    void countsWhatWasDropped();
};

namespace {

/** "a1 b2+ a3" is tag a with 1, tag b with 2 as old one...; "/" is the next connection. */
QVector<Told> stream(const QByteArray &text)
{
    QVector<Told> all;
    int connection = 0;
    for (const QByteArray &word : text.simplified().split(' ')) {
        if (word == "/") {
            ++connection;
        } else if (!word.isEmpty()) {
            const bool isOld = word.endsWith('+');
            const auto size = word.size() - (isOld ? 2 : 1);
            all.append({word.left(1), whatOf(word.mid(1, int(size)), "good", QByteArray(), 7),
                        isOld, connection});
        }
    }
    return all;
}

} // namespace

void TestOutagesAudit::seesFaults_data()
{
    QTest::addColumn<QByteArray>("seen");
    QTest::addColumn<QString>("atStream");
    QTest::addColumn<QString>("atHistory");
    const QString none;
    const QString elsewhere = QLatin1String("elsewhere");
    const QString number = QLatin1String("another number");
    QTest::newRow("all") << QByteArray("a1 b1 a2 a3 b2") << none << none;
    QTest::newRow("between tags") << QByteArray("b1 a1 a2 b2 a3") << none << elsewhere;
    QTest::newRow("lost") << QByteArray("a1 b1 a3 b2") << QString::fromLatin1("lacks") << number;
    QTest::newRow("invented") << QByteArray("a1 b1 a2 a3 b2 a4")
                              << QString::fromLatin1("never took") << number;
    QTest::newRow("late") << QByteArray("a1 b1 a3 a2 b2") << QString::fromLatin1("among the live")
                          << elsewhere;
    QTest::newRow("twice live") << QByteArray("a1 a1 b1 a2 a3 b2")
                                << QString::fromLatin1("among the live") << number;
    QTest::newRow("old ones beside") << QByteArray("a3 a1+ b1 b2 a2+") << none << elsewhere;
    QTest::newRow("late old") << QByteArray("a3 a2+ b1 b2 a1+")
                              << QString::fromLatin1("among the old") << elsewhere;
    QTest::newRow("again") << QByteArray("a1 a2 b1 b2 / a1+ a2+ a3+") << none << number;
}

void TestOutagesAudit::seesFaults()
{
    QFETCH(QByteArray, seen);
    QFETCH(QString, atStream);
    QFETCH(QString, atHistory);
    const auto agree = [](const QStringList &faults, const QString &expected) {
        return expected.isEmpty() ? faults.isEmpty() : !faults.filter(expected).isEmpty();
    };
    Audit audit(stream("a1 b1 a2 a3 b2"));
    audit.checkStream("broker", stream(seen));
    QVERIFY2(agree(audit.faults(), atStream), qPrintable(audit.faults().join(QLatin1Char('\n'))));
    Audit other(stream("a1 b1 a2 a3 b2"));
    other.checkHistory("history", stream(seen));
    QVERIFY2(agree(other.faults(), atHistory), qPrintable(other.faults().join(QLatin1Char('\n'))));
}

void TestOutagesAudit::takesTheFirstOfEach()
{
    Audit audit(stream("a1 b1 a2 a3 b2"));
    audit.checkFirsts("centre", stream("a1 b1 a2 a1 b1 a2 a3 b2 a3"));
    QCOMPARE(audit.faults(), QStringList());
    audit.checkFirsts("centre", stream("a1 b1 a3 a1 b1 a2 a3 b2"));
    QCOMPARE(audit.faults().size(), 1);
    audit.checkFirsts("centre", stream("a1 a1 a2 a3 b2"));
    QCOMPARE(audit.faults().size(), 2);
}

void TestOutagesAudit::countsWhatWasDropped_data()
{
    QTest::addColumn<QByteArray>("seen");
    QTest::addColumn<int>("dropped");
    QTest::addColumn<bool>("isRight");
    QTest::newRow("none") << QByteArray("a1 b1 a2 a3 b2") << 0 << true;
    QTest::newRow("two") << QByteArray("a1 a3 b2") << 2 << true;
    QTest::newRow("the first") << QByteArray("b1 a2 a3 b2") << 1 << true;
    QTest::newRow("the last") << QByteArray("a1 b1 a2 a3") << 1 << true;
    QTest::newRow("all") << QByteArray() << 5 << true;
    QTest::newRow("too many are counted") << QByteArray("a1 a3 b2") << 3 << false;
    QTest::newRow("too few are counted") << QByteArray("a1 a3 b2") << 1 << false;
    QTest::newRow("not counted") << QByteArray("a1 a3 b2") << 0 << false;
    QTest::newRow("counted and there") << QByteArray("a1 b1 a2 a3 b2") << 1 << false;
    QTest::newRow("not one behind the other") << QByteArray("a1 a2 b2") << 2 << false;
}

void TestOutagesAudit::countsWhatWasDropped()
{
    QFETCH(QByteArray, seen);
    QFETCH(int, dropped);
    QFETCH(bool, isRight);
    const QVector<Told> told = stream(seen);
    Audit audit(stream("a1 b1 a2 a3 b2"));
    audit.leaveOut("history", told, dropped);
    audit.checkHistory("history", told);
    QCOMPARE(audit.faults().isEmpty(), isRight);
    Audit other(stream("a1 b1 a2 a3 b2"));
    other.leaveOut("broker", told, dropped);
    other.checkStream("broker", told);
    QCOMPARE(other.faults().isEmpty(), isRight);
}

QTEST_GUILESS_MAIN(TestOutagesAudit)
#include "test_outages_audit.moc"
