#include "view/frames/trace/frame_filter.h"
#include "view/frames/trace/frame_words.h"

#include "recorded_trace.h"

#include <support/rows.h>

using namespace cnet;
using namespace cnet::view;

/** A trace as a table: what its rows say, and which of them are seen. */
class TestFrameModel : public QObject, private RecordedTrace
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void explainsEveryRow();
    void remembersWhatItExplained();
    void copiesARow();
    void marksAnExchange();
    void filters_data();
    void filters();
    void filtersWhatEndsLater();
    void filtersManyInTurns();
    void forgetsASearch();

private:
    /** A full table; of what goes at once, the first exchange and the last are of station 2. */
    void fill()
    {
        m_tester.reset(); // all cells at each change: so many take it minutes
        const int batch = m_model->batch();
        for (int i = 0; i < FrameModel::kMostExchanges; ++i) {
            const auto address = QByteArray::number(1000 + i % 9000);
            const bool isEnd = i % batch == 0 || i % batch == batch - 1;
            const char *const station = isEnd ? "02" : "01";
            exchange(readRequest(address.constData(), station), readAnswer("00010002", station));
        }
        m_recorder->flush();
    }
};

namespace {

const Given<QByteArray> kBytes[] = {
    {"nothing", ""},
    {"a head", "\x06"},
    {"noise", "\xff\x01\x02 nothing"},
    {"long", QByteArray(100000, 'x')},
    {"cut", "\x06"
            "01rSB0104"},
};

} // namespace

// Whatever a line delivers, and as whatever it is looked at.
void TestFrameModel::explainsEveryRow()
{
    for (const auto &bytes : kBytes) {
        exchange(bytes.given, bytes.given, Outcome::Bad);
        exchange(readRequest(), bytes.given, Outcome::Bad);
        m_recorder->noteLate(1, bytes.given, 5);
    }
    m_recorder->flush();
    for (int i = 0; i < m_model->rowCount(); ++i) {
        QCOMPARE(text(i, FrameModel::Meaning).isEmpty(), row(i).bytes.isEmpty());
        QVERIFY(text(i, FrameModel::Bytes).size() < 300);
        for (int role = Qt::DisplayRole; role <= Qt::ToolTipRole; ++role) {
            m_model->index(i, FrameModel::Result).data(role);
        }
    }
}

// Rows that are taken in are not looked at; a change of one is seen.
void TestFrameModel::remembersWhatItExplained()
{
    exchange(readRequest(), readAnswer());
    m_recorder->flush();
    const QString before = text(1, FrameModel::Meaning);
    m_model->edit(1)->bytes = readAnswer("00050006");
    QCOMPARE(text(1, FrameModel::Meaning), before);
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->touch({1, 77});
    QCOMPARE(changed.count(), 1);
    QVERIFY(text(1, FrameModel::Meaning).contains(QLatin1String("= 5")));
}

void TestFrameModel::copiesARow()
{
    const QByteArray request = completedRequest("01wSB08%DW0010020" + QByteArray(128, '7'));
    exchange(request, {}, Outcome::TimedOut);
    m_recorder->flush();
    const QStringList columns = m_model->line(0).split(QLatin1Char('\t'));
    QCOMPARE(columns.size(), static_cast<int>(FrameModel::ColumnCount));
    QCOMPARE(columns.at(FrameModel::Bytes).size(), request.size() * 3 - 1); // all of them
    QVERIFY(text(0, FrameModel::Bytes).endsWith(QLatin1String("...")));
    QCOMPARE(m_model->line(1).split(QLatin1Char('\t')).at(FrameModel::Result),
             QLatin1String("no answer"));
}

void TestFrameModel::marksAnExchange()
{
    exchange(readRequest(), {}, Outcome::TimedOut);
    exchange(readRequest("0020"), readAnswer());
    m_recorder->noteLate(1, readAnswer(), 300);
    m_recorder->flush();
    const auto isBold = [this](int row) {
        return m_model->index(row, 0).data(Qt::FontRole).value<QFont>().bold();
    };
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_model->mark(0);
    QCOMPARE(changed.count(), 3);
    QCOMPARE(QVector<bool>({isBold(0), isBold(1), isBold(2), isBold(3), isBold(4)}),
             QVector<bool>({true, true, false, false, true}));
    m_model->mark(2);
    QVERIFY(!isBold(0) && isBold(3));
    m_model->mark(-1);
    QVERIFY(!isBold(3));
}

namespace {

QVector<int> rowsOf(const FrameFilter &filter)
{
    QVector<int> rows;
    for (int i = 0; i < filter.rowCount(); ++i) {
        rows << filter.mapToSource(filter.index(i, 0)).row();
    }
    return rows;
}

struct Filtered
{
    const char *what;
    int station;
    int kind;
    bool faults;
    const char *text;
    QVector<int> rows;
};

// Rows: 0, 1 station 1 reads D10; 2, 3 station 1 does not answer; 4, 5 station 2 reads; 6, 7 a
// write; 8 the late answer to row 2.
const Filtered kFiltered[] = {
    {"all", -1, -1, false, "", {0, 1, 2, 3, 4, 5, 6, 7, 8}},
    {"a station", 2, -1, false, "", {4, 5}},
    {"writes", -1, 1, false, "", {6, 7}},
    {"reads of a station", 1, 0, false, "", {0, 1, 2, 3, 8}},
    {"faults with their requests", -1, -1, true, "", {2, 3, 8}},
    {"an address, with the answer", -1, -1, false, "d_w:30", {4, 5}},
    {"what a result says", -1, -1, false, "No Answer", {2, 3}},
    {"characters", -1, -1, false, "wSB", {6, 7}},
    {"bytes", -1, -1, false, "77 53 42", {6, 7}},
    {"nothing", -1, -1, false, "\xe4 nowhere", {}},
    {"no such station", 31, -1, false, "", {}},
    {"all together", 1, 0, true, "d_w:20", {2, 3, 8}},
};

} // namespace

void TestFrameModel::filters_data()
{
    addRows(kFiltered);
}

void TestFrameModel::filters()
{
    const auto &its = currentRow(kFiltered);
    exchange(readRequest(), readAnswer());
    exchange(readRequest("0020"), {}, Outcome::TimedOut);
    exchange(readRequest("0030", "02"), readAnswer("00010002", "02"));
    exchange(completedRequest("01wSB07%DW0040010001"), answered("01wSB"));
    m_recorder->noteLate(1, readAnswer(), 300);
    FrameFilter filter;
    const QAbstractItemModelTester tester(&filter,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    filter.setFrames(m_model.get());
    FrameQuery query;
    query.station = its.station < 0 ? std::nullopt : std::optional<int>(its.station);
    if (its.kind >= 0) {
        query.kind = static_cast<FrameKind>(its.kind);
    }
    query.faultsOnly = its.faults;
    query.text = QString::fromLatin1(its.text);
    filter.setQuery(query);
    m_recorder->flush();
    QCOMPARE(rowsOf(filter), its.rows);
}

// A request is seen before it is known that nothing comes.
void TestFrameModel::filtersWhatEndsLater()
{
    FrameFilter filter;
    filter.setFrames(m_model.get());
    FrameQuery query;
    query.faultsOnly = true;
    filter.setQuery(query);
    ask(readRequest());
    m_recorder->flush();
    QCOMPARE(filter.rowCount(), 0);
    m_recorder->noteEnd(report(readRequest(), {}, Outcome::TimedOut));
    m_recorder->flush();
    QCOMPARE(filter.rowCount(), 2);
}

namespace {

constexpr int kPatienceMs = 60000;

FrameQuery textQuery(const char *text)
{
    FrameQuery query;
    query.text = QString::fromLatin1(text);
    return query;
}

/** Where rows are once the first ones have gone. */
QVector<int> stayed(const QVector<int> &rows, int gone)
{
    QVector<int> left;
    for (const int row : rows) {
        if (row >= gone) {
            left << row - gone;
        }
    }
    return left;
}

} // namespace

// Meanwhile the oldest go, others come, and one becomes another.
void TestFrameModel::filtersManyInTurns()
{
    fill();
    FrameFilter filter;
    filter.setFrames(m_model.get());
    FrameQuery stationTwo;
    stationTwo.station = 2;
    filter.setQuery(stationTwo);
    QTRY_VERIFY_WITH_TIMEOUT(!filter.isSearching(), kPatienceMs);
    // From here on few rows are shown.
    auto tester = std::make_unique<QAbstractItemModelTester>(
        &filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QVector<int> before = rowsOf(filter);
    QCOMPARE(before.size(), 4 * FrameModel::kMostExchanges / m_model->batch());
    filter.setQuery(textQuery("D_W:1007"));
    QVERIFY(filter.isSearching());
    QCOMPARE(rowsOf(filter), before);
    const qint64 last = m_model->log().end() - 2;
    const qint64 first = m_model->log().first();
    for (const qint64 number : {first, first + 2 * m_model->batch() + 4, last}) {
        m_model->edit(number)->note = QLatin1String("moved from D_W:1007");
        m_model->touch({number, number + 1});
    }
    exchange(readRequest("1007"), readAnswer());
    exchange(readRequest("1008"), readAnswer());
    m_recorder->flush();
    const int gone = 2 * m_model->batch();
    QCOMPARE(m_model->log().first(), first + gone);
    QVERIFY(filter.isSearching());
    QCOMPARE(rowsOf(filter), stayed(before, gone));
    QTRY_VERIFY_WITH_TIMEOUT(!filter.isSearching(), kPatienceMs);
    QVector<int> expected;
    for (int i = 0; i < m_model->rowCount(); ++i) {
        const qint64 request = row(i).request;
        const FrameRow &asked = *m_model->log().find(request);
        if (asked.bytes.contains("1007") || !asked.note.isEmpty()) {
            expected << i;
        }
    }
    QVERIFY(expected.size() >= 8);
    QCOMPARE(rowsOf(filter), expected);
    tester.reset();
    filter.setQuery(FrameQuery());
    QTRY_COMPARE_WITH_TIMEOUT(filter.rowCount(), m_model->rowCount(), kPatienceMs);
}

// Another table, or none, takes the place of the one that is looked through.
void TestFrameModel::forgetsASearch()
{
    fill();
    FrameModel other;
    FrameFilter filter;
    filter.setFrames(m_model.get());
    filter.setQuery(textQuery("D_W:1007"));
    QVERIFY(filter.isSearching());
    m_recorder->clear();
    QCOMPARE(filter.rowCount(), 0);
    exchange(readRequest("1007"), readAnswer());
    exchange(readRequest("1008"), readAnswer());
    m_recorder->flush();
    QCOMPARE(rowsOf(filter), QVector<int>({0, 1}));
    fill();
    filter.setQuery(textQuery("D_W:1008"));
    QVERIFY(filter.isSearching());
    filter.setFrames(&other);
    QCOMPARE(filter.rowCount(), 0);
    QVERIFY(!filter.isSearching());
    filter.setQuery(textQuery("D_W:1007"));
    filter.setFrames(nullptr);
    QCOMPARE(filter.rowCount(), 0);
    QVERIFY(!filter.isSearching());
}

QTEST_MAIN(TestFrameModel)
#include "test_frame_model.moc"
