#include "host/support/virtual_line.h"

#include <host/driver/driver.h>
#include <host/session.h>

#include <QtTest>

using namespace cnet;

// A line that does everything a line can do to answers, hours of it in virtual time. Every address
// holds values that name it and change all the time, so a value that is shown at another address is
// seen at once; and every write goes to an address of its own, so what is said of it can be
// compared with the PLC's memory.
class TestRightValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyLine_data();
    void everyLine();

private:
    Driver m_driver;
};

namespace {

const int kStations = 3;
const int kNamedWords = 2000; // D 0 to 1999 name themselves, D 2000 on are written
const int kPlaces = 19;       // D 0, 100, ... 1800, and two words behind each
const int kPlaceWords = 3;
const int kWritten = 7000;

// The low bits count on.
const int kCountBits = 6;

int nameOf(int station, int address)
{
    return (station * kPlaces + address / 100) * kPlaceWords + address % 100;
}

// Environment: how many exchanges each line is to have; the long run is for who changed something
// here.
qint64 exchangesWanted()
{
    const qint64 asked = qEnvironmentVariableIntValue("CNET_EXCHANGES");
    return asked > 0 ? asked : 2500;
}

// One line under test, with somebody who watches, reads and writes at random.
class Plant
{
public:
    Plant(Driver &driver, const LineManners &manners, int timeoutMs, quint32 seed)
        : m_driver(driver)
        , m_random(seed)
    {
        auto line = std::make_unique<VirtualLine>(m_clock, seed);
        m_line = line.get();
        m_line->manners = manners;
        for (int station = 1; station <= kStations; ++station) {
            m_line->bus.add(station);
            m_life = 2;
            live(*m_line->bus.find(station));
        }
        m_line->beforeAnswer = [this](plc::Unit &unit) { live(unit); };
        SessionOptions options;
        options.timeoutMs = timeoutMs;
        options.intervalMs = 0;
        m_session = std::make_unique<Session>(driver, std::move(line), options, m_clock);
        watch();
        if (qEnvironmentVariableIsSet("CNET_TRACE")) {
            trace();
        }
        m_session->open();
    }

    void run(qint64 exchanges)
    {
        const qint64 hourMs = 3600 * 1000;
        while (m_line->requests < exchanges && m_clock.nowMs() < 2000 * hourMs) {
            m_clock.runFor(200 + between(0, 3000));
            act();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        m_session->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QStringList wrong;
    qint64 valuesSeen = 0;
    qint64 readsGood = 0;
    qint64 writesTaken = 0;
    qint64 writesNot = 0;
    qint64 requests() const { return m_line->requests; }

private:
    int between(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(m_random);
    }

    void live(plc::Unit &unit)
    {
        // Not at every request: where nothing changes a copy of an answer cannot be told from an
        // answer.
        if (++m_life % 3 != 0) {
            return;
        }
        for (int place = 0; place < kPlaces; ++place) {
            for (int word = 0; word < kPlaceWords; ++word) {
                const int address = 100 * place + word;
                const int count = m_life / 3 % (1 << kCountBits);
                unit.station.memory().setWord(
                    'D', address,
                    static_cast<quint16>(nameOf(unit.station.number(), address) << kCountBits |
                                         count));
            }
        }
    }

    Item words(int station, int start, int count) const
    {
        return {station, *m_driver.registers().find(QLatin1String("D_W")), start, count};
    }

    QVector<Item> someItems(int most)
    {
        QVector<Item> items;
        const int count = between(1, most);
        for (int i = 0; i < count; ++i) {
            items.append(words(between(1, kStations), 100 * between(0, kPlaces - 1),
                               between(1, kPlaceWords)));
        }
        return items;
    }

    void check(const Item &item, int offset, quint16 value, const char *where)
    {
        ++valuesSeen;
        const int address = item.start + offset;
        if (address < kNamedWords && value >> kCountBits != nameOf(item.station, address)) {
            wrong.append(QString::fromLatin1("%1: %2/D_W:%3 shows %4 at %5 ms")
                             .arg(QLatin1String(where))
                             .arg(item.station)
                             .arg(address)
                             .arg(value)
                             .arg(m_clock.nowMs()));
        }
    }

    // What led to a wrong value, for whoever looks for the reason.
    void trace()
    {
        QObject::connect(m_session.get(), &Session::requestSent, m_session.get(),
                         [this](const QByteArray &frame) {
                             qInfo("%lld -> %s", m_clock.nowMs(), frame.constData() + 1);
                         });
        QObject::connect(m_line, &Link::received, m_session.get(), [this](const QByteArray &bytes) {
            qInfo("%lld <- %s", m_clock.nowMs(), bytes.constData() + 1);
        });
    }

    void watch()
    {
        m_monitor = m_session->monitor(someItems(8));
        QObject::connect(m_monitor, &Monitor::valuesChanged, m_monitor,
                         [this](const QVector<ValueChange> &changes) {
                             for (const ValueChange &change : changes) {
                                 check(m_monitor->items().at(change.item).item, change.offset,
                                       change.value, "monitor");
                             }
                         });
    }

    void act()
    {
        for (const ItemState &state : m_monitor->items()) {
            for (int i = 0; i < state.values.size(); ++i) {
                if (state.values.at(i).known) {
                    check(state.item, i, state.values.at(i).value, "screen");
                }
            }
        }
        if (m_jobs > 2) {
            return; // else writes, which go first, would leave no time for anything else
        }
        switch (between(0, 5)) {
        case 0:
            m_monitor->setItems(someItems(8));
            break;
        case 1:
        case 2:
            read();
            break;
        default:
            write();
            break;
        }
    }

    void read()
    {
        ++m_jobs;
        ReadJob *const job = m_session->read(someItems(4));
        QObject::connect(job, &Job::finished, job, [this, job] {
            for (const ReadResult &result : job->results()) {
                readsGood += result.isGood() ? 1 : 0;
                for (int i = 0; i < result.values.size(); ++i) {
                    if (result.known.at(i)) {
                        check(result.item, i, result.values.at(i), "read");
                    }
                }
            }
            --m_jobs;
            job->deleteLater();
        });
    }

    void write()
    {
        QVector<Assignment> assignments;
        for (int i = between(1, 3); i > 0; --i) {
            const int station = between(1, kStations);
            m_nextAddress = (m_nextAddress + 1) % kWritten;
            ++m_nextValue;
            assignments.append({words(station, kNamedWords + m_nextAddress, 1), {m_nextValue}});
        }
        ++m_jobs;
        WriteJob *const job = m_session->write(
            assignments, between(0, 1) == 0 ? ReadBack::Always : ReadBack::OnFailure);
        QObject::connect(job, &Job::finished, job, [this, job] {
            for (const WriteResult &result : job->results()) {
                judge(result);
            }
            --m_jobs;
            job->deleteLater();
        });
    }

    void judge(const WriteResult &result)
    {
        const Item &item = result.assignment.item;
        const quint16 holds =
            m_line->bus.find(item.station)->station.memory().word('D', item.start).value_or(0);
        const bool holdsIt = holds == result.assignment.values.first();
        const bool lied =
            (result.isWritten() && !holdsIt) ||
            (result.outcome == WriteOutcome::NotSent && holdsIt) ||
            result.outcome == WriteOutcome::Mismatch ||
            (result.now && result.now->isGood() && result.now->values.first() != holds);
        writesTaken += result.isWritten() ? 1 : 0;
        writesNot += result.isWritten() ? 0 : 1;
        if (lied) {
            wrong.append(QString::fromLatin1("write: %1, the PLC holds %2 at %3 ms")
                             .arg(result.text())
                             .arg(holds)
                             .arg(m_clock.nowMs()));
        }
    }

    VirtualClock m_clock;
    Driver &m_driver;
    std::mt19937 m_random;
    VirtualLine *m_line = nullptr;
    std::unique_ptr<Session> m_session;
    Monitor *m_monitor = nullptr;
    int m_life = 2;
    int m_jobs = 0; ///< not finished
    int m_nextAddress = 0;
    quint16 m_nextValue = 0;
};

struct LineRow
{
    const char *name;
    int timeoutMs;
    LineManners manners; // requestMs low high lost lostAnswers repeated damaged cut noise split
    bool brings;         // values come at all
};

const LineRow kLines[] = {
    {"good", 0, {5, 5, 5, 0, 0, 0, 0, 0, 0, 0}, true},
    {"later than the time-out", 200, {5, 0, 4000, 0, 0, 0, 0, 0, 0, 0}, false},
    {"always late", 200, {5, 300, 350, 0, 0, 0, 0, 0, 0, 0}, true},
    {"late at times, automatic", 0, {5, 0, 10000, 0, 0, 0, 0, 0, 0, 0}, true},
    {"lossy", 200, {5, 5, 50, 20, 20, 0, 0, 0, 0, 0}, true},
    {"repeating", 200, {5, 5, 150, 0, 0, 40, 0, 0, 0, 0}, true},
    {"noisy", 200, {5, 5, 50, 0, 0, 0, 10, 10, 30, 30}, true},
    {"everything", 200, {5, 0, 400, 5, 5, 10, 5, 5, 10, 10}, true},
    {"everything, very late", 100, {5, 0, 2000, 5, 5, 10, 5, 5, 10, 10}, false},
};

} // namespace

Q_DECLARE_METATYPE(const LineRow *)

void TestRightValues::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestRightValues::everyLine_data()
{
    QTest::addColumn<const LineRow *>("row");
    for (const LineRow &row : kLines) {
        QTest::newRow(row.name) << &row;
    }
}

void TestRightValues::everyLine()
{
    QFETCH(const LineRow *, row);
    const int asked = qEnvironmentVariableIntValue("CNET_SEED");
    const quint32 seed = asked > 0 ? static_cast<quint32>(asked) : 1;
    Plant plant(m_driver, row->manners, row->timeoutMs, seed);
    plant.run(exchangesWanted());
    qInfo("seed %u: %lld requests, %lld values, %lld reads, %lld writes taken, %lld not", seed,
          plant.requests(), plant.valuesSeen, plant.readsGood, plant.writesTaken, plant.writesNot);
    QVERIFY2(plant.wrong.isEmpty(),
             qPrintable(QString::fromLatin1("%1 wrong; %2")
                            .arg(plant.wrong.size())
                            .arg(plant.wrong.mid(0, 5).join(QLatin1String("; ")))));
    QVERIFY(!row->brings || plant.valuesSeen > 100);
}

QTEST_GUILESS_MAIN(TestRightValues)

#include "test_right_values.moc"
