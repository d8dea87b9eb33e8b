#include <host/statistics/response_histogram.h>

#include "support/rows.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace cnet;

namespace {

// Times in microseconds, as one kind of line has them.
struct Kind
{
    const char *what;
    std::function<double(std::mt19937 &)> next;
};

const Kind kKinds[] = {
    {"quick", [](std::mt19937 &random) { return std::uniform_real_distribution<>(0, 40)(random); }},
    {"even", [](std::mt19937 &random) { return std::uniform_real_distribution<>(0, 1e6)(random); }},
    {"long tail", [](std::mt19937 &random) { return std::lognormal_distribution<>(9, 2)(random); }},
    {"two hills",
     [](std::mt19937 &random) {
         return std::normal_distribution<>(random() % 10 == 0 ? 900000 : 12000, 500)(random);
     }},
    {"all alike", [](std::mt19937 &) { return 12345.0; }},
};

} // namespace

class TestResponseHistogram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty();
    void agreesWithSortedTimes_data() { addRows(kKinds); }
    void agreesWithSortedTimes();
    void holdsEachTimeOnce_data() { addRows(kKinds); }
    void holdsEachTimeOnce();
    void addsUp();
    void longestTimesShareABucket();
};

void TestResponseHistogram::empty()
{
    const ResponseHistogram none;
    QCOMPARE(none.count(), Q_INT64_C(0));
    QCOMPARE(none.minMs() + none.meanMs() + none.maxMs() + none.percentileMs(50), 0.0);
    QVERIFY(none.buckets().isEmpty());
}

// The bound of the error is what the header promises.
void TestResponseHistogram::agreesWithSortedTimes()
{
    const Kind &kind = currentRow(kKinds);
    std::mt19937 random(1);
    for (const int count : {1, 2, 3, 99, 100, 101, 5000}) {
        ResponseHistogram histogram;
        std::vector<double> times;
        double sum = 0;
        for (int i = 0; i < count; ++i) {
            const double us = std::round(std::max(0.0, kind.next(random)));
            times.push_back(us / 1000);
            sum += us / 1000;
            histogram.note(us / 1000);
        }
        std::sort(times.begin(), times.end());
        QCOMPARE(histogram.count(), static_cast<qint64>(count));
        QCOMPARE(histogram.minMs(), times.front());
        QCOMPARE(histogram.maxMs(), times.back());
        QVERIFY(std::abs(histogram.meanMs() - sum / count) < 1e-6 * (1 + sum));
        for (const double percent : {0.1, 1.0, 50.0, 95.0, 99.0, 99.9, 100.0}) {
            const auto rank = static_cast<size_t>(std::ceil(count * percent / 100));
            const double right = times.at(std::max<size_t>(1, rank) - 1);
            const double got = histogram.percentileMs(percent);
            QVERIFY2(
                std::abs(got - right) <= right / 32 + 1e-9,
                qPrintable(QString::number(got) + QLatin1String(" for ") + QString::number(right)));
            QVERIFY(got >= times.front() && got <= times.back());
        }
    }
}

void TestResponseHistogram::holdsEachTimeOnce()
{
    const Kind &kind = currentRow(kKinds);
    std::mt19937 random(2);
    ResponseHistogram histogram;
    std::vector<double> times;
    for (int i = 0; i < 1000; ++i) {
        times.push_back(std::round(std::max(0.0, kind.next(random))) / 1000);
        histogram.note(times.back());
    }
    double end = 0;
    for (const ResponseHistogram::Bucket &bucket : histogram.buckets()) {
        QVERIFY(bucket.fromMs >= end && bucket.toMs > bucket.fromMs);
        end = bucket.toMs;
        QCOMPARE(bucket.count,
                 static_cast<qint64>(std::count_if(times.begin(), times.end(), [&](double ms) {
                     return ms > bucket.fromMs - 1e-7 && ms < bucket.toMs - 1e-7;
                 })));
    }
    QVERIFY(end > times.back());
}

void TestResponseHistogram::addsUp()
{
    ResponseHistogram left;
    ResponseHistogram right;
    ResponseHistogram both;
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        const double ms = std::lognormal_distribution<>(2, 1)(random);
        (i % 3 == 0 ? left : right).note(ms);
        both.note(ms);
    }
    left.add(ResponseHistogram());
    ResponseHistogram sum;
    sum.add(left);
    sum.add(right);
    QCOMPARE(sum.count(), both.count());
    QCOMPARE(sum.minMs(), both.minMs());
    QCOMPARE(sum.maxMs(), both.maxMs());
    QCOMPARE(sum.meanMs(), both.meanMs());
    QCOMPARE(sum.percentileMs(95), both.percentileMs(95));
}

void TestResponseHistogram::longestTimesShareABucket()
{
    ResponseHistogram histogram;
    histogram.note(-5);
    histogram.note(67108.863); // the longest of those that are told apart
    histogram.note(67108.864);
    histogram.note(1e9);
    const QVector<ResponseHistogram::Bucket> buckets = histogram.buckets();
    QCOMPARE(static_cast<int>(buckets.size()), 3);
    QCOMPARE(histogram.minMs(), 0.0);
    QCOMPARE(buckets.last().fromMs, 67108.864);
    QCOMPARE(buckets.last().count, Q_INT64_C(2));
    QVERIFY(buckets.last().toMs > 1e9);
    QCOMPARE(histogram.percentileMs(100), 1e9);
}

QTEST_APPLESS_MAIN(TestResponseHistogram)
#include "test_response_histogram.moc"
