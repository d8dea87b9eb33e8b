#include "support/full_disk.h"
#include "support/rows.h"

#include "view/trend/cursor_table.h"
#include "view/trend/output/trace_csv.h"
#include "view/trend/output/trend_record.h"
#include "view/trend/trend_state.h"

#include "host/text/csv_file.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <cmath>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
const QLatin1String kName("press.speed");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<QByteArray> rowsOf(const QString &path)
{
    QList<QByteArray> rows = contentOf(path).split('\n');
    if (!rows.isEmpty() && rows.last().isEmpty()) {
        rows.removeLast();
    }
    return rows;
}

} // namespace

/** What a trend leaves behind: files, numbers between cursors, and what a project keeps. */
class TestTrendRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writesRows();
    void keepsToItsBound();
    void goesOnWithAFile();
    void leavesOtherFilesAlone();
    void endsWhenTheDiskIsFull();
    void savesWhatIsBetween();
    void savesNothingOfNothing();
    void worksOutWhatIsBetween();
    void sumsAsCursorsMove();
    void keepsItsState();
    void takesAnyState_data();
    void takesAnyState();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    bool start(const QString &file, qint64 bound = TrendRecord::kLeastBound)
    {
        m_error.clear();
        return m_record->start(file, bound, m_error);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TrendRecord> m_record;
    QString m_error;
};

void TestTrendRecord::init()
{
    m_record = std::make_unique<TrendRecord>();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestTrendRecord::writesRows()
{
    m_record->add(kName, kNow, 1, Quality::Good); // none runs
    QVERIFY2(start(path("a.csv")), qPrintable(m_error));
    m_record->add(kName, kNow, 12.5, Quality::Good);
    m_record->add(QLatin1String("a, b"), kNow + 7, qQNaN(), Quality::LineDown);
    m_record->add(kName, kNow + 1000, -3, Quality::Waiting);
    // A second at the latest, without any more samples.
    QTRY_COMPARE_WITH_TIMEOUT(rowsOf(path("a.csv")).size(), 4, 60000);
    const auto file =
        CsvFile::read(contentOf(path("a.csv")), CsvDivider::Comma, CsvQuotes::Understood);
    const auto cell = [&file](int row, int column) { return file.fields(row).at(column).text; };
    const auto msOf = [&cell](int row) {
        return QDateTime::fromString(cell(row, 0), Qt::ISODateWithMs).toMSecsSinceEpoch();
    };
    QCOMPARE(cell(0, 0), QLatin1String("time"));
    QCOMPARE(msOf(1), kNow);
    QCOMPARE(msOf(2), kNow + 7);
    QCOMPARE(msOf(3), kNow + 1000);
    QCOMPARE(cell(1, 1), kName);
    QCOMPARE(cell(1, 2), QLatin1String("12.5"));
    QCOMPARE(cell(1, 3), qualityText(Quality::Good));
    QCOMPARE(cell(2, 1), QLatin1String("a, b"));
    QCOMPARE(cell(2, 2), QString());
    QCOMPARE(cell(2, 3), qualityText(Quality::LineDown));
}

void TestTrendRecord::keepsToItsBound()
{
    const QString file = path("b.csv");
    QCOMPARE(TrendRecord::olderPath(file), path("b.older.csv"));
    QCOMPARE(TrendRecord::olderPath(path("plain")), path("plain.older"));
    QVERIFY(start(file));
    constexpr int kRows = 20000; // some megabyte
    for (int i = 0; i < kRows; ++i) {
        m_record->add(kName, kNow + i, i, Quality::Good);
        if (i % 1000 == 0) {
            const qint64 both = QFileInfo(file).size() + QFileInfo(path("b.older.csv")).size();
            QVERIFY(both <= TrendRecord::kLeastBound);
        }
    }
    m_record->stop();
    const auto newer = rowsOf(file);
    const auto older = rowsOf(path("b.older.csv"));
    QCOMPARE(newer.first(), older.first());
    QVERIFY(newer.last().contains(QByteArray::number(kRows - 1)));
    // Without a hole between the parts, and of the bound not too little.
    const int all = int(newer.size() + older.size()) - 2;
    QVERIFY(older.at(1).contains(',' + QByteArray::number(kRows - all) + ','));
    QVERIFY(contentOf(file).size() + contentOf(path("b.older.csv")).size() >
            TrendRecord::kLeastBound / 3);
}

void TestTrendRecord::goesOnWithAFile()
{
    const QString file = path("c.csv");
    QVERIFY(start(file));
    m_record->add(kName, kNow, 1, Quality::Good);
    m_record->stop();
    QFile torn(file);
    QVERIFY(torn.open(QIODevice::Append));
    torn.write("2024-05-01T12"); // the power went
    torn.close();
    QVERIFY(start(file));
    m_record->add(kName, kNow, 2, Quality::Good);
    m_record->stop();
    const auto rows = rowsOf(file);
    QCOMPARE(rows.size(), 4);
    QVERIFY(rows.at(1).contains(",1,"));
    QVERIFY(rows.at(3).contains(",2,"));
}

void TestTrendRecord::leavesOtherFilesAlone()
{
    for (const QString &other : {path("d.csv"), path("e.older.csv")}) {
        QFile file(other);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("my thesis");
    }
    QVERIFY(!start(path("d.csv")));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(!start(path("e.csv")));
    QVERIFY(!start(path("no/such/folder.csv")));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(!m_record->isRunning());
    QCOMPARE(contentOf(path("d.csv")), QByteArray("my thesis"));
    QCOMPARE(contentOf(path("e.older.csv")), QByteArray("my thesis"));
}

void TestTrendRecord::endsWhenTheDiskIsFull()
{
    const QString file = path("f.csv");
    QSignalSpy failed(m_record.get(), &TrendRecord::failed);
    QVERIFY(start(file));
    m_record->add(kName, kNow, 1, Quality::Good);
    m_record->flush();
    const QByteArray before = contentOf(file);
    {
        const FullDisk full(static_cast<rlim_t>(before.size()) + 10);
        m_record->add(kName, kNow, 2, Quality::Good);
        m_record->flush();
    }
    QCOMPARE(failed.count(), 1);
    QVERIFY(failed.first().first().toString().contains(QLatin1String("f.csv")));
    QVERIFY(!m_record->isRunning());
    QCOMPARE(contentOf(file), before); // and no half row
    m_record->add(kName, kNow, 3, Quality::Good);
    m_record->flush();
    QCOMPARE(failed.count(), 1);
}

void TestTrendRecord::savesWhatIsBetween()
{
    TraceSet traces;
    traces.add({kName, 0, 0, Side::Left, true}, {});
    traces.add({QLatin1String("hidden"), 0, 0, Side::Left, false}, {});
    for (const int trace : {0, 1}) {
        traces.at(trace).store->append(kNow - 5000, 1);
        traces.at(trace).store->append(kNow - 3000, 2);
        traces.at(trace).store->appendGap(kNow - 1000);
        traces.at(trace).store->append(kNow, 3);
    }
    QString error;
    const auto text = traceCsv(traces, {kNow - 4000.0, kNow - 1.0}, error);
    QVERIFY2(text, qPrintable(error));
    QVERIFY(!text->contains("hidden"));
    const auto rows = text->split('\n');
    QCOMPARE(rows.size(), 5);                       // the last one is empty
    QVERIFY(rows.at(1).endsWith(",press.speed,1")); // it held as the time began
    QVERIFY(rows.at(2).endsWith(",press.speed,2"));
    QVERIFY(rows.at(3).endsWith(",press.speed,"));
    const auto first = QString::fromLatin1(rows.at(1).split(',').first());
    QCOMPARE(QDateTime::fromString(first, Qt::ISODateWithMs).toMSecsSinceEpoch(), kNow - 4000);
}

void TestTrendRecord::savesNothingOfNothing()
{
    TraceSet traces;
    QString error;
    QVERIFY(!traceCsv(traces, {0, double(kNow)}, error));
    QVERIFY(!error.isEmpty());
    traces.add({kName, 0, 0, Side::Left, true}, {});
    for (int i = 0; i < 1000; ++i) {
        traces.at(0).store->append(kNow + i, i);
    }
    error.clear();
    QVERIFY(!traceCsv(traces, {0, kNow - 1.0}, error));
    QVERIFY(!error.isEmpty());
}

void TestTrendRecord::worksOutWhatIsBetween()
{
    TraceSet traces;
    Cursors cursors;
    CursorTable table(traces, cursors);
    QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto text = [&table](int column) {
        return table.index(0, column).data().toString().toLatin1();
    };
    traces.add({kName, 0, 0, Side::Left, true}, {QLatin1String("bar"), false});
    TraceStore &store = *traces.at(0).store;
    store.append(kNow, 10);
    store.append(kNow + 1000, 40);
    store.appendGap(kNow + 2000);
    store.append(kNow + 8000, 20);
    table.refresh(kNow + 10000);
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(text(CursorTable::Name), QByteArray("press.speed (bar)"));
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    cursors.place(Cursor::B, kNow + 500.0);
    cursors.place(Cursor::A, kNow + 9000.0); // whichever is the later one
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("20"));
    QCOMPARE(text(CursorTable::AtB), QByteArray("10"));
    QCOMPARE(text(CursorTable::Difference), QByteArray("-10"));
    QCOMPARE(text(CursorTable::Least), QByteArray("10"));
    QCOMPARE(text(CursorTable::Greatest), QByteArray("40"));
    // 10 for half a second, 40 for a second, nothing for six, 20 for one.
    QCOMPARE(text(CursorTable::Mean), QByteArray("26"));
    cursors.place(Cursor::A, kNow + 3000.0);
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    QCOMPARE(text(CursorTable::Difference), QByteArray("-"));
    QCOMPARE(text(CursorTable::Mean), QByteArray("30"));
    cursors.place(Cursor::A, kNow + 1e6); // nothing is known of the future
    table.refresh(kNow + 10000);
    QCOMPARE(text(CursorTable::AtA), QByteArray("-"));
    QCOMPARE(text(CursorTable::Mean), QByteArray("24.28571"));
    traces.removeAt(0);
    table.refresh(kNow + 10000);
    QCOMPARE(table.rowCount(), 0);
}

void TestTrendRecord::sumsAsCursorsMove()
{
    TraceSet traces;
    Cursors cursors;
    CursorTable table(traces, cursors);
    traces.add({kName, 0, 0, Side::Left, true}, {});
    TraceStore &store = *traces.at(0).store;
    quint32 seed = 7;
    const auto random = [&seed](quint32 below) {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 8U) % below;
    };
    std::vector<double> perMs; // of each millisecond what holds in it; NaN: nothing is known
    constexpr int kMs = 20000;
    double holds = qQNaN();
    for (int ms = 0; ms < kMs; ++ms) {
        if (random(20) == 0) {
            holds = random(5) == 0 ? qQNaN() : double(random(1000));
            std::isnan(holds) ? store.appendGap(kNow + ms) : store.append(kNow + ms, holds);
        }
        perMs.push_back(holds);
    }
    for (int i = 0; i < 300; ++i) {
        // Small steps, which are summed up, and now and then a great one.
        const int from = i % 30 == 0 ? int(random(9000)) : 4000 + int(random(200));
        const int to = i % 40 == 0 ? 10000 + int(random(9000)) : 15000 + int(random(200));
        cursors.place(Cursor::A, double(kNow + from));
        cursors.place(Cursor::B, double(kNow + to));
        table.refresh(kNow + kMs);
        double sum = 0;
        int known = 0;
        for (int ms = from; ms < to; ++ms) {
            const double value = perMs[size_t(ms)];
            if (!std::isnan(value)) {
                sum += value;
                ++known;
            }
        }
        const double mean = table.index(0, CursorTable::Mean).data().toString().toDouble();
        QVERIFY(qAbs(mean - sum / known) < 1e-3);
    }
}

void TestTrendRecord::keepsItsState()
{
    TrendState state;
    state.traces = {{kName, 3, 1, Side::Right, false},
                    {QLatin1String("b"), 0, 0, Side::Left, true}};
    state.markers = {{kNow, QLatin1String("here")}};
    state.sight.follow = Follow::No;
    state.sight.time = {kNow - 12000.0, kNow};
    state.sight.panes.resize(2);
    state.sight.panes[1].right = {Scaling::Fixed, {-1.5, 7}};
    // As a file has it.
    const auto object = QJsonDocument::fromJson(QJsonDocument(trendJson(state)).toJson()).object();
    const TrendState back = trendState(object);
    QCOMPARE(int(back.traces.size()), 2);
    QCOMPARE(back.traces[0].name, kName);
    QCOMPARE(back.traces[0].colour, 3);
    QCOMPARE(back.traces[0].pane, 1);
    QVERIFY(back.traces[0].side == Side::Right);
    QVERIFY(!back.traces[0].isVisible);
    QVERIFY(back.traces[1].side == Side::Left && back.traces[1].isVisible);
    QCOMPARE(int(back.markers.size()), 1);
    QCOMPARE(back.markers[0].atMs, kNow);
    QCOMPARE(back.markers[0].note, QLatin1String("here"));
    QVERIFY(back.sight.follow == Follow::No);
    QCOMPARE(back.sight.time.length(), 12000.0);
    QCOMPARE(int(back.sight.panes.size()), 2);
    QVERIFY(back.sight.panes[1].left.scaling == Scaling::Auto);
    QVERIFY(back.sight.panes[1].right.scaling == Scaling::Fixed);
    QVERIFY(back.sight.panes[1].right.range == (Range{-1.5, 7}));
}

const Case<const char *, int> kStates[] = {
    {"nothing", "{}", 0},
    {"other kinds", R"({"traces": 5, "notes": {}, "panes": "x", "following": [], "seconds": ""})",
     0},
    {"no traces",
     R"({"traces": [1, null, {}, {"name": ""}, {"name": 7}, {"name": "a", "pane": -9, "colour": -1}]})",
     1},
    {"no numbers", R"({"panes": [{"left": {"from": 5, "to": 1}, "right": {"from": "a"}}, 3, []],
                      "notes": [{"atMs": -1}, {"atMs": 1e300}, 3], "seconds": -7})",
     0},
};

void TestTrendRecord::takesAnyState_data()
{
    addRows(kStates);
}

void TestTrendRecord::takesAnyState()
{
    const auto &row = currentRow(kStates);
    const auto document = QJsonDocument::fromJson(row.given);
    QVERIFY(document.isObject());
    const TrendState state = trendState(document.object());
    QCOMPARE(int(state.traces.size()), row.expected);
    QCOMPARE(int(state.markers.size()), 0);
    for (const auto &scales : state.sight.panes) {
        QVERIFY(scales.left.scaling == Scaling::Auto);
        QVERIFY(scales.right.scaling == Scaling::Auto);
    }
    TrendView view(kNow);
    view.restore(state.sight);
    QVERIFY(view.panes() >= 1);
    QVERIFY(view.sight().time.length() >= 10);
}

QTEST_MAIN(TestTrendRecord)
#include "test_trend_record.moc"
