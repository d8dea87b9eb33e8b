#include "gateway/service/pulse.h"
#include "gateway/support/changes.h"
#include "support/full_disk.h"

#include "host/time/system_clock.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** No beat while one of the two threads hangs, as a watchdog needs it. */
class TestPulse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void beatsWhileBothRun();
    void stopsWhenTheRecorderHangs();
    void stopsWhenTheLinesHang();
    void asksOnceOnly();
    void isQuickEnough_data();
    void isQuickEnough();

private:
    void hangRecorder();

    QTemporaryDir m_directory;
    GatewayConfig m_config;
    std::unique_ptr<QSemaphore> m_hangs;
    std::unique_ptr<QSemaphore> m_release;
    std::unique_ptr<RecorderThread> m_recorder;
    std::unique_ptr<Pulse> m_pulse;
    std::unique_ptr<QSignalSpy> m_beats;
};

namespace {

const int kEveryMs = 5;

} // namespace

void TestPulse::init()
{
    m_config = GatewayConfig();
    m_config.sinks = {{QLatin1String("history"), SqliteSettings()}};
    std::get<SqliteSettings>(m_config.sinks[0].settings).path =
        m_directory.filePath(QLatin1String("history"));
    m_config.ledger.path = m_directory.filePath(QLatin1String("ledger"));
    m_pulse.reset();
    m_recorder.reset();
    m_hangs = std::make_unique<QSemaphore>();
    m_release = std::make_unique<QSemaphore>();
    // Whoever says something on the recorder's thread keeps it until it is released.
    m_recorder = std::make_unique<RecorderThread>(m_config, SystemClock::instance(),
                                                  [this](const QString & /*line*/) {
                                                      m_hangs->release();
                                                      m_release->acquire();
                                                  });
    QVERIFY(m_recorder->start().isNone());
    m_pulse = std::make_unique<Pulse>(*m_recorder, SystemClock::instance(), kEveryMs);
    qRegisterMetaType<RecorderState>();
    m_beats = std::make_unique<QSignalSpy>(m_pulse.get(), &Pulse::beat);
    m_pulse->start();
    QTRY_VERIFY(m_beats->count() >= 3);
}

void TestPulse::hangRecorder()
{
    const FullDisk full(1000);
    m_recorder->put(batchWith({1, 2}));
    m_hangs->acquire();
}

void TestPulse::beatsWhileBothRun()
{
    const auto state = m_beats->last().first().value<RecorderState>();
    QCOMPARE(state.sinks.value(0).name, QLatin1String("history"));
    QVERIFY(state.sinks.value(0).isReady);
    m_recorder->put(batchWith({1, 2, 3}));
    QTRY_COMPARE(m_beats->last().first().value<RecorderState>().sinks.value(0).values,
                 Q_INT64_C(3));
    m_pulse->stop();
    const auto before = m_beats->count();
    QTest::qWait(10 * kEveryMs);
    QCOMPARE(int(m_beats->count()), before);
}

void TestPulse::stopsWhenTheRecorderHangs()
{
    hangRecorder();
    QCoreApplication::processEvents(); // an answer that was on its way
    const auto before = m_beats->count();
    QTest::qWait(20 * kEveryMs);
    QVERIFY(m_beats->count() <= before + 1);
    const auto hung = m_beats->count();
    QTest::qWait(20 * kEveryMs);
    QCOMPARE(int(m_beats->count()), hung);
    // The trouble, and that it is over.
    m_release->release(2);
    QTRY_VERIFY(m_beats->count() >= hung + 3);
}

void TestPulse::stopsWhenTheLinesHang()
{
    const auto before = m_beats->count();
    QTest::qSleep(20 * kEveryMs);
    QCOMPARE(int(m_beats->count()), before);
    QTRY_VERIFY(m_beats->count() > before);
}

void TestPulse::asksOnceOnly()
{
    hangRecorder();
    QSignalSpy asked(m_recorder.get(), &RecorderThread::looking);
    QTest::qWait(20 * kEveryMs);
    QVERIFY(asked.count() <= 1);
    m_release->release(2);
    QTRY_VERIFY(asked.count() > 3);
}

void TestPulse::isQuickEnough_data()
{
    QTest::addColumn<qint64>("watchdogMs"); // 0: none
    QTest::addColumn<int>("everyMs");
    QTest::newRow("no watchdog") << Q_INT64_C(0) << 1000;
    QTest::newRow("a minute") << Q_INT64_C(60000) << 1000;
    QTest::newRow("two seconds") << Q_INT64_C(2000) << 1000;
    QTest::newRow("a moment") << Q_INT64_C(300) << 150;
    QTest::newRow("less") << Q_INT64_C(1) << 1;
}

void TestPulse::isQuickEnough()
{
    QFETCH(qint64, watchdogMs);
    QFETCH(int, everyMs);
    QCOMPARE(pulseMsFor(watchdogMs == 0 ? std::nullopt : std::optional<qint64>(watchdogMs)),
             everyMs);
}

QTEST_GUILESS_MAIN(TestPulse)
#include "test_pulse.moc"
