#include "rate.h"

#include "gateway/mqtt/batch_messages.h"
#include "gateway/postgresql/copy_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

using namespace cnet;
using namespace cnet::gateway;

namespace {

constexpr int kTags = 12500;
constexpr int kChangesOfBatch = 5000;
constexpr qint64 kFirst = 50000; // so that all is connected and known

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

TopicTemplate topicOf(const char *text)
{
    QString error;
    return TopicTemplate::parse(latin(text), latin("plant"), error).value_or(TopicTemplate());
}

TopicTemplate topicOfKind(const QString &kind)
{
    return topicOf(kind == latin("grouped") ? "{site}/{line}/{station}"
                                            : "{site}/{line}/{station}/{tag}");
}

MqttConnectionSettings brokerAt(int port)
{
    MqttConnectionSettings settings;
    settings.brokers = {{latin("127.0.0.1"), static_cast<quint16>(port), false}};
    return settings;
}

PostgresqlSettings serverAt(const QString &folder, int port)
{
    PostgresqlSettings settings;
    settings.host = folder;
    settings.port = port;
    settings.database = latin("postgres");
    settings.user = latin("bench");
    settings.sslMode = latin("disable");
    settings.schema = latin("cnet");
    settings.isCreating = true;
    return settings;
}

SinkSettings sinkOf(const QString &kind, const QString &place, const QString &folder)
{
    if (kind == latin("postgresql")) {
        return serverAt(place.section(QLatin1Char(':'), 0, 0),
                        place.section(QLatin1Char(':'), 1).toInt());
    }
    if (kind == latin("sqlite")) {
        SqliteSettings settings;
        settings.path = folder + latin("/history.sqlite");
        return settings;
    }
    if (kind == latin("sparkplug")) {
        SparkplugSettings settings;
        settings.connection = brokerAt(place.toInt());
        settings.group = latin("plant");
        settings.node = latin("bench");
        settings.numberFile = folder + latin("/number");
        return settings;
    }
    MqttSettings settings;
    settings.connection = brokerAt(place.toInt());
    settings.topic = topicOfKind(kind);
    settings.status = topicOf("{site}/status");
    settings.inFlight = 500;
    return settings;
}

void measure(const QString &kind, const QString &place, qint64 values, const QString &below)
{
    const QTemporaryDir folder(below + latin("/bench-XXXXXX"));
    GatewayConfig config;
    config.sinks = {{latin("sink"), sinkOf(kind, place, folder.path())}};
    config.ledger.path = folder.filePath(latin("ledger.sqlite"));
    RateMeter meter(config);
    Load load(kTags);
    meter.bring(load, kFirst);
    const Rate rate = meter.bring(load, values);
    const auto count = static_cast<double>(values);
    std::printf(
        "%-16s %9.0f values/s  %6.2f us of CPU a value  %5.1f bytes a value in the ledger\n",
        qPrintable(kind), count / rate.seconds, rate.cpuSeconds / count * 1e6,
        static_cast<double>(rate.ledgerBytes) / count);
}

/** The rows that the sink copies, for another program. */
bool writeRows(QFile &out, Load &load, qint64 values)
{
    CopyText text;
    bool isFine = true;
    for (qint64 i = 0; i < values && isFine; ++i) {
        text.add(load.next(), 1 + i % kTags, 1);
        if (i % kChangesOfBatch == kChangesOfBatch - 1) {
            isFine = out.write(text.finish()) > 0;
        }
    }
    return isFine;
}

/** The messages that the sink publishes, for another program: topic, blank, payload. */
bool writeMessages(QFile &out, Load &load, qint64 values, const QString &kind)
{
    BatchMessages messages(topicOfKind(kind), false);
    bool isFine = true;
    for (qint64 left = values; left > 0 && isFine; left -= kChangesOfBatch) {
        SinkBatch batch;
        for (int i = 0; i < kChangesOfBatch; ++i) {
            batch.changes.append(load.next());
        }
        for (const MqttMessage &message : messages.of(batch)) {
            isFine = isFine && out.write(message.topic.toUtf8() + ' ' + message.payload + '\n') > 0;
        }
    }
    return isFine;
}

} // namespace

// bench_gateway KIND PLACE VALUES FOLDER: KIND is sqlite, postgresql (PLACE is
// FOLDER_OF_SOCKET:PORT), mqtt, grouped or sparkplug (PLACE is the port of a broker on this
// computer). bench_gateway write rows|mqtt|grouped VALUES: what other programs are to bring.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "see the head of main()\n");
        return 2;
    }
    const qint64 values = arguments.at(3).toLongLong();
    if (arguments.at(1) != latin("write")) {
        measure(arguments.at(1), arguments.at(2), values, arguments.value(4, latin("/tmp")));
        return 0;
    }
    QFile out;
    Load load(kTags);
    const bool isFine =
        out.open(stdout, QIODevice::WriteOnly) &&
        (arguments.at(2) == latin("rows") ? writeRows(out, load, values)
                                          : writeMessages(out, load, values, arguments.at(2)));
    return isFine ? 0 : 1;
}
