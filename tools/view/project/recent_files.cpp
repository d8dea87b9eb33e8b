#include "view/project/recent_files.h"

#include "view/project/project_store.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <algorithm>

namespace cnet::view {

namespace {

const QLatin1String kProjects("projects");
const QLatin1String kConnections("connections");
constexpr qint64 kMostBytes = 1024 * 1024;

QString usualPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QLatin1String("/recent.json");
}

QJsonArray arrayIn(const QString &path, QLatin1String key)
{
    QString ignored;
    const auto bytes = readWholeFile(path, kMostBytes, ignored);
    const auto object = bytes ? parseObject(*bytes, ignored) : std::nullopt;
    return object ? object->value(key).toArray() : QJsonArray();
}

template <typename List, typename Value>
void putInFront(List &list, const Value &value)
{
    list.erase(std::remove(list.begin(), list.end(), value), list.end());
    list.prepend(value);
}

} // namespace

RecentFiles::RecentFiles(const QString &path)
    : m_path(path.isEmpty() ? usualPath() : path)
{}

QStringList RecentFiles::projects() const
{
    QStringList projects;
    const QJsonArray all = arrayIn(m_path, kProjects);
    for (const auto &entry : all) {
        const QString path = entry.toString();
        if (QDir::isAbsolutePath(path) && !projects.contains(path) && projects.size() < kMost) {
            projects.append(path);
        }
    }
    return projects;
}

QVector<Connection> RecentFiles::connections() const
{
    QVector<Connection> connections;
    const QJsonArray all = arrayIn(m_path, kConnections);
    for (const auto &entry : all) {
        const auto connection = Connection::restored(entry.toObject());
        if (connection && !connections.contains(*connection) && connections.size() < kMost) {
            connections.append(*connection);
        }
    }
    return connections;
}

bool RecentFiles::addProject(const QString &path) const
{
    QStringList all = projects();
    putInFront(all, QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    return write(all, connections());
}

bool RecentFiles::addConnection(const Connection &connection) const
{
    QVector<Connection> all = connections();
    putInFront(all, connection);
    return write(projects(), all);
}

bool RecentFiles::dropMissing() const
{
    QStringList all = projects();
    const auto before = all.size();
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const QString &path) { return !QFileInfo::exists(path); }),
              all.end());
    return all.size() == before || write(all, connections());
}

bool RecentFiles::clear() const
{
    return write({}, {});
}

bool RecentFiles::write(const QStringList &projects, const QVector<Connection> &connections) const
{
    QJsonArray links;
    for (const Connection &connection : connections.mid(0, kMost)) {
        links.append(connection.saved());
    }
    const QJsonObject object{{kProjects, QJsonArray::fromStringList(projects.mid(0, kMost))},
                             {kConnections, links}};
    QString ignored;
    return QDir().mkpath(QFileInfo(m_path).path()) &&
           writeWholeFile(m_path, QJsonDocument(object).toJson(), ignored);
}

} // namespace cnet::view
