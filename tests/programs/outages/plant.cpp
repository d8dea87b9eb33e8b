#include "outages/plant.h"

#include "outages/audit.h"

#include <sys/resource.h>

#include <csignal>
#include <iterator>

using namespace cnet::gateway;

namespace {

// A busy line: whenever one of its tags is read, it has changed.
const int kTags = 300;
const int kFirstAddress = 100;
const int kApart = 100000; // what one tag counts never comes near another one's
const char *const kSinks[] = {"history", "centre", "archive", "scada"};

int addressOf(int tag)
{
    return kFirstAddress + 2 * tag;
}

} // namespace

QString Plant::start()
{
    // A file that may not grow refuses, as a full disk does, and ends nobody.
    std::signal(SIGXFSZ, SIG_IGN);
    m_clock.setFileName(file("clock"));
    if (!m_clock.open(QIODevice::ReadWrite) || !setClock(0)) {
        return QLatin1String("the clock's file cannot be written");
    }
    if (!m_broker.start("allow_anonymous true\nmax_queued_messages 0\n") ||
        !m_record.start(m_broker.port())) {
        return QLatin1String("mosquitto does not start");
    }
    if (!m_database.make()) {
        return QLatin1String("PostgreSQL does not start");
    }
    m_isDatabaseUp = true;
    if (!startPlc()) {
        return QLatin1String("cnet-plc does not start");
    }
    const quint16 plc = m_plcPlace.section(QLatin1Char(':'), 1).toUShort();
    if (!m_toBroker.start(m_broker.port()) || !m_toPlc.start(plc) ||
        !m_toDatabase.start(quint16(m_database.port())) ||
        m_database.sql("GRANT CREATE ON DATABASE plant TO gateway").isEmpty()) {
        return QLatin1String("there is no way to broker, PLC and database");
    }
    QStringList sinks;
    for (const char *sink : this->sinks()) {
        sinks << QLatin1String(sink);
    }
    if (!makeWatchedLedger(file("ledger.sqlite"), sinks) || !configure() || !startGateway()) {
        return QLatin1String("cnet-gateway does not start");
    }
    return QString();
}

// What bounds drop of values that hosts are told otherwise, nobody could tell by counting.
QVector<const char *> Plant::sinks() const
{
    QVector<const char *> sinks;
    std::copy(std::begin(kSinks), std::end(kSinks) - (m_isBounded ? 1 : 0),
              std::back_inserter(sinks));
    return sinks;
}

bool Plant::configure()
{
    QByteArray tags = "name,register,address,type\n";
    for (int i = 0; i < kTags; ++i) {
        const QByteArray address = QByteArray::number(addressOf(i));
        tags += "count" + QByteArray::number(i) + ",D_W," + address + ",u32\n";
    }
    const QByteArray ledger =
        m_settings.ledgerKb == 0
            ? QByteArray()
            : "[ledger]\nsize = \"" + QByteArray::number(m_settings.ledgerKb) + "kB\"\n";
    const auto at = [](const CutRelay &relay) { return QByteArray::number(relay.port()); };
    return m_folder.store("tags.csv", tags) && m_folder.store("password", "right\n") &&
           m_folder.store("gateway.toml",
                          "[batch]\nage = \"100ms\"\nchanges = 70\n" + ledger +
                              "[line.press]\ntags = \"tags.csv\"\ninterval = \"200ms\"\n"
                              "link = \"tcp:127.0.0.1:" +
                              at(m_toPlc) +
                              "\"\n[sink.history]\n"
                              "[sink.centre]\nkind = \"mqtt\"\nsite = \"plant\"\n"
                              "keep_alive = \"5s\"\nbrokers = \"tcp:127.0.0.1:" +
                              at(m_toBroker) +
                              "\"\n[sink.archive]\nkind = \"postgresql\"\nhost = \"127.0.0.1\"\n"
                              "database = \"plant\"\nuser = \"gateway\"\ncreate = true\n"
                              "password_file = \"password\"\ntimeout = \"5s\"\nport = " +
                              at(m_toDatabase) + "\n" +
                              (m_isBounded ? QByteArray()
                                           : "[sink.scada]\nkind = \"sparkplug\"\n"
                                             "group = \"plant\"\nnode = \"gate\"\n"
                                             "keep_alive = \"5s\"\nspread = \"0s\"\n"
                                             "brokers = \"tcp:127.0.0.1:" +
                                                 at(m_toBroker) + "\"\n"));
}

bool Plant::startPlc()
{
    const QString place = m_plcPlace.isEmpty() ? QLatin1String("127.0.0.1:0") : m_plcPlace;
    QStringList counters;
    for (int i = 0; i < kTags; ++i) {
        counters << QLatin1String("--counter")
                 << QString::fromLatin1("D_W:%1=%2..4294967295@%3")
                        .arg(addressOf(i))
                        .arg((i + 1) * kApart)
                        .arg(20 + i % 90);
    }
    m_plc = std::make_unique<PlcProgram>();
    const bool isThere = m_plc->serve({QLatin1String("--tcp"), place}, counters);
    m_plcPlace = m_plc->place();
    return isThere;
}

bool Plant::startGateway()
{
    endGateway();
    m_isLimited = false;
    m_gateway = std::make_unique<Program>();
    m_gateway->setVariable("CLOCK_STEP_FILE", QFile::encodeName(m_clock.fileName()).constData());
    m_gateway->setVariable("LD_PRELOAD", CLOCK_STEP);
    // What is loaded in front of a sanitizer is there for a purpose.
    const QByteArray options = qgetenv("ASAN_OPTIONS");
    m_gateway->setVariable(
        "ASAN_OPTIONS",
        (options + (options.isEmpty() ? "" : ":") + "verify_asan_link_order=0").constData());
    const QByteArray state = QFile::encodeName(folder());
    m_gateway->setVariable("STATE_DIRECTORY", state.constData());
    return m_gateway->startBytes(QFile::encodeName(m_settings.gateway),
                                 {"run", QFile::encodeName(file("gateway.toml"))});
}

void Plant::kill(Part part)
{
    switch (part) {
    case Part::Broker:
        // Whoever comes before the subscriber would speak to nobody.
        m_toBroker.setRefusing(true);
        m_broker.resume();
        // What it confirmed it had handed on, though not to a subscriber that was slow.
        if (!m_record.catchUp()) {
            m_complaints.append(QLatin1String("broker: it hands nothing on"));
        }
        m_broker.kill();
        if (!m_record.finishReading()) {
            m_complaints.append(QLatin1String("broker: its connections outlive it"));
        }
        break;
    case Part::Gateway:
        endGateway();
        break;
    case Part::Plc:
        m_plc->signal(SIGKILL);
        m_plc->exitCode();
        break;
    case Part::Database:
        m_isDatabaseUp = false;
        m_database.kill();
        break;
    }
}

bool Plant::revive(Part part)
{
    bool isThere = true;
    switch (part) {
    case Part::Broker:
        isThere = m_broker.restart() && m_record.start(m_broker.port());
        m_toBroker.setRefusing(!isThere);
        break;
    case Part::Gateway:
        isThere = startGateway();
        break;
    case Part::Plc:
        isThere = startPlc();
        break;
    case Part::Database:
        isThere = m_database.start();
        m_isDatabaseUp = isThere;
        break;
    }
    return isThere;
}

bool Plant::isAlive(Part part) const
{
    switch (part) {
    case Part::Broker:
        return m_broker.isRunning();
    case Part::Gateway:
        return m_gateway && m_gateway->isRunning();
    case Part::Plc:
        return m_plc->isRunning();
    case Part::Database:
        break;
    }
    return m_isDatabaseUp;
}

CutRelay &Plant::relay(Part part)
{
    return part == Part::Broker ? m_toBroker : part == Part::Plc ? m_toPlc : m_toDatabase;
}

void Plant::limitFiles(qint64 bytes)
{
    const auto id = m_gateway ? static_cast<pid_t>(m_gateway->id()) : 0;
    rlimit limit = {};
    m_isLimited = m_isLimited || bytes >= 0;
    if (id > 0 && prlimit(id, RLIMIT_FSIZE, nullptr, &limit) == 0) {
        limit.rlim_cur = bytes < 0 ? limit.rlim_max : static_cast<rlim_t>(bytes);
        prlimit(id, RLIMIT_FSIZE, &limit, nullptr);
    }
}

bool Plant::setClock(qint64 secondsAhead)
{
    m_clock.seek(0);
    return m_clock.write(reinterpret_cast<const char *>(&secondsAhead), sizeof secondsAhead) ==
               sizeof secondsAhead &&
           m_clock.flush();
}

void Plant::setSinksAway(bool isAway)
{
    m_toBroker.setRefusing(isAway);
    m_toDatabase.setRefusing(isAway);
}

bool Plant::setLedgerKb(int bound)
{
    m_settings.ledgerKb = bound;
    return configure();
}

// Whether that is true the audit finds out.
bool Plant::isDrained(qint64 withinMs) const
{
    const Standing standing = standingIn(folder());
    return standing.sinks == int(sinks().size()) && standing.waitingBatches == 0 &&
           standing.ageMs < withinMs;
}

bool Plant::hasBegun()
{
    return takenByHistory(file("history.sqlite")) > 0 && takenByDatabase(m_database) > 0 &&
           messageCount() > 0 && (m_isBounded || edgeCount() > 0);
}

bool Plant::hasHistoryAll() const
{
    const qint64 last = lastOfLedger(file("ledger.sqlite"));
    return last > 0 && takenByHistory(file("history.sqlite")) == last;
}

qint64 Plant::progress()
{
    return takenByHistory(file("history.sqlite")) + takenByDatabase(m_database) +
           m_record.all().size() + m_record.edge().all().size();
}

QStringList Plant::audit()
{
    m_ledger = readLedger(file("ledger.sqlite"));
    for (const Told &told : m_record.all()) {
        m_oldMessages += told.isOld ? 1 : 0;
    }
    QStringList faults = m_complaints;
    checkLedger(faults);
    const auto check = [&](const char *sink, const QVector<Told> &told, auto how) {
        Audit audit(m_ledger.taken);
        audit.leaveOut(sink, told, m_ledger.dropped.value(QLatin1String(sink), -1));
        (audit.*how)(sink, told);
        faults += audit.faults();
    };
    check(kSinks[0], readHistory(file("history.sqlite")), &Audit::checkHistory);
    check(kSinks[1], m_record.all(), &Audit::checkStream);
    check(kSinks[2], readDatabase(m_database), &Audit::checkHistory);
    if (!m_isBounded) {
        Audit audit(EdgeRecord::goodOnes(m_ledger.taken));
        audit.checkFirsts(kSinks[3], m_record.edge().all());
        faults += audit.faults();
    }
    return faults;
}

void Plant::checkLedger(QStringList &faults) const
{
    if (!m_ledger.isWhole || m_ledger.last == 0) {
        faults.append(QLatin1String("ledger: its copy has a gap"));
    }
    if (m_ledger.dropped.size() != int(sinks().size())) {
        faults.append(QLatin1String("ledger: it does not count for each sink"));
    }
    if (!hasHistoryAll()) {
        faults.append(QLatin1String("history: is behind the ledger"));
    }
}

// A gateway that nobody killed runs.
void Plant::endGateway()
{
    if (!m_gateway) {
        return;
    }
    const bool isRunning = m_gateway->isRunning();
    if (isRunning) {
        m_gateway->signal(SIGKILL);
    }
    const int code = m_gateway->exitCode();
    const QByteArray errors = m_gateway->errors();
    // Without room for its files it cannot begin, says so, and is started again by whoever did.
    const bool isRefusal = m_isLimited && code == 1 && errors.contains("cannot open the ledger");
    if (!isRunning && !isRefusal) {
        m_complaints.append(QString::fromLatin1("gateway: ended by itself with %1: ").arg(code) +
                            QString::fromUtf8(errors.right(3000)));
    }
    m_messages += errors;
    m_gateway.reset();
}
