#include "gateway/main/config_file.h"

#include "gateway/config/config_reader.h"
#include "gateway/lines/line_tags.h"
#include "gateway/write/allowed_values.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace cnet::gateway {

namespace {

constexpr qint64 kLongestFile = 4LL * 1024 * 1024;
constexpr int kMostFindings = 100;

/// With the file in front.
void addPlaced(const QString &path, const Findings &findings, QStringList &complaints)
{
    for (const Finding &finding : findings.first()) {
        complaints.append(path + QLatin1Char(':') + finding.placed());
    }
    const int more = findings.count() - static_cast<int>(findings.first().size());
    if (more > 0) {
        complaints.append(QString::fromLatin1("%1: and %2 more").arg(path).arg(more));
    }
}

/// What is wrong with the tag file goes to the complaints; what is wrong with the configuration,
/// now that the tags are known, to the findings.
void readTags(LineConfig &line, const Driver &driver, Findings &findings, QStringList &complaints)
{
    if (line.tagFile.isEmpty()) {
        return;
    }
    QString error;
    const auto file = readLineTags(line, driver, error);
    if (!file) {
        findings.add({line.tagsPlace.line, line.tagsPlace.column,
                      QString::fromLatin1("line.%1.tags").arg(line.name), error});
        return;
    }
    addPlaced(line.tagFile, file->mistakes(), complaints);
    // Tags with mistakes are not among them: that no rule fits would be no news.
    if (file->isGood()) {
        line.tags = TagSet(file->tags());
        checkRules(line.writes.allow, *line.tags,
                   QString::fromLatin1("writes.%1.allow").arg(line.name), findings);
    }
}

} // namespace

QString usualConfigFile()
{
    return QLatin1String("/etc/cnet-gateway/gateway.toml");
}

QString usualStateFolder()
{
    // A service manager says where.
    const QString given = qEnvironmentVariable("STATE_DIRECTORY");
    return given.isEmpty() ? QDir::currentPath() : given;
}

std::optional<GatewayConfig> loadConfig(const QString &path, QStringList &complaints)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        complaints.append(QString::fromLatin1("cannot read %1: %2").arg(path, file.errorString()));
        return std::nullopt;
    }
    const QByteArray content = file.read(kLongestFile);
    if (file.error() != QFileDevice::NoError || !file.atEnd()) {
        complaints.append(QString::fromLatin1("cannot read %1: it is no text file").arg(path));
        return std::nullopt;
    }
    Findings findings(kMostFindings);
    const ConfigFolders folders{QFileInfo(path).absolutePath(), usualStateFolder()};
    GatewayConfig config = understoodConfig(content, folders, findings);
    Driver driver;
    QString error;
    if (!driver.load(QString(), error)) {
        addPlaced(path, findings, complaints);
        complaints.append(error);
        return std::nullopt;
    }
    QStringList ofTags;
    for (LineConfig &line : config.lines) {
        readTags(line, driver, findings, ofTags);
    }
    findings.sort();
    addPlaced(path, findings, complaints);
    complaints += ofTags;
    complaints.removeDuplicates(); // of a tag file that several lines have
    return complaints.isEmpty() ? std::optional<GatewayConfig>(config) : std::nullopt;
}

ConfigReading::ConfigReading(Load load)
    : m_load(std::move(load))
{
    connect(this, &ConfigReading::read, this, &ConfigReading::handleRead, Qt::QueuedConnection);
}

ConfigReading::~ConfigReading()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ConfigReading::start()
{
    m_isAskedAgain = m_thread.joinable();
    if (m_isAskedAgain) {
        return;
    }
    m_thread = std::thread([this] {
        m_complaints.clear();
        m_config = m_load(m_complaints);
        Q_EMIT read();
    });
}

void ConfigReading::handleRead()
{
    m_thread.join();
    Q_EMIT finished(std::exchange(m_config, std::nullopt), m_complaints);
    if (m_isAskedAgain) {
        start();
    }
}

} // namespace cnet::gateway
