#include "plain_store.h"

#include "view/trend/series/trace_series.h"

#include <QtTest>

#include <cmath>
#include <limits>
#include <random>

using namespace cnet::view;

namespace {

constexpr qint64 kFirstTime = std::numeric_limits<qint64>::min();
constexpr qint64 kLastTime = std::numeric_limits<qint64>::max();

void compareSpans(const TraceStore::Span &span, const TraceStore::Span &expected)
{
    QCOMPARE(span.count, expected.count);
    QCOMPARE(span.hasGap, expected.hasGap);
    QCOMPARE(span.least, expected.least);
    QCOMPARE(span.greatest, expected.greatest);
    QCOMPARE(span.first, expected.first);
    QCOMPARE(span.last, expected.last);
}

void addKinds()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<double>("gaps");
    QTest::addColumn<qint64>("longest");
    QTest::addColumn<int>("most");
    QTest::newRow("a few") << 7 << 0.2 << qint64(10) << 1000000;
    QTest::newRow("one node") << 16 << 0.0 << qint64(10) << 1000000;
    QTest::newRow("several chunks") << 20000 << 0.0 << qint64(10) << 1000000;
    QTest::newRow("with gaps") << 20000 << 0.05 << qint64(10) << 1000000;
    QTest::newRow("half of them gaps") << 5000 << 1.0 << qint64(10) << 1000000;
    QTest::newRow("all at once") << 3000 << 0.1 << qint64(0) << 1000000;
    QTest::newRow("weeks apart") << 3000 << 0.1 << qint64(5000000000) << 1000000;
    QTest::newRow("old ones gone") << 20000 << 0.05 << qint64(10) << 3000;
    QTest::newRow("few are kept") << 5000 << 0.3 << qint64(10) << 1;
}

} // namespace

class TestTrendStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void keepsTheOrderOfTimes();
    void takesWhatIsNoNumberAsGap();
    void countsGapsOnce();
    void findsAllExtremes_data() { addKinds(); }
    void findsAllExtremes();
    void findsTimes_data() { addKinds(); }
    void findsTimes();
    void keepsNoMoreThanItMay_data();
    void keepsNoMoreThanItMay();
    void bearsAllTimesThereAre();
    void summarisesWhatIsBetween();
    void summarisesEqualAndHugeValues();
    void isSmall_data();
    void isSmall();
    void isEmptyAgainWhenCleared();
    void offersWhatIsLookedAt();
    void boundsWhatIsOffered();
    void clampsTimesOfScales();
};

void TestTrendStore::isEmptyAtFirst()
{
    const TraceStore store;
    QVERIFY(store.isEmpty());
    QCOMPARE(store.entries(), 0);
    QCOMPARE(store.firstMs(), qint64(0));
    QCOMPARE(store.lastMs(), qint64(0));
    QCOMPARE(store.indexAt(5), 0);
    QCOMPARE(store.span(-3, 7).count, 0);
    QCOMPARE(store.summary(kFirstTime, kLastTime).count, 0);
    QVERIFY(store.sample(0).isGap);
}

void TestTrendStore::keepsTheOrderOfTimes()
{
    TraceStore store;
    store.append(100, 1);
    store.append(50, 2);
    store.appendGap(60);
    store.append(101, 3);
    QCOMPARE(store.size(), 3);
    QCOMPARE(store.entries(), 4);
    QCOMPARE(store.sample(1).atMs, qint64(100));
    QCOMPARE(store.sample(1).value, 2.0);
    QCOMPARE(store.sample(2).atMs, qint64(100));
    QVERIFY(store.sample(2).isGap);
    QCOMPARE(store.firstMs(), qint64(100));
    QCOMPARE(store.lastMs(), qint64(101));
    QVERIFY(store.sample(4).isGap);
    QVERIFY(store.sample(-1).isGap);
}

void TestTrendStore::takesWhatIsNoNumberAsGap()
{
    TraceStore store;
    store.append(1, 5);
    store.append(2, kNoNumber);
    store.append(3, 6);
    store.append(4, std::numeric_limits<double>::infinity());
    QCOMPARE(store.size(), 2);
    QCOMPARE(store.entries(), 4);
    QVERIFY(store.sample(1).isGap);
    QVERIFY(store.sample(3).isGap);
    QCOMPARE(store.span(0, 4).greatest, 6.0);
}

void TestTrendStore::countsGapsOnce()
{
    TraceStore store;
    store.appendGap(1); // nothing is known anyway
    QCOMPARE(store.entries(), 0);
    store.append(2, 5);
    store.appendGap(3);
    store.appendGap(4);
    QCOMPARE(store.entries(), 2);
    QCOMPARE(store.sample(1).atMs, qint64(3));
    QCOMPARE(store.size(), 1);
}

void TestTrendStore::findsAllExtremes()
{
    QFETCH(int, samples);
    QFETCH(double, gaps);
    QFETCH(qint64, longest);
    QFETCH(int, most);
    TraceStore store(most);
    const PlainStore all = fill(store, {samples, gaps, longest}, 1);
    const int gone = static_cast<int>(all.entries().size()) - store.entries();
    QVERIFY(gone >= 0);
    std::mt19937 random(2);
    std::uniform_int_distribution<int> place(-5, store.entries() + 5);
    for (int i = 0; i < 300; ++i) {
        const int from = place(random);
        const int to = i % 2 == 0 ? place(random) : from + place(random) % 80;
        const int start = std::max(from, 0);
        compareSpans(store.span(from, to), all.span(start + gone, to + gone));
        if (QTest::currentTestFailed()) {
            qWarning("entries %d to %d", from, to);
            return;
        }
    }
    compareSpans(store.span(0, store.entries()), all.span(gone, gone + store.entries()));
}

void TestTrendStore::findsTimes()
{
    QFETCH(int, samples);
    QFETCH(double, gaps);
    QFETCH(qint64, longest);
    QFETCH(int, most);
    TraceStore store(most);
    const PlainStore all = fill(store, {samples, gaps, longest}, 3);
    const int gone = static_cast<int>(all.entries().size()) - store.entries();
    std::mt19937 random(4);
    std::uniform_int_distribution<int> place(-20, store.entries() + 20);
    std::uniform_int_distribution<qint64> time(store.firstMs() - 5, store.lastMs() + 5);
    for (int i = 0; i < 200; ++i) {
        const qint64 atMs = i % 2 == 0 ? time(random) : store.sample(place(random)).atMs;
        const int expected = std::max(all.indexAt(atMs) - gone, 0);
        QCOMPARE(store.indexAt(atMs), expected);
        QCOMPARE(store.indexAt(atMs, place(random)), expected);
        QCOMPARE(store.indexAt(atMs, expected + place(random) % 4), expected);
    }
    for (int i = 0; i < store.entries(); ++i) {
        const TraceStore::Sample &expected = all.entries()[static_cast<size_t>(i + gone)];
        QCOMPARE(store.sample(i).atMs, expected.atMs);
        QCOMPARE(store.sample(i).isGap, expected.isGap);
        QVERIFY(expected.isGap || store.sample(i).value == expected.value);
    }
}

void TestTrendStore::keepsNoMoreThanItMay_data()
{
    QTest::addColumn<int>("most");
    QTest::addColumn<int>("kept");
    QTest::newRow("less than there may be") << -7 << 256;
    QTest::newRow("a thousand") << 1000 << 1000;
    QTest::newRow("of whole chunks") << 65536 << 65536;
}

void TestTrendStore::keepsNoMoreThanItMay()
{
    QFETCH(int, most);
    QFETCH(int, kept);
    TraceStore store(most);
    qint64 greatestBytes = 0;
    for (int i = 0; i < 3 * kept + 100; ++i) {
        store.append(i, i);
        QVERIFY(store.size() <= kept);
        QVERIFY(store.size() >= std::min(i + 1, kept - kept / 16));
        QCOMPARE(store.lastMs(), qint64(i));
        QCOMPARE(store.firstMs(), qint64(i + 1 - store.size()));
        greatestBytes = i == kept ? store.bytes() : greatestBytes;
    }
    QVERIFY(store.bytes() < greatestBytes * 5 / 4);
    QCOMPARE(store.span(0, store.entries()).least, static_cast<double>(store.firstMs()));
}

void TestTrendStore::bearsAllTimesThereAre()
{
    TraceStore store;
    store.append(kFirstTime, 1);
    store.append(-1, 2);
    store.append(0, 3);
    store.append(kLastTime - 1, 4);
    store.append(kLastTime, 5);
    store.append(kFirstTime, 6);
    const QVector<qint64> times{kFirstTime, -1, 0, kLastTime - 1, kLastTime, kLastTime};
    for (int i = 0; i < times.size(); ++i) {
        QCOMPARE(store.sample(i).atMs, times[i]);
    }
    QCOMPARE(store.indexAt(kFirstTime), 0);
    QCOMPARE(store.indexAt(1), 3);
    QCOMPARE(store.indexAt(kLastTime), 4);
    QCOMPARE(store.summary(kFirstTime, kLastTime).count, 6);
    QCOMPARE(store.summary(0, kLastTime - 1).count, 2);
}

void TestTrendStore::summarisesWhatIsBetween()
{
    TraceStore store(5000);
    const PlainStore all = fill(store, {20000, 0.02, 10}, 5);
    std::mt19937 random(6);
    std::uniform_int_distribution<int> place(0, store.entries() - 1);
    for (int i = 0; i < 50; ++i) {
        const int one = place(random);
        const int other = place(random);
        const qint64 fromMs = store.sample(std::min(one, other)).atMs;
        const qint64 toMs = store.sample(std::max(one, other)).atMs;
        if (store.indexAt(fromMs) == 0) {
            continue; // others of that time may have gone
        }
        const TraceStore::Span span = all.span(all.indexAt(fromMs), all.indexAt(toMs + 1));
        const TraceStore::Summary summary = store.summary(fromMs, toMs);
        QCOMPARE(summary.count, span.count);
        QCOMPARE(summary.least, span.least);
        QCOMPARE(summary.greatest, span.greatest);
        QVERIFY(std::abs(summary.mean - all.mean(fromMs, toMs)) < 1e-9);
    }
    QCOMPARE(store.summary(store.lastMs(), store.firstMs()).count, 0);
}

void TestTrendStore::summarisesEqualAndHugeValues()
{
    TraceStore equal;
    TraceStore huge;
    for (int i = 0; i < 1003; ++i) {
        equal.append(i, 21.7);
        huge.append(i, i % 2 == 0 ? 1.7e308 : 1.5e308);
    }
    QCOMPARE(equal.summary(0, 1003).mean, 21.7);
    QVERIFY(equal.summary(0, 1003).mean == 21.7); // not only nearly
    const double mean = huge.summary(1, 1000).mean;
    QVERIFY(std::abs(mean - 1.6e308) < 1e296);
}

void TestTrendStore::isSmall_data()
{
    QTest::addColumn<qint64>("longest");
    QTest::newRow("some a second") << qint64(200);
    QTest::newRow("months apart") << qint64(9000000000);
}

void TestTrendStore::isSmall()
{
    QFETCH(qint64, longest);
    TraceStore store;
    fill(store, {100000, 0, longest}, 7);
    const double each = static_cast<double>(store.bytes()) / store.size();
    QVERIFY2(each < 20, qPrintable(QString::number(each)));
    QVERIFY(each > 12); // a value, a time, and something beside
}

void TestTrendStore::isEmptyAgainWhenCleared()
{
    TraceStore store(300);
    fill(store, {2000, 0.1, 10}, 8);
    store.clear();
    QVERIFY(store.isEmpty());
    QCOMPARE(store.entries(), 0);
    const PlainStore all = fill(store, {250, 0.1, 10}, 9);
    QCOMPARE(store.size(), 250);
    compareSpans(store.span(0, store.entries()), all.span(0, store.entries()));
}

void TestTrendStore::offersWhatIsLookedAt()
{
    TraceStore store;
    TraceSeries series(store);
    QCOMPARE(series.size(), size_t(0));
    for (int i = 0; i < 100; ++i) {
        store.append(1000 + i * 10, i);
    }
    store.appendGap(2000);
    QCOMPARE(series.size(), size_t(101));
    QCOMPARE(series.sample(3), QPointF(1030, 3));
    QVERIFY(std::isnan(series.sample(100).y()));
    QVERIFY(std::isnan(series.sample(101).y()));

    series.setRectOfInterest(QRectF(1095, 0, 20, 1)); // 1100 and 1110, and one on each side
    QCOMPARE(series.size(), size_t(4));
    QCOMPARE(series.sample(0), QPointF(1090, 9));
    QCOMPARE(series.sample(3), QPointF(1120, 12));
    QVERIFY(std::isnan(series.sample(4).y()));

    series.setRectOfInterest(QRectF(-1e300, 0, 2e300, 1));
    QCOMPARE(series.size(), size_t(101));
    series.setRectOfInterest(QRectF(0, 0, -1, -1));
    QCOMPARE(series.size(), size_t(101));
}

void TestTrendStore::boundsWhatIsOffered()
{
    TraceStore store;
    TraceSeries series(store);
    QVERIFY(!series.boundingRect().isValid());
    store.append(1000, 5);
    store.append(2000, -7);
    store.append(3000, 9);
    QCOMPARE(series.boundingRect(), QRectF(1000, -7, 2000, 16));
    series.setRectOfInterest(QRectF(0, 0, 500, 1));
    QCOMPARE(series.boundingRect(), QRectF(1000, 5, 0, 0));
}

void TestTrendStore::clampsTimesOfScales()
{
    QCOMPARE(scaleMs(1700000000000.7), qint64(1700000000000));
    QCOMPARE(scaleMs(1e300), kLastTime);
    QCOMPARE(scaleMs(-1e300), kFirstTime);
    QCOMPARE(scaleMs(std::numeric_limits<double>::infinity()), kLastTime);
    QCOMPARE(scaleMs(kNoNumber), qint64(0));
}

QTEST_GUILESS_MAIN(TestTrendStore)

#include "test_trend_store.moc"
