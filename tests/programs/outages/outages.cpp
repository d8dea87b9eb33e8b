#include "outages/cuts.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QTest>
#include <QTextStream>

namespace {

struct Options
{
    int cuts = 200;
    quint64 seed = 1;
    int pauseMs = 500; ///< from one cut to the next, at most
    QString gateway;
    int ledgerKb = 0; ///< 0: nothing is to be dropped
    bool isLossExpected = false;
};

Options optionsOf(const QCoreApplication &application)
{
    const auto latin = [](const char *text) { return QString::fromLatin1(text); };
    QCommandLineParser parser;
    parser.setApplicationDescription(
        latin("Cuts at random what a gateway under load depends on, and the gateway, and audits "
              "what arrived at its sinks."));
    parser.addHelpOption();
    parser.addOptions(
        {{latin("cuts"), latin("How many; default 200."), latin("N"), latin("200")},
         {latin("seed"), latin("Default: the time of day."), latin("N"),
          QString::number(QDateTime::currentSecsSinceEpoch() % 1000000)},
         {latin("pause"), latin("From cut to cut, at most; default 500."), latin("MS"),
          latin("500")},
         {latin("ledger"),
          latin("Broker and database are away all the time, and the ledger has no more room."),
          latin("KB"), latin("0")},
         {latin("gateway"), latin("Another program in its place."), latin("FILE"),
          latin(CNET_GATEWAY)},
         {latin("expect-loss"), latin("Fails where nothing is lost.")}});
    parser.process(application);
    Options options;
    options.cuts = parser.value(latin("cuts")).toInt();
    options.seed = parser.value(latin("seed")).toULongLong();
    options.pauseMs = parser.value(latin("pause")).toInt();
    options.gateway = parser.value(latin("gateway"));
    options.ledgerKb = parser.value(latin("ledger")).toInt();
    options.isLossExpected = parser.isSet(latin("expect-loss"));
    return options;
}

// Longer than the longest pause of a sink that tries again.
const int kPatienceMs = 70000;
const int kMostMs = 150000;
// Longer than it takes until the gateway says anew how it stands.
const int kQuietMs = 1500;
const int kStartMs = 30000;

/** @return false when it stands still, and something is missing */
bool waitUntilDrained(Plant &plant)
{
    QElapsedTimer all;
    all.start();
    QElapsedTimer quiet;
    qint64 before = -1;
    do {
        QTest::qWait(100);
        const qint64 now = plant.progress();
        if (now != before) {
            quiet.start();
        }
        before = now;
        if (quiet.elapsed() > kQuietMs && plant.isDrained(quiet.elapsed())) {
            return true;
        }
    } while (quiet.elapsed() < kPatienceMs && all.elapsed() < kMostMs);
    return false;
}

/**
 * Nothing is under way, and then broker and database are away. The ledger's file knows what they
 * have with the next batch.
 */
bool takeSinksAway(Plant &plant)
{
    plant.relay(Plant::Part::Plc).close();
    const bool isDrained = waitUntilDrained(plant);
    plant.setSinksAway(true);
    const qint64 before = plant.progress();
    return isDrained && plant.relay(Plant::Part::Plc).reopen() &&
           QTest::qWaitFor([&] { return plant.progress() > before + 1; }, kStartMs);
}

/** They are back, and the ledger has room again: nothing more is dropped. */
bool bringSinksBack(Plant &plant)
{
    QTest::qWait(kQuietMs);
    plant.kill(Plant::Part::Gateway);
    plant.setSinksAway(false);
    return plant.setLedgerKb(0) && plant.revive(Plant::Part::Gateway);
}

bool cutAll(const Options &options, Plant &plant, Cuts &cuts, QTextStream &out)
{
    Random pauses(options.seed + 1);
    for (int i = 0; i < options.cuts; ++i) {
        const QString what = cuts.cutOne();
        if (what.isEmpty() || !cuts.heal()) {
            out << "outages: something did not come back after cut " << i << ", " << what << '\n';
            return false;
        }
        QTest::qWait(pauses.between(1, options.pauseMs));
        plant.messageCount(); // takes what the broker has sent
    }
    return cuts.healAll();
}

void sayResult(Plant &plant, const Cuts &cuts, QTextStream &out)
{
    for (auto it = cuts.counts().begin(); it != cuts.counts().end(); ++it) {
        out << QString::fromLatin1("  %1 %2\n").arg(it.value(), 4).arg(it.key());
    }
    out << "changes " << plant.ledger().taken.size() << " in " << plant.ledger().last
        << " batches, messages at the broker " << plant.messageCount() << ", of them old "
        << plant.oldMessages() << ", good values "
        << EdgeRecord::goodOnes(plant.ledger().taken).size() << ", at hosts of the edge node "
        << plant.edgeCount() << '\n';
    for (auto it = plant.ledger().dropped.begin(); it != plant.ledger().dropped.end(); ++it) {
        out << "dropped for " << it.key() << ": " << it.value() << '\n';
    }
}

/** @return exit code */
int judge(const Options &options, Plant &plant, QStringList &faults, QTextStream &out)
{
    const auto dropped = plant.ledger().dropped;
    const bool isSomeDropped =
        std::any_of(dropped.begin(), dropped.end(), [](qint64 count) { return count > 0; });
    if (isSomeDropped != (options.ledgerKb > 0)) {
        faults.append(QLatin1String(isSomeDropped ? "ledger: it dropped something"
                                                  : "ledger: it dropped nothing"));
    }
    if (options.isLossExpected) {
        const QStringList losses = faults.filter(QLatin1String("lacks what the ledger took"));
        out << losses.join(QLatin1Char('\n')) << "\noutages: "
            << (losses.isEmpty() ? "FAILED, no loss is seen\n" : "the loss is seen\n");
        return losses.isEmpty() ? 1 : 0;
    }
    for (const QString &fault : faults) {
        out << "FAULT " << fault << '\n';
    }
    if (!faults.isEmpty()) {
        out << "The gateway said:\n" << plant.messages().right(6000) << '\n';
    }
    out << (faults.isEmpty() ? "outages: nothing is lost\n" : "outages: FAILED\n");
    return faults.isEmpty() ? 0 : 1;
}

int run(const Options &options, QTextStream &out)
{
    QElapsedTimer clock;
    clock.start();
    Plant plant({options.gateway, options.ledgerKb});
    QString trouble = plant.start();
    if (trouble.isEmpty() && !QTest::qWaitFor([&] { return plant.hasBegun(); }, kStartMs)) {
        trouble = QLatin1String("nothing arrives");
    }
    if (!trouble.isEmpty()) {
        out << "outages: " << trouble << '\n';
        return 1;
    }
    const bool isAway = options.ledgerKb > 0;
    Cuts cuts(plant, options.seed, isAway ? Cuts::Which::WhileSinksAreAway : Cuts::Which::All);
    if ((isAway && !takeSinksAway(plant)) || !cutAll(options, plant, cuts, out)) {
        out << "outages: FAILED\n";
        return 1;
    }
    if (isAway) {
        (void)QTest::qWaitFor([&] { return plant.isDropping(); }, kStartMs);
    }
    QTest::qWait(1000);
    const qint64 cutMs = clock.elapsed();
    // Without a line, changes come to an end.
    plant.relay(Plant::Part::Plc).close();
    QStringList faults;
    if ((isAway && !bringSinksBack(plant)) || !waitUntilDrained(plant)) {
        faults.append(QLatin1String("gateway: it took too long until all had come"));
    }
    plant.kill(Plant::Part::Gateway);
    faults += plant.audit();
    sayResult(plant, cuts, out);
    const int code = judge(options, plant, faults, out);
    out << QString::fromLatin1("%1 s, of them %2 s until all had come and was audited\n")
               .arg(double(clock.elapsed()) / 1000, 0, 'f', 1)
               .arg(double(clock.elapsed() - cutMs) / 1000, 0, 'f', 1);
    return code;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Options options = optionsOf(application);
    QTextStream out(stdout);
    out << "outages: --cuts " << options.cuts << " --seed " << options.seed << '\n';
    out.flush();
    return run(options, out);
}
