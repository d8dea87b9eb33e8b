#include "panel/watched_items.h"

#include "panel/views/value_history.h"

#include <QtTest>

#include <cmath>

using namespace cnet;
using namespace cnet::panel;

class TestValueHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void knowsTheExtremes();
    void samplesEachSecond();
    void leavesGaps();
    void keepsWhatStays();
    void forgetsOtherItems();

private:
    void read(quint16 first, quint16 second, qint64 nowMs);

    std::unique_ptr<Monitor> m_monitor;
    ValueHistory m_history;
};

void TestValueHistory::init()
{
    m_history = ValueHistory();
    m_monitor = std::make_unique<Monitor>(60);
    m_monitor->setItems({testItem("D_W", 100, 2)});
    connect(m_monitor.get(), &Monitor::valuesChanged, this,
            [this](const QVector<ValueChange> &changes) { m_history.note(*m_monitor, changes); });
}

void TestValueHistory::read(quint16 first, quint16 second, qint64 nowMs)
{
    m_monitor->blockRead(0, 0, {first, second}, momentAt(nowMs));
    m_monitor->tell();
    m_history.sample(*m_monitor, nowMs);
}

// Between two samples, too: a peak is what one looks for.
void TestValueHistory::knowsTheExtremes()
{
    QVERIFY(!m_history.of(0, 0).known);
    read(50, 7, 1000);
    QCOMPARE(m_history.of(0, 0).changedAtMs, Q_INT64_C(0));
    read(65535, 7, 1010);
    read(3, 7, 1020);
    read(20, 7, 1030);
    const ValueHistory::Value value = m_history.of(0, 0);
    QCOMPARE(value.min, 3.0);
    QCOMPARE(value.max, 65535.0);
    QCOMPARE(value.changedAtMs, momentAt(1030).wallMs);
    QCOMPARE(m_history.of(0, 1).min, 7.0);
    QCOMPARE(m_history.of(0, 1).changedAtMs, Q_INT64_C(0));
}

void TestValueHistory::samplesEachSecond()
{
    for (int i = 0; i < 200; ++i) {
        read(static_cast<quint16>(i), 0, 1000 + 100 * i);
    }
    QVector<double> expected;
    for (int i = 40; i < 200; i += 10) {
        expected.append(i);
    }
    QCOMPARE(m_history.of(0, 0).samples, expected);
    QCOMPARE(static_cast<int>(expected.size()), ValueHistory::kSamples);
}

// What nobody knows is no value.
void TestValueHistory::leavesGaps()
{
    m_history.sample(*m_monitor, 0);
    read(5, 0, 1000);
    m_monitor->look(momentAt(2000, false));
    m_history.sample(*m_monitor, 2000);
    const QVector<double> samples = m_history.of(0, 0).samples;
    QCOMPARE(static_cast<int>(samples.size()), 3);
    QVERIFY(std::isnan(samples.at(0)));
    QCOMPARE(samples.at(1), 5.0);
    QVERIFY(std::isnan(samples.at(2)));
}

// The second item comes first, and a new one behind it.
void TestValueHistory::keepsWhatStays()
{
    read(5, 6, 1000);
    read(7, 6, 2000);
    const ValueHistory::Value before = m_history.of(0, 0);
    m_monitor->setItems({testItem("D_W", 300, 1), m_monitor->items().at(0).item});
    m_history.setTags({}, {-1, 0});
    m_history.sample(*m_monitor, 2500);
    QVERIFY(!m_history.of(0, 0).known);
    QCOMPARE(m_history.of(1, 0).max, 7.0);
    QCOMPARE(m_history.of(1, 0).samples, before.samples);
}

void TestValueHistory::forgetsOtherItems()
{
    read(5, 6, 1000);
    m_monitor->setItems({testItem("D_W", 100, 3)});
    m_history.sample(*m_monitor, 2000);
    QVERIFY(!m_history.of(0, 0).known);
    QVERIFY(!m_history.of(7, 7).known);
}

QTEST_APPLESS_MAIN(TestValueHistory)
#include "test_value_history.moc"
