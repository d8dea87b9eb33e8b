#include "simulated_line.h"
#include "support/rows.h"
#include "view/simulator/action_table.h"
#include "view/simulator/fault_words.h"

#include <QAbstractItemModelTester>

using namespace cnet;
using namespace cnet::view;

namespace {

/** What a fault does to a line that is watched. */
struct LessonRow
{
    const char *what;
    const char *fault;
    Quality quality;                          ///< that the values come to have
    qint64 (*count)(const StationCounters &); ///< what counts up; null: nothing that is wrong
};

qint64 silences(const StationCounters &counters)
{
    return counters.timeouts;
}
qint64 lates(const StationCounters &counters)
{
    return counters.late;
}
qint64 wrongChecks(const StationCounters &counters)
{
    return counters.badChecks;
}
qint64 otherBad(const StationCounters &counters)
{
    return counters.bad - counters.badChecks;
}
qint64 refusals(const StationCounters &counters)
{
    return counters.refusals;
}

const LessonRow kLessons[] = {
    {"silence", "silence", Quality::NoAnswer, silences},
    {"delay", "delay=3000", Quality::NoAnswer, lates},
    {"short delay", "delay=20", Quality::Good, nullptr},
    {"noise before", "noise-before", Quality::Good, nullptr},
    {"noise after", "noise-after", Quality::Good, nullptr},
    {"split", "split", Quality::Good, nullptr},
    {"wrong check", "wrong-check", Quality::NoAnswer, wrongChecks},
    {"wrong station", "wrong-station", Quality::NoAnswer, otherBad},
    {"refuse", "refuse", Quality::Refused, refusals},
    {"truncate", "truncate=8", Quality::NoAnswer, otherBad},
    {"oversize", "oversize", Quality::NoAnswer, otherBad},
    {"echo", "echo", Quality::Good, nullptr},
    {"repeat", "repeat", Quality::Good, nullptr},
};

} // namespace

/** The simulated PLC from its other side. */
class TestSimulator : public QObject, private SimulatedLine
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void aValueIsRead();
    void aMotionIsRead();
    void faultsTeach_data() { addRows(kLessons); }
    void faultsTeach();
    void eachKindHasWords();
    void actionsAreListed();
    void oneOfTwoEqualFaultsGoes();
    void faultsAreOverAfterTheirTimes();
    void mistakesAreTold();
    void isKeptForTheNextSession();
};

void TestSimulator::aValueIsRead()
{
    open();
    watchUntilGood("D_W:500");
    QCOMPARE(read(), 0);
    QCOMPARE(m_simulator->set(kStation, QLatin1String("D_W:500=1234")), QString());
    QTRY_COMPARE_WITH_TIMEOUT(read(), 1234, kLongMs);
    QCOMPARE(m_simulator->value(kStation, QLatin1String("D_W:500")).value_or(-1), 1234);
    QCOMPARE(m_simulator->value(kStation, QLatin1String("D_W:90000")).value_or(-1), -1);
    QCOMPARE(m_simulator->set(Simulator::kAllStations, QLatin1String("D_W:499=1,-2")), QString());
    QTRY_COMPARE_WITH_TIMEOUT(read(), 0xFFFE, kLongMs);
}

void TestSimulator::aMotionIsRead()
{
    open();
    watchUntilGood("D_W:500");
    QCOMPARE(
        m_simulator->move(kStation, plc::MotionKind::Ramp, QLatin1String("D_W:500=100..60000@1")),
        QString());
    QTRY_VERIFY_WITH_TIMEOUT(read() >= 100, kLongMs);
    const int first = read();
    QTRY_VERIFY_WITH_TIMEOUT(read() != first, kLongMs);
    QCOMPARE(int(m_simulator->actions().size()), 1);
    m_simulator->allOff();
    QVERIFY(m_simulator->actions().isEmpty());
}

// What the words beside each fault say.
void TestSimulator::faultsTeach()
{
    const LessonRow &row = currentRow(kLessons);
    open();
    watchUntilGood("D_W:500");
    QCOMPARE(m_simulator->cause(kStation, QString::fromLatin1(row.fault)), QString());
    QCOMPARE(m_simulator->set(kStation, QLatin1String("D_W:500=77")), QString());
    if (row.quality == Quality::Good) {
        QTRY_COMPARE_WITH_TIMEOUT(read(), 77, kLongMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
        return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == row.quality, kLongMs);
    QTRY_VERIFY_WITH_TIMEOUT(row.count(m_line->session()->stations().value(kStation)) > 0, kLongMs);
    QCOMPARE(read(), 0);
    m_simulator->allOff();
    if (row.quality == Quality::Refused) {
        m_line->open(Connection());
        QCOMPARE(m_simulator->set(kStation, QLatin1String("D_W:500=77")), QString());
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
    QTRY_COMPARE_WITH_TIMEOUT(read(), 77, kLongMs);
}

void TestSimulator::eachKindHasWords()
{
    QStringList names;
    QStringList lessons;
    for (const plc::FaultKindText &kind : plc::faultKindTexts()) {
        const FaultWords words = faultWords(kind.kind);
        names << words.name;
        lessons << words.lesson;
        QCOMPARE(words.valueName.isEmpty(), *kind.value == '\0');
        QVERIFY(faultInWords(plc::usualFault(kind.kind)).startsWith(words.name));
    }
    for (QStringList texts : {names, lessons}) {
        QCOMPARE(int(texts.size()), plc::kFaultKinds);
        QVERIFY(!texts.contains(QString()));
        QCOMPARE(int(texts.removeDuplicates()), 0);
    }
    plc::Fault fault = plc::usualFault(plc::FaultKind::Delay);
    fault.low = 50;
    fault.percent = 10;
    fault.times = 3;
    QCOMPARE(faultInWords(fault),
             QLatin1String("Late answer (Delay in milliseconds: 50 to 500), at "
                           "10 % of the requests, 3 more times"));
    QCOMPARE(faultInWords(plc::usualFault(plc::FaultKind::Refuse)),
             QLatin1String("Refusal (Error code, hexadecimal: 1132), at each request"));
}

void TestSimulator::actionsAreListed()
{
    open();
    ActionTable table;
    const QAbstractItemModelTester tester(&table);
    m_simulator->cause(kStation, QLatin1String("echo"));
    m_simulator->move(kStation, plc::MotionKind::Sine, QLatin1String("D_W:500-501=1..5@2000"));
    table.setActions(m_simulator->actions());
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(table.index(0, ActionTable::What).data().toString(),
             QLatin1String("D_W:500-501: Sine from 1 to 5, a turn in 2000 ms"));
    QCOMPARE(table.index(1, ActionTable::Kind).data().toString(), QLatin1String("Fault"));
    m_simulator->remove(table.actions().at(0));
    table.setActions(m_simulator->actions());
    QCOMPARE(table.rowCount(), 1);
    QVERIFY(table.index(0, ActionTable::What).data().toString().startsWith(QLatin1String("Echo")));
    m_simulator->remove(SimulatorAction()); // of no station there is
    m_simulator->removeFaults(kStation, plc::FaultKind::Echo);
    table.setActions(m_simulator->actions());
    QCOMPARE(table.rowCount(), 0);
}

void TestSimulator::oneOfTwoEqualFaultsGoes()
{
    open();
    for (const char *fault : {"delay=5", "echo", "delay=5", "delay=6"}) {
        QCOMPARE(m_simulator->cause(kStation, QString::fromLatin1(fault)), QString());
    }
    m_simulator->remove(m_simulator->actions().at(2));
    QCOMPARE(int(m_simulator->actions().size()), 3);
    QVERIFY(m_simulator->has(kStation, plc::FaultKind::Delay));
    m_simulator->removeFaults(Simulator::kAllStations, plc::FaultKind::Delay);
    QVERIFY(!m_simulator->has(kStation, plc::FaultKind::Delay));
    QVERIFY(m_simulator->has(kStation, plc::FaultKind::Echo));
    QVERIFY(!m_simulator->has(kStation + 1, plc::FaultKind::Echo));
}

void TestSimulator::faultsAreOverAfterTheirTimes()
{
    open();
    watchUntilGood("D_W:500");
    QCOMPARE(m_simulator->cause(kStation, QLatin1String("noise-before*2")), QString());
    QVERIFY(m_simulator->has(kStation, plc::FaultKind::NoiseBefore));
    QTRY_VERIFY_WITH_TIMEOUT(!m_simulator->has(kStation, plc::FaultKind::NoiseBefore), kLongMs);
    QVERIFY(m_simulator->actions().isEmpty());
}

void TestSimulator::mistakesAreTold()
{
    QVERIFY(!m_simulator->set(kStation, QLatin1String("D_W:500=1")).isEmpty());
    QVERIFY(!m_simulator->isThere());
    open();
    QVERIFY(!m_simulator->set(kStation, QLatin1String("D_W:90000=1")).isEmpty());
    QVERIFY(!m_simulator->set(kStation, QLatin1String("D_W:5=70000")).isEmpty());
    QVERIFY(!m_simulator->set(kStation + 1, QLatin1String("D_W:5=7")).isEmpty());
    QVERIFY(
        !m_simulator->move(kStation, plc::MotionKind::Ramp, QLatin1String("D_W:5=9..1")).isEmpty());
    QVERIFY(!m_simulator->cause(kStation, QLatin1String("delay=x")).isEmpty());
    QVERIFY(m_simulator->actions().isEmpty());
}

void TestSimulator::isKeptForTheNextSession()
{
    open();
    m_simulator->cause(kStation, QLatin1String("delay=5..7@10%"));
    m_simulator->move(kStation, plc::MotionKind::Square, QLatin1String("M_bit:3.5"));
    const QJsonObject saved = m_simulator->saved();
    QSignalSpy changes(m_page.get(), &Page::changed);
    m_line->close();
    QVERIFY(m_simulator->actions().isEmpty());
    QCOMPARE(m_simulator->saved(), saved);
    open();
    QCOMPARE(int(m_simulator->actions().size()), 2);
    QCOMPARE(m_page->findChild<ActionTable *>()->rowCount(), 2);
    QCOMPARE(m_simulator->saved(), saved);
    QCOMPARE(int(changes.size()), 0);
    m_line->close();
    m_simulator->allOff();
    open();
    QVERIFY(m_simulator->actions().isEmpty());
}

QTEST_MAIN(TestSimulator)
#include "test_simulator.moc"
