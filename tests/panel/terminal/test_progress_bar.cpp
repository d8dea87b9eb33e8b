#include "panel/terminal/progress_bar.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestProgressBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shows_data();
    void shows();
    void neverLongerThanTheTerminal();
    void clearsWhatItShowed();
    void withoutATerminal();
};

void TestProgressBar::shows_data()
{
    QTest::addColumn<int>("done");
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing yet") << 0 << 100 << 33 << "[..............]   0 of 100 words";
    QTest::newRow("half") << 50 << 100 << 31 << "[######......]  50 of 100 words";
    QTest::newRow("all") << 100 << 100 << 29 << "[##########] 100 of 100 words";
    QTest::newRow("more than all") << 101 << 100 << 29 << "[##########] 100 of 100 words";
    QTest::newRow("less than nothing") << -1 << 100 << 29 << "[..........]   0 of 100 words";
    QTest::newRow("of nothing") << 0 << 0 << 25 << "[..........] 0 of 1 words";
    QTest::newRow("no room for a bar") << 50 << 100 << 16 << "50 of 100 words";
    QTest::newRow("no room at all") << 50 << 100 << 0 << "";
    QTest::newRow("a wide terminal")
        << 0 << 1 << 500
        << QLatin1Char('[') + QString(50, QLatin1Char('.')) + QLatin1String("] 0 of 1 words");
}

void TestProgressBar::shows()
{
    QFETCH(int, done);
    QFETCH(int, total);
    QFETCH(int, columns);
    QTEST(progressText(done, total, columns), "text");
    QCOMPARE(progressText(done, total, columns, "frames").count(QLatin1String("frames")),
             progressText(done, total, columns).count(QLatin1String("words")));
}

void TestProgressBar::neverLongerThanTheTerminal()
{
    for (int columns = -1; columns < 100; ++columns) {
        QVERIFY(progressText(5, 1000, columns).size() <= std::max(columns, 0));
    }
}

void TestProgressBar::clearsWhatItShowed()
{
    QByteArray written;
    {
        ProgressBar bar([&](const QByteArray &bytes) { written += bytes; }, 30);
        bar.clear();
        QVERIFY(written.isEmpty());
        bar.show(50, 100);
        QCOMPARE(written, QByteArray("\r\x1b[K[#####.....]  50 of 100 words"));
        written.clear();
        bar.clear();
        QCOMPARE(written, QByteArray("\r\x1b[K"));
        bar.show(50, 100);
        written.clear();
    }
    QCOMPARE(written, QByteArray("\r\x1b[K"));
}

void TestProgressBar::withoutATerminal()
{
    ProgressBar bar({}, 80);
    bar.show(1, 2); // nowhere
    bar.clear();
    qputenv("TERM", "dumb");
    QVERIFY(!standardErrorTerminal());
}

QTEST_APPLESS_MAIN(TestProgressBar)
#include "test_progress_bar.moc"
