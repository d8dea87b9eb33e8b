#include "brokers/listener.h"
#include "brokers/site.h"

#include "gateway/change/batch_codec.h"
#include "gateway/store/ledger.h"
#include "gateway/support/mosquitto_broker.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <cstdio>

// A broker was away for a day. The ledger is what the day left: a batch a second, made in a moment.
// Then the broker is there, and so is the gateway: how long does it take until all has come, and
// what becomes of the live values meanwhile?

using namespace cnet;
using namespace cnet::gateway;

namespace {

/** Time passes as fast as batches are made, and ends now. */
class DayClock : public Clock
{
public:
    explicit DayClock(qint64 seconds)
        : m_wallMs(QDateTime::currentMSecsSinceEpoch() - seconds * 1000)
    {}

    void passSecond() { m_nowMs += 1000; }
    qint64 nowNs() const override { return m_nowMs * 1000000; }
    qint64 wallMs() const override { return m_wallMs + m_nowMs; }
    std::unique_ptr<Alarm> makeAlarm() override { return nullptr; }

private:
    qint64 m_wallMs;
    qint64 m_nowMs = 0;
};

struct Day
{
    qint64 seconds = 86400;
    int tags = 100;    ///< each changes once a second
    qint64 mostKb = 0; ///< bound of the ledger; 0: none that counts
};

const char kSink[] = "centre";

/** What a tag has at some second of the day tells both. */
qint64 valueOf(int tag, qint64 second)
{
    return tag * 1000000LL + second;
}

QByteArray bodyOf(const QVector<std::shared_ptr<ChangeSource>> &sources, qint64 second, qint64 atMs)
{
    BatchWriter writer;
    Change change;
    change.quality = Quality::Good;
    change.atMs = atMs;
    for (int tag = 0; tag < sources.size(); ++tag) {
        change.source = sources.at(tag);
        change.value = valueOf(tag, second);
        writer.add(change);
    }
    return writer.finish();
}

/** @return how many changes the bound took */
std::optional<qint64> fill(const QString &file, const Day &day)
{
    QVector<std::shared_ptr<ChangeSource>> sources;
    for (int tag = 0; tag < day.tags; ++tag) {
        auto source = std::make_shared<ChangeSource>();
        source->line = QLatin1String("press");
        source->tag = QString::fromLatin1("day%1").arg(tag);
        source->type.kind = ValueKind::U32;
        sources.append(source);
    }
    LedgerBounds bounds;
    bounds.bytes = day.mostKb > 0 ? day.mostKb * 1000 : 1LL << 40;
    DayClock clock(day.seconds);
    Ledger ledger(clock);
    if (!ledger.open(file, Database::Durability::Normal, bounds, {QLatin1String(kSink)}).isNone()) {
        return std::nullopt;
    }
    for (qint64 second = 0; second < day.seconds; ++second) {
        clock.passSecond();
        QVector<LedgerBatch> batches{{0, day.tags, bodyOf(sources, second, clock.wallMs())}};
        if (!ledger.commit(batches).isNone()) {
            return std::nullopt;
        }
    }
    const LedgerState state = ledger.state();
    std::printf("ledger: %lld changes in %lld batches, dropped %lld\n",
                static_cast<long long>(state.values), static_cast<long long>(state.batches),
                static_cast<long long>(state.sinks.value(QLatin1String(kSink)).droppedValues));
    return state.sinks.value(QLatin1String(kSink)).droppedValues;
}

/** Hears everything, and keeps no more than it needs. */
class Hearer
{
public:
    explicit Hearer(const Day &day)
        : m_next(day.tags, -1)
    {}

    bool start(quint16 port)
    {
        m_listener.onArrival = [this](const Listener::Arrival &arrival) { take(arrival); };
        return m_listener.start(port);
    }

    qint64 old() const { return m_old; }
    qint64 first() const { return m_first; } ///< second of the day that came first
    bool isInOrder() const { return m_isInOrder; }
    QVector<qint64> &delays() { return m_delays; } ///< of live values

private:
    // Each tag second by second, or once more from an earlier one.
    void take(const Listener::Arrival &arrival)
    {
        if (!arrival.told.tag.startsWith("day")) {
            m_delays.append(arrival.arrivedMs - arrival.atMs);
            return;
        }
        const int tag = arrival.told.tag.mid(3).toInt();
        const qint64 second =
            arrival.told.what.left(arrival.told.what.indexOf('|')).toLongLong() - valueOf(tag, 0);
        qint64 &next = m_next[tag];
        if (next < 0) {
            m_first = m_first < 0 ? second : m_first;
            m_isInOrder = m_isInOrder && second == m_first;
            next = second;
        }
        m_isInOrder = m_isInOrder && second <= next && arrival.told.isOld;
        if (second == next) {
            ++next;
            ++m_old;
        }
    }

    Listener m_listener;
    QVector<qint64> m_next; ///< second of each tag
    qint64 m_old = 0;
    qint64 m_first = -1;
    bool m_isInOrder = true;
    QVector<qint64> m_delays;
};

void sayDelays(const char *when, QVector<qint64> &delays)
{
    std::sort(delays.begin(), delays.end());
    const auto at = [&delays](int percent) {
        return static_cast<long long>(delays.value((delays.size() - 1) * percent / 100));
    };
    std::printf("live values %s: %lld; median %lld ms, 99 %% within %lld ms, at most %lld ms\n",
                when, static_cast<long long>(delays.size()), at(50), at(99), at(100));
    delays.clear();
}

bool run(const Day &day)
{
    Site site;
    const auto dropped = fill(site.ledgerFile(), day);
    const auto bytes = static_cast<double>(QFileInfo(site.ledgerFile()).size());
    MosquittoBroker broker;
    Hearer hearer(day);
    if (!dropped || !broker.start("allow_anonymous true\nmax_queued_messages 0\n") ||
        !hearer.start(broker.port())) {
        return false;
    }
    const qint64 expected = day.seconds * day.tags - *dropped;
    QElapsedTimer clock;
    clock.start();
    bool isFine =
        site.start("brokers = \"tcp:127.0.0.1:" + QByteArray::number(broker.port()) + "\"\n") &&
        QTest::qWaitFor([&] { return hearer.old() >= expected; }, 3600000);
    const double seconds = static_cast<double>(clock.elapsed()) / 1000;
    std::printf("on the disk: %.1f MB, %.1f bytes a change\n", bytes / 1e6,
                bytes / double(expected));
    std::printf("all %lld had come after %.1f s, %.0f a second\n",
                static_cast<long long>(hearer.old()), seconds, double(hearer.old()) / seconds);
    sayDelays("meanwhile", hearer.delays());
    isFine = isFine && QTest::qWaitFor([&] { return hearer.delays().size() > 1000; }, 60000);
    sayDelays("afterwards", hearer.delays());
    const bool isExact =
        hearer.old() == expected && hearer.first() * day.tags == *dropped && hearer.isInOrder();
    std::printf("%s\n", isFine && isExact ? "day_away: all that was not dropped has come, in order"
                                          : "day_away: FAILED");
    return isFine && isExact;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const auto latin = [](const char *text) { return QString::fromLatin1(text); };
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{latin("seconds"), latin("How long the broker was away; default a day."), latin("N"),
          latin("86400")},
         {latin("tags"), latin("Each changes once a second; default 100."), latin("N"),
          latin("100")},
         {latin("ledger"), latin("Its bound; default none."), latin("KB"), latin("0")}});
    parser.process(application);
    Day day;
    day.seconds = parser.value(latin("seconds")).toLongLong();
    day.tags = parser.value(latin("tags")).toInt();
    day.mostKb = parser.value(latin("ledger")).toLongLong();
    return run(day) ? 0 : 1;
}
