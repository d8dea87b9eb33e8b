#include "gateway/write/token_bucket.h"

#include <QtTest>

using namespace cnet::gateway;

/** As often as it may be, and no more often. */
class TestTokenBucket : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allowsABurst();
    void allowsSoManyAMinute();
    void savesNoMoreThanABurst();
};

namespace {

int takenAt(TokenBucket &bucket, qint64 nowMs)
{
    int taken = 0;
    while (bucket.hasToken(nowMs)) {
        bucket.take();
        ++taken;
    }
    return taken;
}

} // namespace

void TestTokenBucket::allowsABurst()
{
    TokenBucket bucket({12, 3}, 1000);
    QCOMPARE(takenAt(bucket, 1000), 3);
    QCOMPARE(takenAt(bucket, 5999), 0);
    QCOMPARE(takenAt(bucket, 6000), 1);
}

void TestTokenBucket::allowsSoManyAMinute()
{
    TokenBucket bucket({7, 1}, 0);
    int taken = 0;
    for (qint64 nowMs = 0; nowMs <= 600000; ++nowMs) {
        taken += takenAt(bucket, nowMs);
    }
    // Between two looks at most a millisecond of a token is lost.
    QVERIFY2(taken == 70 || taken == 71, qPrintable(QString::number(taken)));
}

void TestTokenBucket::savesNoMoreThanABurst()
{
    TokenBucket bucket({6000, 5}, 0);
    QCOMPARE(takenAt(bucket, 3600000), 5);
    QCOMPARE(takenAt(bucket, 3600009), 0);
    QCOMPARE(takenAt(bucket, 3600010), 1);
}

QTEST_APPLESS_MAIN(TestTokenBucket)
#include "test_token_bucket.moc"
