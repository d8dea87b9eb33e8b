#include "gateway/config/mqtt_kind.h"

#include "gateway/config/secret_keys.h"

#include <QDir>
#include <QStringList>

#include <algorithm>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
// What libmosquitto and the protocol know.
constexpr qint64 kLeastKeepAliveMs = 5 * kSecondMs;
constexpr qint64 kMostKeepAliveMs = 3600 * kSecondMs;
constexpr int kMostInFlight = 20000;
constexpr int kUsualInFlight = 500;
constexpr int kMostBrokers = 8;

std::optional<MqttBroker> brokerOf(const QString &text)
{
    QString unused;
    MqttBroker broker;
    broker.isTls = text.startsWith(QLatin1String("tls:"));
    const auto address =
        parseLinkAddress(broker.isTls ? QLatin1String("tcp:") + text.mid(4) : text, unused);
    if (!address || address->kind != LinkAddress::Kind::Tcp) {
        return std::nullopt;
    }
    broker.host = address->host;
    broker.port = address->port;
    return broker;
}

QVector<MqttBroker> readBrokers(ConfigTable &table)
{
    QVector<MqttBroker> brokers;
    const auto text = table.neededText("brokers", "brokers = \"tls:broker.example:8883\"");
    if (!text) {
        return brokers;
    }
    const QStringList parts = text->split(QLatin1Char(','));
    for (const QString &part : parts) {
        const auto broker = brokerOf(part.trimmed());
        if (!broker || parts.size() > kMostBrokers) {
            table.complain("brokers",
                           QString::fromLatin1("expected tcp:HOST:PORT or tls:HOST:PORT, up to %1 "
                                               "of them with commas")
                               .arg(kMostBrokers));
            break;
        }
        brokers.append(*broker);
    }
    return brokers;
}

void readLogin(ConfigTable &table, const QString &folder, MqttConnectionSettings &settings)
{
    settings.user = table.text("user").value_or(QString());
    settings.password = readSecretKeys(table, folder);
    if (settings.user.isEmpty() &&
        !(settings.password.file.isEmpty() && settings.password.credential.isEmpty())) {
        table.complain(QLatin1String("there is a password, and no user"));
    }
}

void readTls(ConfigTable &table, const QString &folder, MqttConnectionSettings &settings)
{
    const auto file = [&](const char *key) {
        const auto path = table.text(key);
        return path ? QDir(folder).filePath(*path) : QString();
    };
    settings.caFile = file("ca");
    settings.certificateFile = file("certificate");
    settings.keyFile = file("key");
    settings.checksName = table.truth("check_name", true);
    if (settings.certificateFile.isEmpty() != settings.keyFile.isEmpty()) {
        table.complain(QLatin1String("certificate and key need each other"));
    }
    bool isTls = settings.brokers.isEmpty();
    for (const MqttBroker &broker : qAsConst(settings.brokers)) {
        isTls = isTls || broker.isTls;
    }
    for (const char *key : {"ca", "certificate", "key", "check_name"}) {
        if (!isTls && table.has(key)) {
            table.complain(key, QLatin1String("no broker begins with tls:"));
        }
    }
}

/** Reads the topics of a sink, which depend on each other. */
class TopicReader
{
public:
    explicit TopicReader(ConfigTable &table)
        : m_table(table)
        , m_site(table.text("site").value_or(QString()))
        , m_escaped(table.text("escape").value_or(QString()))
    {
        // What tells escapes, places and numbers from each other.
        const auto isNeeded = [](QChar own) {
            return own.unicode() >= 0x7f || own.isLetterOrNumber() ||
                   QLatin1String("/{}%_").contains(own);
        };
        if (std::any_of(m_escaped.begin(), m_escaped.end(), isNeeded)) {
            m_table.complain("escape", QLatin1String("expected signs like \".\" and \" \""));
        }
    }

    TopicTemplate read(const char *key, const char *usual)
    {
        QString error;
        const QString text = m_table.text(key).value_or(QLatin1String(usual));
        const auto topic = TopicTemplate::parse(text, m_site, error, m_escaped);
        if (!topic) {
            m_isFine = false;
            m_table.complain(key, error);
        }
        return topic.value_or(TopicTemplate());
    }

    void demand(const char *key, bool holds, const char *text)
    {
        if (m_isFine && !holds) {
            m_table.complain(key, QLatin1String(text));
        }
    }

private:
    ConfigTable &m_table;
    QString m_site;
    QString m_escaped;
    bool m_isFine = true; ///< what is demanded of a template needs it
};

bool hasNone(const TopicTemplate &topic)
{
    return !topic.has(TopicTemplate::Place::Line) && !topic.has(TopicTemplate::Place::Station) &&
           !topic.has(TopicTemplate::Place::Tag);
}

/** All that this gateway publishes by itself. */
QVector<TopicTemplate> published(const MqttSettings &settings)
{
    const QString line = QLatin1String("{line}");
    return {settings.topic, settings.status, settings.status.with({line}),
            settings.status.with({line, QLatin1String("{station}")}), settings.answers};
}

void readCommands(ConfigTable &table, TopicReader &topics, MqttSettings &settings)
{
    using Place = TopicTemplate::Place;
    if (!table.has("commands")) {
        if (table.has("answers")) {
            table.complain("answers", QLatin1String("there are no commands"));
        }
        table.text("commands");
        table.text("answers");
        return;
    }
    const TopicTemplate commands = topics.read("commands", "");
    settings.answers = table.has("answers") ? topics.read("answers", "")
                                            : commands.with({QLatin1String("answer")});
    topics.demand("commands", commands.has(Place::Line) && commands.has(Place::Tag),
                  "expected {line} and {tag} in it, which say what is written");
    topics.demand("commands", !commands.has(Place::Station),
                  "expected no {station}: line and tag say what is written");
    for (const TopicTemplate &own : published(settings)) {
        topics.demand("commands", !commands.overlaps(own),
                      "the gateway itself publishes on such topics; for example commands = "
                      "\"{site}/write/{line}/{tag}/set\"");
    }
    settings.commands = commands;
}

} // namespace

MqttConnectionSettings readMqttConnection(ConfigTable &table, const QString &folder)
{
    using Version = MqttConnectionSettings::Version;
    MqttConnectionSettings settings;
    settings.brokers = readBrokers(table);
    const int version = table.choice("version", {QLatin1String("3.1.1"), QLatin1String("5")}, 0);
    settings.version = version == 0 ? Version::V311 : Version::V5;
    settings.clientId = table.text("client_id").value_or(QString());
    settings.keepAliveS =
        static_cast<int>(table.duration("keep_alive", kLeastKeepAliveMs, kMostKeepAliveMs,
                                        settings.keepAliveS * kSecondMs) /
                         kSecondMs);
    readLogin(table, folder, settings);
    readTls(table, folder, settings);
    return settings;
}

MqttSettings readMqtt(ConfigTable &table, const ConfigFolders &folders)
{
    using Place = TopicTemplate::Place;
    MqttSettings settings;
    settings.connection = readMqttConnection(table, folders.config);
    TopicReader topics(table);
    settings.topic = topics.read("topic", "{site}/{line}/{station}/{tag}");
    settings.status = topics.read("status", "{site}/status");
    settings.isRetained = table.truth("retain", false);
    settings.retainedFile = QDir(folders.state).filePath(table.name() + QLatin1String(".retained"));
    settings.inFlight = table.number("in_flight", 1, kMostInFlight, kUsualInFlight);
    topics.demand("topic", settings.topic.has(Place::Line),
                  "expected {line} in it: a tag's name is that of its line");
    topics.demand("retain", !settings.isRetained || settings.topic.has(Place::Tag),
                  "without {tag} in the topic a message has what changed last, and not all");
    topics.demand("status", hasNone(settings.status),
                  "expected {site} and words; line and station follow behind");
    readCommands(table, topics, settings);
    return settings;
}

} // namespace cnet::gateway
