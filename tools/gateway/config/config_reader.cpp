#include "gateway/config/config_reader.h"

#include "gateway/config/sink_kinds.h"
#include "gateway/config/write_rules.h"
#include "gateway/toml/config_table.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

namespace cnet::gateway {

namespace {

constexpr qint64 kSecondMs = 1000;
constexpr qint64 kDayMs = 24LL * 60 * 60 * 1000;
constexpr qint64 kLongestAgeMs = 36500 * kDayMs;
constexpr int kHighestStation = 31;
constexpr int kHighestBlockWords = 255;
constexpr int kHighestAttempts = 1000;
constexpr qint64 kLongestWaitMs = 600 * kSecondMs;

QString within(const QString &folder, const QString &path)
{
    return QDir(folder).filePath(path);
}

// However it is written; the file itself need not be there yet.
QString realPath(const QString &path)
{
    const QFileInfo file(path);
    const QString real = file.canonicalFilePath();
    const QString folder = QFileInfo(file.absolutePath()).canonicalFilePath();
    return !real.isEmpty()
               ? real
               : QDir(folder.isEmpty() ? file.absolutePath() : folder).filePath(file.fileName());
}

class Reader
{
public:
    Reader(ConfigFolders folders, const ConfigNode &root, Findings &findings)
        : m_folders(std::move(folders))
        , m_root(QString(), root, findings)
    {}

    GatewayConfig read()
    {
        if (const auto state = m_root.text("state")) {
            m_folders.state = within(m_folders.state, *state);
        }
        m_config.stateFolder = m_folders.state;
        readLedger();
        readMetrics();
        readBatch();
        std::vector<ConfigTable> lines = m_root.tables("line");
        for (ConfigTable &line : lines) {
            readLine(line);
        }
        if (!m_root.has("line")) {
            m_root.complain(QLatin1String("there is no line; for example [line.press]"));
        }
        m_config.audit = readAudit(m_root, m_folders.state);
        claimAudit();
        readWrites(m_root, m_config.lines);
        std::vector<ConfigTable> sinks = m_root.tables("sink");
        for (ConfigTable &sink : sinks) {
            if (const auto settings = readSink(sink, m_folders)) {
                m_config.sinks.append(
                    {sink.name(), *settings, sink.digest() + QLatin1Char('\n') + m_folders.state});
                claimFile(sink, *settings);
            }
        }
        if (m_config.sinks.isEmpty()) {
            m_config.sinks.append(usualSink(m_folders.state));
        }
        m_root.finish();
        return m_config;
    }

private:
    void readLedger()
    {
        LedgerConfig &ledger = m_config.ledger;
        ledger.path = within(m_folders.state, QLatin1String("ledger.sqlite"));
        if (auto table = m_root.table("ledger")) {
            if (const auto path = table->text("path")) {
                ledger.path = within(m_folders.state, *path);
            }
            ledger.bounds.bytes = table->size("size", ledger.bounds.bytes);
            ledger.bounds.ageMs =
                table->duration("age", kSecondMs, kLongestAgeMs, ledger.bounds.ageMs);
            const int mode =
                table->choice("durability", {QLatin1String("full"), QLatin1String("normal")}, 0);
            ledger.durability =
                mode == 0 ? Database::Durability::Full : Database::Durability::Normal;
            table->finish();
        }
        m_owners.insert(realPath(ledger.path), QLatin1String("the ledger"));
    }

    void readMetrics()
    {
        if (auto table = m_root.table("metrics")) {
            const char *const example = "listen = \"127.0.0.1:9464\"";
            if (const auto listen = table->neededText("listen", example)) {
                m_config.metrics = parseListenAddress(*listen);
                if (!m_config.metrics) {
                    table->complain("listen",
                                    QLatin1String("expected a port of this machine alone, "
                                                  "as in \"127.0.0.1:9464\""));
                }
            }
            table->finish();
        }
    }

    void readBatch()
    {
        if (auto table = m_root.table("batch")) {
            BatchBounds &batch = m_config.batch;
            batch.changes = table->number("changes", 1, 1000000, batch.changes);
            batch.ageMs = static_cast<int>(table->duration("age", 0, 60 * kSecondMs, batch.ageMs));
            table->finish();
        }
    }

    void readLink(ConfigTable &table, LineConfig &line)
    {
        QString error;
        const auto link = table.neededText("link", "link = \"tcp:192.168.0.100:8000\"");
        if (link && *link != QLatin1String("simulated")) {
            line.link = parseLinkAddress(*link, error);
            if (!line.link) {
                table.complain("link", error + QLatin1String(", or simulated"));
            } else {
                line.session.line = line.link->line;
                line.session.lineSpeed = line.link->kind == LinkAddress::Kind::Serial
                                             ? LineSpeed::Known
                                             : LineSpeed::Assumed;
            }
        }
        if (const auto behind = table.text("serial")) {
            const auto settings = parseLineSettings(*behind, error);
            if (settings) {
                line.session.line = *settings;
                line.session.lineSpeed = LineSpeed::Known;
            } else {
                table.complain("serial", error);
            }
        }
    }

    void readLine(ConfigTable &table)
    {
        LineConfig line;
        line.name = table.name();
        SessionOptions &session = line.session;
        session.firstOpen = FirstOpen::Again;
        readLink(table, line);
        if (const auto tags = table.neededText("tags", "tags = \"press.csv\"")) {
            line.tagFile = within(m_folders.config, *tags);
        }
        line.tagsPlace = table.placeOf("tags");
        line.station = table.number("station", 0, kHighestStation, line.station);
        session.blockWords = table.number("block_words", 1, kHighestBlockWords, session.blockWords);
        session.attempts = table.number("attempts", 1, kHighestAttempts, session.attempts);
        const auto time = [&table](const char *key, qint64 lowMs, qint64 usualMs) {
            return static_cast<int>(table.duration(key, lowMs, kLongestWaitMs, usualMs));
        };
        session.intervalMs = time("interval", 0, session.intervalMs);
        session.timeoutMs = time("timeout", 1, session.timeoutMs);
        session.staleMs = time("stale", 1, session.staleMs);
        line.report.leastMs = table.duration("report_least", 0, kDayMs, 0);
        line.report.longestMs = table.duration("report_longest", 0, kDayMs, 0);
        if (line.report.longestMs > 0 && line.report.longestMs < line.report.leastMs) {
            table.complain("report_longest", QLatin1String("it is shorter than report_least"));
        }
        line.written =
            table.digest({QLatin1String("tags"), QLatin1String("station"),
                          QLatin1String("report_least"), QLatin1String("report_longest")});
        if (!line.link) {
            // The press is simulated as this station.
            line.written += QString::fromLatin1("\nstation %1").arg(line.station);
        }
        table.finish();
        claimLink(table, line);
        m_config.lines.append(line);
    }

    // Two at one place would spoil each other's work, a moment or a year later.
    void claim(ConfigTable &table, const char *key, const QString &place)
    {
        const auto owner = m_owners.constFind(place);
        if (owner != m_owners.constEnd()) {
            table.complain(key, QString::fromLatin1("%1 has it already").arg(*owner));
        } else {
            m_owners.insert(place, table.title());
        }
    }

    void claimFile(ConfigTable &table, const SinkSettings &settings)
    {
        if (const auto *sqlite = std::get_if<SqliteSettings>(&settings)) {
            claim(table, "path", realPath(sqlite->path));
        }
    }

    void claimAudit()
    {
        const QString path = realPath(m_config.audit.path);
        const auto owner = m_owners.constFind(path);
        if (owner != m_owners.constEnd()) {
            m_root.complain("audit", QString::fromLatin1("%1 has its file already").arg(*owner));
        } else {
            m_owners.insert(path, QLatin1String("the audit log"));
        }
    }

    void claimLink(ConfigTable &table, const LineConfig &line)
    {
        if (line.link) {
            const bool isSerial = line.link->kind == LinkAddress::Kind::Serial;
            claim(table, "link",
                  isSerial ? realPath(line.link->device)
                           : QString::fromLatin1("%1:%2")
                                 .arg(line.link->host.toLower())
                                 .arg(line.link->port));
        }
    }

    ConfigFolders m_folders;
    ConfigTable m_root;
    GatewayConfig m_config;
    QHash<QString, QString> m_owners; ///< files, devices and ports, and who uses them
};

} // namespace

GatewayConfig understoodConfig(const QByteArray &content, const ConfigFolders &folders,
                               Findings &findings)
{
    const auto root = parseToml(content, findings);
    if (!root) {
        return GatewayConfig();
    }
    GatewayConfig config = Reader(folders, *root, findings).read();
    findings.sort();
    return config;
}

std::optional<GatewayConfig> readConfig(const QByteArray &content, const ConfigFolders &folders,
                                        Findings &findings)
{
    const int before = findings.count();
    GatewayConfig config = understoodConfig(content, folders, findings);
    return findings.count() == before ? std::optional<GatewayConfig>(config) : std::nullopt;
}

GatewayConfig demoConfig(const QString &tagFile, const QString &stateFolder)
{
    LineConfig line;
    line.name = QLatin1String("press");
    line.tagFile = tagFile;
    GatewayConfig config;
    config.lines.append(line);
    config.sinks.append(usualSink(stateFolder));
    config.stateFolder = stateFolder;
    config.ledger.path = within(stateFolder, QLatin1String("ledger.sqlite"));
    return config;
}

} // namespace cnet::gateway
