#include "gateway/delivery/trouble.h"

#include <QStringList>
#include <QtTest>

using namespace cnet::gateway;

/** One line when trouble comes, one when it goes, and growing pauses. */
class TestTrouble : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysEachTroubleOnce();
};

void TestTrouble::saysEachTroubleOnce()
{
    QStringList said;
    Trouble trouble(QLatin1String("ledger"), [&said](const QString &line) { said.append(line); });
    trouble.fine();
    QCOMPARE(said, QStringList());
    QVector<int> pauses;
    for (int i = 0; i < 8; ++i) {
        pauses.append(trouble.failed(QLatin1String("disk full")));
        QVERIFY(trouble.isThere());
    }
    QCOMPARE(pauses, QVector<int>({1000, 2000, 4000, 8000, 16000, 32000, 60000, 60000}));
    trouble.failed(QLatin1String("no disk"));
    trouble.fine(QLatin1String("; nothing is lost"));
    trouble.fine();
    QVERIFY(!trouble.isThere());
    QCOMPARE(trouble.failed(QLatin1String("no disk")), 1000);
    QCOMPARE(said, QStringList({QLatin1String("ledger: disk full; trying again"),
                                QLatin1String("ledger: no disk; trying again"),
                                QLatin1String("ledger: works again; nothing is lost"),
                                QLatin1String("ledger: no disk; trying again")}));
}

QTEST_APPLESS_MAIN(TestTrouble)
#include "test_trouble.moc"
