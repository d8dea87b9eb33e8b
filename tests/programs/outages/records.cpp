#include "outages/records.h"

#include "gateway/change/batch_codec.h"
#include "gateway/store/ledger.h"

#include "host/time/system_clock.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace cnet;
using namespace cnet::gateway;

namespace {

const char kMarkTopic[] = "mark";

QByteArray valueText(const Scalar &value)
{
    const auto *whole = std::get_if<qint64>(&value);
    return whole == nullptr ? QByteArray() : QByteArray::number(*whole);
}

Told toldOf(const Change &change)
{
    return {change.source->tag.toUtf8(),
            whatOf(valueText(change.value), qualityText(change.quality).toUtf8(),
                   change.cause.toUtf8(), change.atMs)};
}

// The gateway may be making the file just now.
qint64 numberIn(const QString &file, const char *sql)
{
    Database database;
    if (!database.openToRead(file).isNone()) {
        return 0;
    }
    Statement read(database, sql);
    return read.step() == Statement::Step::Row ? read.number(0) : 0;
}

} // namespace

QVector<Told> readHistory(const QString &file)
{
    QVector<Told> all;
    Database database;
    database.openToRead(file);
    Statement read(database, "SELECT tag, value, quality, reason, time_ms FROM history"
                             " ORDER BY id");
    while (read.step() == Statement::Step::Row) {
        all.append({read.text(0).toUtf8(), whatOf(valueText(read.scalar(1)), read.text(2).toUtf8(),
                                                  read.text(3).toUtf8(), read.number(4))});
    }
    return all;
}

qint64 takenByHistory(const QString &file)
{
    return numberIn(file, "SELECT number FROM taken");
}

bool makeWatchedLedger(const QString &file, const QStringList &sinks)
{
    const auto durability = Database::Durability::Full;
    {
        Ledger ledger(SystemClock::instance());
        if (!ledger.open(file, durability, LedgerBounds(), sinks).isNone()) {
            return false;
        }
    }
    Database database;
    return database.open(file, durability).isNone() &&
           database
               .run("CREATE TABLE copy (number INTEGER PRIMARY KEY, body BLOB NOT NULL);"
                    "CREATE TRIGGER keep_copy AFTER INSERT ON batch BEGIN"
                    " INSERT INTO copy VALUES (new.number, new.body); END;")
               .isNone();
}

LedgerRecord readLedger(const QString &file)
{
    LedgerRecord record;
    record.last = lastOfLedger(file);
    Database database;
    database.openToRead(file);
    Statement read(database, "SELECT number, body FROM copy ORDER BY number");
    qint64 expected = 0;
    while (read.step() == Statement::Step::Row) {
        const auto changes = readBatch(read.bytes(1));
        record.isWhole = record.isWhole && read.number(0) == ++expected && changes.has_value();
        for (const Change &change : changes.value_or(QVector<Change>())) {
            record.taken.append(toldOf(change));
        }
    }
    record.isWhole = record.isWhole && expected == record.last;
    Statement sinks(database, "SELECT name, dropped FROM sink");
    while (sinks.step() == Statement::Step::Row) {
        record.dropped[sinks.text(0)] = sinks.number(1);
    }
    return record;
}

qint64 lastOfLedger(const QString &file)
{
    return numberIn(file, "SELECT seq FROM sqlite_sequence WHERE name = 'batch'");
}

QVector<Told> readDatabase(const PostgresServer &server)
{
    QVector<Told> all;
    const auto rows = server.sql("SELECT tag, coalesce(value, ''), quality, reason,"
                                 " (extract(epoch FROM time) * 1000)::bigint"
                                 " FROM cnet.history ORDER BY id");
    for (const QStringList &row : rows) {
        all.append(
            {row.value(0).toUtf8(), whatOf(row.value(1).toUtf8(), row.value(2).toUtf8(),
                                           row.value(3).toUtf8(), row.value(4).toLongLong())});
    }
    return all;
}

qint64 takenByDatabase(const PostgresServer &server)
{
    // Before the sink has made its tables there is nothing.
    return server.value("SELECT to_regclass('cnet.taken')").isEmpty()
               ? 0
               : server.value("SELECT coalesce(max(number), 0) FROM cnet.taken").toLongLong();
}

std::optional<Told> toldByMessage(const QByteArray &topic, const QByteArray &payload)
{
    if (!topic.startsWith("plant/press/1/")) {
        return std::nullopt;
    }
    const QJsonObject object = QJsonDocument::fromJson(payload).object();
    const auto text = [&object](const char *key) {
        return object.value(QLatin1String(key)).toString().toUtf8();
    };
    const QJsonValue value = object.value(QLatin1String("v"));
    const QByteArray number =
        value.isDouble() ? QByteArray::number(qint64(value.toDouble())) : QByteArray();
    const auto atMs = qint64(object.value(QLatin1String("t")).toDouble());
    const QByteArray level = topic.mid(topic.lastIndexOf('/') + 1);
    return Told{QByteArray::fromPercentEncoding(level),
                whatOf(number, text("q"), text("why"), atMs),
                object.value(QLatin1String("old")).toBool(), 0};
}

// A broker hands on in order, so that what comes back was behind all the rest.
bool BrokerRecord::catchUp()
{
    spcheck::Message mark;
    mark.topic = kMarkTopic;
    mark.payload = QByteArray::number(++m_asked);
    m_watcher.publish(mark);
    return QTest::qWaitFor(
        [this] {
            read();
            return m_marks == m_asked || !m_watcher.isConnected();
        },
        10000);
}

bool BrokerRecord::finishReading()
{
    const bool isOver = QTest::qWaitFor([this] { return !m_watcher.isConnected(); }, 10000);
    read();
    return isOver;
}

const QVector<Told> &BrokerRecord::all()
{
    read();
    return m_all;
}

const EdgeRecord &BrokerRecord::edge()
{
    read();
    return m_edge;
}

void BrokerRecord::read()
{
    const QList<spcheck::Message> &seen = m_watcher.seen();
    for (; m_read < seen.size(); ++m_read) {
        read(seen.at(m_read));
    }
}

void BrokerRecord::read(const spcheck::Message &message)
{
    if (message.topic == kMarkTopic) {
        m_marks = message.payload.toInt();
        return;
    }
    if (m_edge.take(message)) {
        return;
    }
    if (message.topic == "plant/status") {
        m_connection += message.payload.startsWith(R"({"s":"online")") ? 1 : 0;
        return;
    }
    auto told = toldByMessage(message.topic, message.payload);
    if (told) {
        told->connection = m_connection;
        m_all.append(*told);
    }
}
