#include "simulated_line.h"
#include "support/rows.h"
#include "view/simulator/action_table.h"
#include "view/simulator/fault_form.h"
#include "view/simulator/fault_words.h"
#include "view/simulator/motion_form.h"
#include "view/simulator/value_form.h"
#include "view/support/unnamed_fields.h"

#include <QAction>
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

const Given<const char *> kWrongStates[] = {
    {"no lists", R"({"motions": 5, "faults": "delay"})"},
    {"not texts", R"({"motions": [5, null, {}], "faults": [[1]]})"},
    {"unknown words", R"({"motions": ["jump 1/D_W:5", "ramp", ""], "faults": ["pain", "1:"]})"},
    {"no such address", R"({"motions": ["ramp 1/D_W:90000"], "faults": []})"},
    {"no such station", R"({"motions": ["ramp 30/D_W:5"], "faults": ["30:silence"]})"},
};

} // namespace

/** The fields of the page, and what a project keeps of it. */
class TestSimulatorPage : public QObject, private SimulatedLine
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void projectsKeepIt();
    void wrongProjectsDoNoHarm_data() { addRows(kWrongStates); }
    void wrongProjectsDoNoHarm();
    void pageTellsARealPlc();
    void formSetsAValue();
    void formStartsAMotion();
    void ticksCauseFaults();
    void tableRemoves();
    void fieldsHaveNames();
};

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
    watchUntilGood("M_bit:200.5");
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
