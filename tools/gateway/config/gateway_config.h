#pragma once

#include "gateway/change/batcher.h"
#include "gateway/change/topic_template.h"
#include "gateway/store/ledger.h"
#include "gateway/toml/config_node.h"
#include "gateway/toml/config_units.h"

#include "host/link/link_address.h"
#include "host/session_options.h"
#include "host/tag/tag_set.h"

#include <QMetaType>
#include <QString>
#include <QVector>

#include <optional>
#include <variant>

namespace cnet::gateway {

/** Where files are that the configuration names without a folder of their own. */
struct ConfigFolders
{
    QString config; ///< what people write: tags, passwords, certificates; that of the configuration
    QString state;  ///< what the gateway writes, where the configuration does not say
};

/** When a value is told besides its changes. */
struct ReportRules
{
    qint64 leastMs = 0;   ///< at least so long from one telling to the next; 0: each change
    qint64 longestMs = 0; ///< a value that does not change is told again after this; 0: never
};

/** Tags that may be written from outside, by their names, and within what. */
struct AllowRule
{
    QString pattern; ///< of a tag's name or of a value's, "mould.zones[*]"; with * and ?
    ConfigPlace place;
    std::optional<double> min; ///< in the tag's unit; its own bounds hold as well
    std::optional<double> max;
    std::optional<double> step; ///< above 0: from the least value on, or from 0
};

/** How often something may be written. */
struct WriteRate
{
    int perMinute = 0; ///< 1 or more
    int burst = 0;     ///< so many at once, 1 or more
};

/** What may be written to a line from outside. */
struct WriteRules
{
    QVector<AllowRule> allow; ///< none: nothing may; the limits of each that fits hold
    WriteRate line{60, 10};
    WriteRate value{12, 4}; ///< of each one
    qint64 waitMs = 10000;  ///< a request that could not be sent by then is refused
};

/** Where requests from outside are written down, and what became of them. */
struct AuditConfig
{
    QString path;
    qint64 bytes = 10LL * 1000 * 1000; ///< of a file; then the next one begins
    int files = 10;                    ///< kept, 2 or more

    bool operator==(const AuditConfig &other) const
    {
        return path == other.path && bytes == other.bytes && files == other.files;
    }
};

/** One line with its stations and tags. */
struct LineConfig
{
    QString name;
    std::optional<LinkAddress> link; ///< nothing: a simulated press line within the program
    SessionOptions session;
    int station = 1; ///< of tags that name none
    QString tagFile; ///< empty: there is none, which is a mistake
    ConfigPlace tagsPlace;
    std::optional<TagSet> tags; ///< of that file; nothing: it is not read yet
    ReportRules report;
    QString written; ///< of link and session: what has the same needs no other one
    WriteRules writes;
};

/** A file that keeps what was seen. */
struct SqliteSettings
{
    QString path;
    qint64 ageMs = 365LL * 24 * 60 * 60 * 1000; ///< older values go, 1 or more
    qint64 bytes = 4LL * 1000 * 1000 * 1000;    ///< beyond it the oldest values go, 1 or more
};

/** A password that is not in the configuration: in a file, or handed over by the service manager.
 */
struct Secret
{
    QString file;       ///< its path; empty: it is a credential
    QString credential; ///< its name; empty as well: there is no password
};

/** Where an MQTT broker listens. */
struct MqttBroker
{
    QString host;
    quint16 port = 0;
    bool isTls = false;
};

/** How brokers are reached, whatever is said to them. */
struct MqttConnectionSettings
{
    enum class Version { V311, V5 };

    QVector<MqttBroker> brokers; ///< at least one; the first one that works is taken
    Version version = Version::V311;
    QString clientId; ///< empty: the broker gives one
    int keepAliveS = 10;
    QString user; ///< empty: none
    Secret password;
    QString caFile;          ///< empty: what the system trusts
    QString certificateFile; ///< of this client; empty: none
    QString keyFile;
    bool checksName = true; ///< whether the broker's certificate is for its host
};

/** What is published at MQTT brokers, and where. Topics have their site filled in. */
struct MqttSettings
{
    MqttConnectionSettings connection;
    TopicTemplate topic;
    TopicTemplate status;                  ///< of the gateway; lines and stations below it
    std::optional<TopicTemplate> commands; ///< nothing: there are none
    TopicTemplate answers;
    bool isRetained = false;
    int inFlight = 1;     ///< messages that wait for their confirmation, 1 or more
    QString retainedFile; ///< keeps what was retained, and where; empty: it is not kept
};

/** A PostgreSQL database. */
struct PostgresqlSettings
{
    QString host; ///< a name, an address, or the folder of a socket of this computer
    int port = 5432;
    QString database;
    QString user; ///< empty: that of the process
    Secret password;
    QString sslMode; ///< in libpq's words
    QString rootCertificate;
    QString certificate; ///< of this client; empty: it has none
    QString key;
    QString schema;
    bool isCreating = false; ///< makes tables and months
    qint64 ageMs = 0;        ///< months that are over for so long go; 0: they stay
    int timeoutMs = 30000;   ///< of the server's answers, 1 or more
};

/** An edge node of Sparkplug B. */
struct SparkplugSettings
{
    MqttConnectionSettings connection;
    QString group;
    QString node;
    QString primaryHost;        ///< the node waits for it; empty: for none
    bool takesCommands = false; ///< of hosts, besides that for a new birth
    QString numberFile;         ///< keeps the number of the last birth
    int spreadMs = 0;           ///< after a loss it connects again within this, at random
};

/** What one kind of sink is told; another kind is another alternative. */
using SinkSettings =
    std::variant<MqttSettings, PostgresqlSettings, SparkplugSettings, SqliteSettings>;

struct SinkConfig
{
    QString name;
    SinkSettings settings;
    QString written = {}; ///< all of it: a sink that has the same is the same
};

struct LedgerConfig
{
    QString path;
    LedgerBounds bounds;
    Database::Durability durability = Database::Durability::Full;
};

/** All that the gateway is told. Paths are absolute, or as they were given without a folder. */
struct GatewayConfig
{
    QVector<LineConfig> lines;
    QVector<SinkConfig> sinks; ///< at least one
    LedgerConfig ledger;
    BatchBounds batch;
    std::optional<ListenAddress> metrics; ///< nothing: nobody asks by HTTP
    QString stateFolder;
    AuditConfig audit;
};

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::GatewayConfig)
