#pragma once

#include "view/connect/connection.h"

#include <QStringList>
#include <QVector>

namespace cnet::view {

/**
 * The projects and the connections that somebody used last, the newest first. They are in a file
 * that all windows and all programs of the user share: it is read anew each time, and whatever
 * cannot be understood in it counts as nothing.
 */
class RecentFiles
{
public:
    static constexpr int kMost = 10; ///< of each

    /** @param path of the file; empty: where the system has settings of programs */
    explicit RecentFiles(const QString &path = QString());

    QString path() const { return m_path; }

    /** Absolute paths. */
    QStringList projects() const;
    QVector<Connection> connections() const;

    /**
     * Puts one in front. @param path absolute, or from the current folder
     * @return false: the file cannot be written, and stays as it was
     */
    bool addProject(const QString &path) const;
    bool addConnection(const Connection &connection) const;

    /** Forgets the projects whose file is gone. @return false: as addProject() */
    bool dropMissing() const;

    /** Forgets all. @return false: as addProject() */
    bool clear() const;

private:
    bool write(const QStringList &projects, const QVector<Connection> &connections) const;

    QString m_path;
};

} // namespace cnet::view
