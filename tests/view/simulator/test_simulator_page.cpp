#include "support/rows.h"
#include "view/simulator/action_table.h"
#include "view/simulator/fault_form.h"
#include "view/simulator/fault_words.h"
#include "view/simulator/motion_form.h"
#include "view/simulator/simulator_page.h"
#include "view/simulator/value_form.h"
#include "view/support/unnamed_fields.h"
#include "view/tags/watched_tags.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTableView>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr int kLongMs = 60000;
constexpr int kStation = 1;

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

const Given<const char *> kWrongStates[] = {
    {"no lists", R"({"motions": 5, "faults": "delay"})"},
    {"not texts", R"({"motions": [5, null, {}], "faults": [[1]]})"},
    {"unknown words", R"({"motions": ["jump 1/D_W:5", "ramp", ""], "faults": ["pain", "1:"]})"},
    {"no such address", R"({"motions": ["ramp 1/D_W:90000"], "faults": []})"},
    {"no such station", R"({"motions": ["ramp 30/D_W:5"], "faults": ["30:silence"]})"},
};

} // namespace

/** The simulated PLC from its other side. */
class TestSimulatorPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    void projectsKeepIt();
    void wrongProjectsDoNoHarm_data() { addRows(kWrongStates); }
    void wrongProjectsDoNoHarm();
    void pageTellsARealPlc();
    void formSetsAValue();
    void formStartsAMotion();
    void ticksCauseFaults();
    void tableRemoves();
    void fieldsHaveNames();

private:
    void open(const Connection &connection = Connection())
    {
        m_line->open(connection);
        QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
    }
    void watch(const char *item)
    {
        QString error;
        const auto tag = m_tags->parse(QString::fromLatin1(item), error);
        QVERIFY2(tag.has_value(), qPrintable(error));
        m_tags->setTags(TagSet({*tag}));
        QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
    }
    int read() const { return m_tags->state(0).values.at(0).value; }

    std::unique_ptr<SimulatorPage> m_page;
    std::unique_ptr<WatchedTags> m_tags;
    std::unique_ptr<Line> m_line;
    Simulator *m_simulator = nullptr;
};

void TestSimulatorPage::init()
{
    m_page.reset();
    m_tags.reset();
    m_line = std::make_unique<Line>();
    QCOMPARE(m_line->prepare(), QString());
    m_tags = std::make_unique<WatchedTags>(*m_line);
    m_page = std::make_unique<SimulatorPage>(*m_line);
    m_simulator = &m_page->simulator();
}

void TestSimulatorPage::aValueIsRead()
{
    open();
    watch("D_W:500");
    QCOMPARE(read(), 0);
    QCOMPARE(m_simulator->set(kStation, QLatin1String("D_W:500=1234")), QString());
    QTRY_COMPARE_WITH_TIMEOUT(read(), 1234, kLongMs);
    QCOMPARE(m_simulator->value(kStation, QLatin1String("D_W:500")).value_or(-1), 1234);
    QCOMPARE(m_simulator->value(kStation, QLatin1String("D_W:90000")).value_or(-1), -1);
    QCOMPARE(m_simulator->set(Simulator::kAllStations, QLatin1String("D_W:499=1,-2")), QString());
    QTRY_COMPARE_WITH_TIMEOUT(read(), 0xFFFE, kLongMs);
}

void TestSimulatorPage::aMotionIsRead()
{
    open();
    watch("D_W:500");
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
void TestSimulatorPage::faultsTeach()
{
    const LessonRow &row = currentRow(kLessons);
    open();
    watch("D_W:500");
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

void TestSimulatorPage::eachKindHasWords()
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

void TestSimulatorPage::actionsAreListed()
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

void TestSimulatorPage::oneOfTwoEqualFaultsGoes()
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

void TestSimulatorPage::faultsAreOverAfterTheirTimes()
{
    open();
    watch("D_W:500");
    QCOMPARE(m_simulator->cause(kStation, QLatin1String("noise-before*2")), QString());
    QVERIFY(m_simulator->has(kStation, plc::FaultKind::NoiseBefore));
    QTRY_VERIFY_WITH_TIMEOUT(!m_simulator->has(kStation, plc::FaultKind::NoiseBefore), kLongMs);
    QVERIFY(m_simulator->actions().isEmpty());
}

void TestSimulatorPage::mistakesAreTold()
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

void TestSimulatorPage::isKeptForTheNextSession()
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

void TestSimulatorPage::projectsKeepIt()
{
    open();
    m_simulator->cause(kStation, QLatin1String("refuse=1132*5"));
    m_simulator->move(kStation, plc::MotionKind::Counter, QLatin1String("D_W:600+7@20"));
    const QJsonObject saved = m_page->saved();
    QSignalSpy changes(m_page.get(), &Page::changed);
    m_page->restore(QJsonObject());
    QVERIFY(m_simulator->actions().isEmpty());
    QVERIFY(!changes.isEmpty());
    m_page->restore(saved);
    QCOMPARE(m_page->saved(), saved);
    QCOMPARE(int(m_simulator->actions().size()), 2);
    QCOMPARE(m_simulator->actions().at(1).fault.times, 5);
    // Before there is a simulator, too.
    m_line->close();
    SimulatorPage other(*m_line);
    other.restore(saved);
    m_page.reset();
    open();
    QCOMPARE(int(other.simulator().actions().size()), 2);
}

void TestSimulatorPage::wrongProjectsDoNoHarm()
{
    const auto &row = currentRow(kWrongStates);
    open();
    m_page->restore(QJsonDocument::fromJson(row.given).object());
    QVERIFY(m_simulator->actions().isEmpty());
}

void TestSimulatorPage::pageTellsARealPlc()
{
    auto *stack = m_page->findChild<QStackedWidget *>();
    QCOMPARE(stack->currentIndex(), 0);
    auto *words = qobject_cast<QLabel *>(stack->widget(0));
    QVERIFY(words->text().startsWith(QLatin1String("Not connected")));
    open();
    QCOMPARE(stack->currentIndex(), 1);
    Connection real;
    real.kind = Connection::Kind::Serial;
    real.address.kind = LinkAddress::Kind::Serial;
    real.address.device = QLatin1String("/nonexistent/port");
    m_line->open(real);
    QCOMPARE(stack->currentIndex(), 0);
    QVERIFY(words->text().contains(QLatin1String("real PLC")));
    m_line->close();
    QVERIFY(words->text().startsWith(QLatin1String("Not connected")));
    open();
    QCOMPARE(stack->currentIndex(), 1);
}

void TestSimulatorPage::formSetsAValue()
{
    open();
    watch("M_bit:200.5");
    auto *form = m_page->findChild<ValueForm *>();
    form->findChild<QComboBox *>()->setCurrentText(QLatin1String("M_bit"));
    const auto edits = form->findChildren<QLineEdit *>();
    auto *set = form->findChild<QPushButton *>();
    QLineEdit *address = edits.at(0);
    QLineEdit *value = edits.at(1);
    QVERIFY(!set->isEnabled());
    address->setText(QLatin1String("200"));
    value->setText(QLatin1String("1"));
    QVERIFY(!set->isEnabled());
    address->setText(QLatin1String("200.5"));
    QVERIFY(set->isEnabled());
    QTest::keyClick(value, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(read(), 1, kLongMs);
}

void TestSimulatorPage::formStartsAMotion()
{
    open();
    auto *form = m_page->findChild<MotionForm *>();
    auto *kind = form->findChild<QComboBox *>();
    auto *start = form->findChild<QPushButton *>();
    for (int i = 0; i < plc::kMotionKinds; ++i) {
        kind->setCurrentIndex(i);
        QVERIFY(start->isEnabled());
        start->click();
    }
    // One range moves in one way; a counter takes two words.
    QCOMPARE(int(m_simulator->actions().size()), 2);
    QVERIFY(m_simulator->actions().at(0).motion.kind == plc::MotionKind::Walk);
    form->findChild<QLineEdit *>()->setText(QLatin1String("50x"));
    QVERIFY(!start->isEnabled());
}

void TestSimulatorPage::ticksCauseFaults()
{
    open();
    auto *form = m_page->findChild<FaultForm *>();
    auto *kinds = form->findChild<QListWidget *>();
    QCOMPARE(kinds->count(), plc::kFaultKinds);
    for (int row = 0; row < kinds->count(); ++row) {
        kinds->item(row)->setCheckState(Qt::Checked);
        const auto kind = plc::faultKindTexts().at(static_cast<std::size_t>(row)).kind;
        QVERIFY(m_simulator->has(kStation, kind));
        QVERIFY(!form->findChild<QLabel *>()->text().isEmpty());
    }
    QCOMPARE(int(m_simulator->actions().size()), plc::kFaultKinds);
    for (int row = 1; row < kinds->count(); ++row) {
        kinds->item(row)->setCheckState(Qt::Unchecked);
    }
    QCOMPARE(int(m_simulator->actions().size()), 1);
    kinds->setCurrentRow(0);
    const auto spins = form->findChildren<QSpinBox *>();
    spins.at(0)->setValue(25);
    spins.at(1)->setValue(4);
    QCOMPARE(int(m_simulator->actions().size()), 1);
    QCOMPARE(m_simulator->actions().at(0).fault.percent, 25);
    QCOMPARE(m_simulator->actions().at(0).fault.times, 4);
    m_simulator->allOff();
    QVERIFY(kinds->item(0)->checkState() == Qt::Unchecked);
}

void TestSimulatorPage::tableRemoves()
{
    open();
    for (const char *fault : {"delay=5", "echo", "split"}) {
        m_simulator->cause(kStation, QString::fromLatin1(fault));
    }
    auto *table = m_page->findChild<ActionTable *>();
    QCOMPARE(table->rowCount(), 3);
    const auto views = m_page->findChildren<QTableView *>();
    for (QTableView *view : views) {
        if (view->model() == table) {
            view->selectRow(1);
            QVERIFY(!view->actions().isEmpty());
            view->actions().at(0)->trigger();
        }
    }
    QCOMPARE(table->rowCount(), 2);
    QVERIFY(!m_simulator->has(kStation, plc::FaultKind::Echo));
}

void TestSimulatorPage::fieldsHaveNames()
{
    open();
    int count = 0;
    QCOMPARE(unnamedFields(*m_page, count), QStringList());
    QVERIFY(count > 10);
}

QTEST_MAIN(TestSimulatorPage)
#include "test_simulator_page.moc"
