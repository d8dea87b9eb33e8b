#include "shown_trend.h"

using namespace cnet;
using namespace cnet::view;

namespace {

/** A clock that goes as the test says. */
class SetClock : public SystemClock
{
public:
    qint64 wallMs() const override { return ms; }
    qint64 ms = 1700000000000;
};

} // namespace

/** What becomes of the tags of a simulated PLC in the traces of the page. */
class TestTrendTraces : public QObject, private ShownTrend
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void collectsWhatChanges();
    void badValuesAreGaps();
    void aSessionThatEndsIsAGap();
    void keepsTracesWithoutTheirTag();
    void takesBitsAndArrays();
    void tellsWhatCannotBeDrawn();
    void noMoreThanFit();
    void unitsShareScales();
    void pauseLosesNothing();
    void theClockNeverGoesBack();
};

void TestTrendTraces::collectsWhatChanges()
{
    m_page->addTraces(names("speed level"));
    QVERIFY(store("speed").isEmpty());
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    open();
    setWord(1000, 125);
    setWord(1001, 0xffff);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 12.5, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), -1.0, kPatienceMs);
    for (const quint16 value : {quint16(200), quint16(300), quint16(400)}) {
        setWord(1000, value);
        QTRY_COMPARE_WITH_TIMEOUT(last("speed"), value * 0.1, kPatienceMs);
    }
    QVERIFY(store("speed").firstMs() >= before);
    QVERIFY(store("speed").lastMs() <= QDateTime::currentMSecsSinceEpoch());
    // Only what changes is a sample, and the first behind a gap: a slow machine may make some.
    const auto gaps = [this](const char *name) {
        return store(name).entries() - store(name).size();
    };
    QVERIFY(store("speed").size() >= 4 && store("speed").size() <= 5 + gaps("speed"));
    QVERIFY(store("level").size() <= 2 + gaps("level"));
    const int size = store("speed").size();
    m_page->addTraces(names("lamp")); // all are looked at again
    QCOMPARE(store("speed").size(), size);
}

void TestTrendTraces::badValuesAreGaps()
{
    m_page->addTraces(names("speed level"));
    open();
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    setWord(1000, 5000); // above its greatest
    QTRY_VERIFY_WITH_TIMEOUT(qIsNaN(last("speed")) && !qIsNaN(last("level")), kPatienceMs);
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
}

void TestTrendTraces::aSessionThatEndsIsAGap()
{
    open();
    setWord(1000, 100);
    QTRY_VERIFY_WITH_TIMEOUT(tags().quality(0) == Quality::Good, kPatienceMs);
    m_page->addTraces(names("speed"));
    QVERIFY(!store("speed").isEmpty()); // what is known shows at once
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    const int before = store("speed").size();
    m_plant->line().close();
    QVERIFY(qIsNaN(last("speed")));
    QCOMPARE(store("speed").size(), before);
    open(); // another memory
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 0.0, kPatienceMs);
}

void TestTrendTraces::keepsTracesWithoutTheirTag()
{
    m_page->addTraces(names("speed level"));
    open();
    setWord(1000, 100);
    setWord(1001, 7);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 7.0, kPatienceMs);
    const TagSet all = tags().tags();
    tags().setTags(TagSet({all.all().at(1)})); // another index, too
    QVERIFY(qIsNaN(last("speed")));
    QVERIFY(store("speed").size() > 0);
    setWord(1001, 8);
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 8.0, kPatienceMs);
    tags().setTags(all);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    tags().setTags(TagSet());
    QVERIFY(qIsNaN(last("level")));
}

void TestTrendTraces::takesBitsAndArrays()
{
    m_page->addTraces(names("lamp alarm zones"));
    const TraceSet &traces = m_page->traces();
    QCOMPARE(traces.count(), 5);
    QVERIFY(traces.at(0).kind.isBit);
    QVERIFY(traces.at(1).kind.isBit);
    QVERIFY(!traces.at(2).kind.isBit);
    QCOMPARE(traces.at(4).choice.name, QLatin1String("zones[2]"));
    m_page->addTraces(names("zones[1] lamp")); // they are there
    QCOMPARE(traces.count(), 5);
    open();
    setWord(1020, 8);
    setWord(1012, 77);
    m_plant->plc().station.memory().setWord('M', 200, 1);
    QTRY_COMPARE_WITH_TIMEOUT(last("alarm"), 1.0, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("lamp"), 1.0, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(last("zones[2]"), 77.0, kPatienceMs);
    QCOMPARE(last("zones[1]"), 0.0);
    QVERIFY(m_page->plot().lanes()->isVisible());
    QCOMPARE(int(m_page->plot().lanes()->traces().size()), 2);
    QVERIFY(m_troubled->isEmpty());
}

void TestTrendTraces::tellsWhatCannotBeDrawn()
{
    m_page->addTraces(names("nobody level"));
    QVERIFY(trouble().contains(QLatin1String("nobody")));
    QVERIFY(!m_troubled->last().at(1).toString().isEmpty());
    QCOMPARE(m_page->traces().count(), 1); // the other one is there
    m_page->addTraces(names("job"));
    QVERIFY(trouble().contains(QLatin1String("job")));
    for (const char *wrong : {"zones[3]", "zones[-1]", "zones[x]", "zones[", "[0]", ""}) {
        const auto before = m_troubled->count();
        m_page->addTraces({QString::fromLatin1(wrong)});
        QCOMPARE(m_troubled->count(), before + 1);
    }
    QCOMPARE(m_page->traces().count(), 1);
}

void TestTrendTraces::noMoreThanFit()
{
    for (int i = 0; i < TraceSet::kMostTraces - 1; ++i) {
        m_page->traces().add({QString::number(i), 0, 0, Side::Left, true}, {});
    }
    m_page->addTraces(names("speed"));
    QVERIFY(m_troubled->isEmpty());
    m_page->addTraces(names("speed level"));
    QCOMPARE(m_troubled->count(), 1);
    QVERIFY(trouble().contains(QString::number(TraceSet::kMostTraces)));
    QCOMPARE(m_page->traces().count(), TraceSet::kMostTraces);
}

void TestTrendTraces::unitsShareScales()
{
    m_page->addTraces(names("speed level zones"));
    QVERIFY(m_page->traces().at(0).choice.side == Side::Left);
    QVERIFY(m_page->traces().at(1).choice.side == Side::Right);
    QVERIFY(m_page->traces().at(0).choice.colour != m_page->traces().at(1).choice.colour);
    Pane *pane = m_page->plot().pane(0);
    QVERIFY(pane->axisTitle(QwtPlot::yLeft).text().contains(QLatin1String("1/min")));
    QCOMPARE(pane->axisTitle(QwtPlot::yRight).text(), QLatin1String("mm"));
}

void TestTrendTraces::pauseLosesNothing()
{
    m_page->addTraces(names("speed"));
    open();
    setWord(1000, 100);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    m_page->setPaused(true);
    m_page->refresh();
    const Range before = m_page->view().sight().time;
    setWord(1000, 200);
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 20.0, kPatienceMs);
    m_page->refresh();
    QVERIFY(m_page->view().sight().time == before);
    QVERIFY(m_page->view().isFollowing());
    m_page->setPaused(false);
    // It may have to end the picture that was begun.
    QTRY_VERIFY_WITH_TIMEOUT((m_page->refresh(), m_page->view().sight().time.to > before.to),
                             kPatienceMs);
}

void TestTrendTraces::theClockNeverGoesBack()
{
    SetClock clock;
    TraceSet traces;
    Collector collector(tags(), traces, nullptr, clock);
    const qint64 start = collector.nowMs();
    QCOMPARE(start, clock.ms);
    clock.ms -= 3600000; // summer time, by hand
    QCOMPARE(collector.nowMs(), start);
    clock.ms += 500;
    QCOMPARE(collector.nowMs(), start + 500);
}

QTEST_MAIN(TestTrendTraces)
#include "test_trend_traces.moc"
