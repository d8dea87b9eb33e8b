#include "view/values/values_fixture.h"

#include "view/trend/traces/collector.h"

#include "host/tag/tag_writing.h"
#include "host/tag/value_format.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::view;

namespace {

using Samples = QVector<double>;

constexpr int kLateMs = 300;
constexpr int kSurelyLateMs = 200;
const plc::Fault kLostOnce{plc::FaultKind::Silence, 0, 0, 1};
const plc::Fault kRefusedOnce{plc::FaultKind::Refuse, 0x1132, 0, 1};

} // namespace

/** What comes of writes in traces: nothing before the PLC has confirmed it. */
class TestCollector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void takesWhatIsConfirmed_data();
    void takesWhatIsConfirmed();
    void takesItWhenItIsConfirmed();
    void isAGapWhereItIsLost();
    void holdsWhatWasBefore();
    void waitsForTheFirstReading();
    void endsNoGapForWhatWaits();
    void tellsEachReasonOfAGap();
    void mixesNoWordsThatWereNeverTogether();
    void knowsWhatTheTagSays();

private:
    struct Writes
    {
        const char *what;
        const char *trace;
        QVector<const char *> texts; ///< written at once, one after the other
        std::optional<plc::Fault> fault;
        Samples expected;
    };

    static const Writes kWrites[];

    /// @param intervalMs by default nothing is read for long after the first round
    void openAndRead(int timeoutMs = 0, int intervalMs = kPatienceMs)
    {
        m_plant->open(intervalMs, timeoutMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    }
    void draw(const char *trace)
    {
        m_traces->add({latin(trace), 0, 0, Side::Left, true}, {});
        m_samples.clear();
    }
    void cause(const plc::Fault &fault) { m_plant->plc().faults.add(fault); }
    /// What was read was not read for long.
    void age();
    /// @param name of a tag, or of one value of an array
    void write(const QString &name, const char *text);
    Quality quality() const { return m_plant->tags().quality(0); } ///< of oil.speed
    Samples values() const
    {
        Samples values;
        for (const Sample &sample : m_samples) {
            values.append(sample.value);
        }
        return values;
    }
    double shown(int trace = 0) const
    {
        const TraceStore &store = *m_traces->at(trace).store;
        return store.sample(store.entries() - 1).value;
    }

    struct Sample
    {
        qint64 atMs = 0;
        double value = 0;
        Quality quality = Quality::NeverRead;
    };

    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<TraceSet> m_traces;
    std::unique_ptr<Collector> m_collector;
    QVector<Sample> m_samples; ///< of all traces, as a recording gets them
    int m_ended = 0;           ///< writes
};

void TestCollector::init()
{
    m_plant = std::make_unique<ValuesFixture>();
    m_plant->tags().setTags(m_plant->read(kTags));
    m_traces = std::make_unique<TraceSet>();
    m_ended = 0;
    m_collector = std::make_unique<Collector>(m_plant->tags(), *m_traces);
    connect(m_collector.get(), &Collector::sampled, this,
            [this](int, qint64 atMs, double value, Quality quality) {
                m_samples.append({atMs, value, quality});
            });
}

void TestCollector::cleanup()
{
    m_collector.reset();
    m_traces.reset();
    m_plant.reset();
}

void TestCollector::age()
{
    const Session *session = m_plant->line().session();
    Monitor::Surroundings later;
    later.nowMs = session->nowMs() + 1000;
    later.dueMs = 1;
    Monitor &monitor = session->findChild<TagMonitor *>()->monitor();
    monitor.look(later);
    monitor.tell();
}

void TestCollector::write(const QString &name, const char *text)
{
    const TagSet &tags = m_plant->tags().tags();
    const int open = static_cast<int>(name.indexOf(QLatin1Char('[')));
    const Tag &tag = tags.all().at(tags.indexOf(name.left(open)));
    const Tag one = open < 0 ? tag : oneValue(tag, name.mid(open + 1).chopped(1).toInt());
    const Line &line = m_plant->line();
    QString error;
    const auto value = parseTyped(one, latin(text), error);
    QVERIFY2(value, qPrintable(error));
    const auto parts = assignmentsOf(one, {*value}, line.registers(), kHighestWriteWords, error);
    QVERIFY2(parts, qPrintable(error));
    const WriteJob *job = line.session()->write(*parts, ReadBack::Never);
    connect(job, &Job::finished, this, [this] { ++m_ended; });
}

const TestCollector::Writes TestCollector::kWrites[] = {
    {"confirmed", "oil.speed", {"5"}, {}, {5}},
    {"refused", "oil.speed", {"5"}, kRefusedOnce, {}},
    {"lost once, and sent again", "oil.speed", {"5"}, kLostOnce, {5}},
    {"several", "oil.speed", {"5", "6", "7"}, {}, {5, 6, 7}},
    {"of several one refused", "oil.speed", {"5", "6", "7"}, kRefusedOnce, {6, 7}},
    {"what was before, once more", "oil.speed", {"5", "0"}, {}, {5, 0}},
    {"a bit", "lamp", {"true"}, {}, {1}},
    {"a bit, refused", "lamp", {"true"}, kRefusedOnce, {}},
    {"of an array", "zones[2]", {"7", "8"}, {}, {7, 8}},
    {"of an array, refused", "zones[2]", {"7"}, kRefusedOnce, {}},
};

void TestCollector::takesWhatIsConfirmed_data()
{
    addRows(kWrites);
}

void TestCollector::takesWhatIsConfirmed()
{
    const auto &row = currentRow(kWrites);
    openAndRead(kLateMs);
    draw("zones[1]");
    draw(row.trace);
    if (row.fault) {
        cause(*row.fault);
    }
    for (const char *text : row.texts) {
        write(latin(row.trace), text);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_ended, int(row.texts.size()), kPatienceMs);
    QCOMPARE(values(), row.expected); // and nothing in between
    for (const Sample &sample : std::as_const(m_samples)) {
        QCOMPARE(sample.quality, Quality::Good);
    }
    // Each of them is in the picture, behind what was read first.
    QCOMPARE(m_traces->at(1).store->entries(), int(row.expected.size()) + 1);
    QCOMPARE(shown(), 0.0);
}

void TestCollector::takesItWhenItIsConfirmed()
{
    openAndRead();
    draw("oil.speed");
    cause({plc::FaultKind::Delay, kLateMs, kLateMs, 1});
    const qint64 beganMs = m_collector->nowMs();
    write(latin("oil.speed"), "5");
    QTRY_COMPARE_WITH_TIMEOUT(values(), Samples{5}, kPatienceMs);
    QVERIFY(m_samples.first().atMs - beganMs >= kSurelyLateMs);
    QVERIFY(m_samples.first().atMs <= m_collector->nowMs());
}

void TestCollector::isAGapWhereItIsLost()
{
    openAndRead(kLateMs);
    draw("oil.speed");
    cause({plc::FaultKind::Silence});
    write(latin("oil.speed"), "5");
    QTRY_COMPARE_WITH_TIMEOUT(m_ended, 1, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_samples.size(), 1, kPatienceMs);
    QVERIFY(qIsNaN(shown()));
    QCOMPARE(m_samples.first().quality, Quality::NoAnswer);
}

void TestCollector::holdsWhatWasBefore()
{
    openAndRead(kPatienceMs);
    draw("oil.speed");
    cause({plc::FaultKind::Silence});
    QSignalSpy told(&m_plant->tags(), &WatchedTags::stateChanged);
    write(latin("oil.speed"), "5");
    QTRY_VERIFY_WITH_TIMEOUT(!told.isEmpty(), kPatienceMs);
    QCOMPARE(quality(), Quality::Waiting);
    QCOMPARE(shown(), 0.0);
    QCOMPARE(m_traces->at(0).quality, Quality::Good);
    QCOMPARE(values(), Samples());
    m_plant->line().close();
    QCOMPARE(m_samples.size(), 1);
    QVERIFY(qIsNaN(m_samples.first().value));
    QCOMPARE(m_samples.first().quality, Quality::LineDown);
}

void TestCollector::waitsForTheFirstReading()
{
    draw("oil.speed");
    Samples whileWaiting;
    connect(&m_plant->tags(), &WatchedTags::stateChanged, this, [&] {
        if (quality() == Quality::Waiting) {
            whileWaiting.append(shown());
        }
    });
    m_plant->open();
    write(latin("oil.speed"), "5");
    QTRY_COMPARE_WITH_TIMEOUT(shown(), 5.0, kPatienceMs);
    QVERIFY(!whileWaiting.isEmpty());
    for (const double value : std::as_const(whileWaiting)) {
        QVERIFY(qIsNaN(value));
    }
}

void TestCollector::endsNoGapForWhatWaits()
{
    openAndRead(kPatienceMs);
    draw("oil.speed");
    QCOMPARE(shown(), 0.0);
    age();
    QCOMPARE(quality(), Quality::Stale);
    QVERIFY(qIsNaN(shown()));
    cause({plc::FaultKind::Silence});
    QSignalSpy told(&m_plant->tags(), &WatchedTags::stateChanged);
    write(latin("oil.speed"), "5");
    QTRY_VERIFY_WITH_TIMEOUT(!told.isEmpty(), kPatienceMs);
    QCOMPARE(quality(), Quality::Waiting);
    QVERIFY(qIsNaN(shown()));
}

void TestCollector::tellsEachReasonOfAGap()
{
    openAndRead(20, 1);
    draw("oil.speed");
    cause({plc::FaultKind::Silence});
    QTRY_COMPARE_WITH_TIMEOUT(quality(), Quality::NoAnswer, kPatienceMs);
    m_plant->line().close();
    QVERIFY(m_samples.size() >= 2);
    QCOMPARE(m_samples.at(m_samples.size() - 2).quality, Quality::NoAnswer);
    QCOMPARE(m_samples.last().quality, Quality::LineDown);
    QVERIFY(qIsNaN(m_samples.last().value));
    QCOMPARE(m_traces->at(0).store->entries(), 2); // in the picture it is one gap
}

// Of two words one is written while the other one is read.
void TestCollector::mixesNoWordsThatWereNeverTogether()
{
    m_plant->tags().setTags(m_plant->read("name,register,address,type,access\nwide,D_W,1020,u32,"
                                          "read\nlow,D_W,1020,u16,read-write\n"));
    openAndRead(kPatienceMs, 1);
    draw("wide");
    m_plant->setWord(1021, 9);
    QObject once;
    connect(m_plant->line().session(), &Session::requestSent, &once, [&] {
        once.disconnect();
        m_plant->line().session()->disconnect(&once);
        write(latin("low"), "5"); // the read that will have the 9 is on its way
    });
    QTRY_COMPARE_WITH_TIMEOUT(m_ended, 1, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), double(9 * 65536 + 5), kPatienceMs);
    QCOMPARE(values(), Samples{9 * 65536 + 5});
}

void TestCollector::knowsWhatTheTagSays()
{
    QCOMPARE(m_collector->kindOf(latin("oil.speed")), (TraceKind{latin("1/min"), false, 1}));
    QCOMPARE(m_collector->kindOf(latin("zones[3]")), TraceKind());
    QCOMPARE(m_collector->kindOf(latin("lamp")), (TraceKind{QString(), true, 0}));
    QCOMPARE(m_collector->kindOf(latin("none")), TraceKind());
}

QTEST_MAIN(TestCollector)
#include "test_collector.moc"
