#include "panel/system/file_watch.h"

#include <QFileInfo>

namespace cnet::panel {

// Of a file that is replaced nothing is heard any more, only of its directory.
FileWatch::FileWatch(const QString &path)
    : m_path(path)
    , m_known(stamp())
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    m_watcher.addPath(QFileInfo(path).absolutePath());
    m_watcher.addPath(path);
    const auto begin = [this] {
        if (!m_settle.isActive()) {
            m_settle.start();
        }
    };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, begin);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, begin);
    connect(&m_settle, &QTimer::timeout, this, &FileWatch::look);
}

FileWatch::Stamp FileWatch::stamp() const
{
    const QFileInfo file(m_path);
    return file.exists() ? Stamp{file.lastModified(), file.size()} : Stamp();
}

// The directory has other files, too, and one that is missing may be about to be replaced.
void FileWatch::look()
{
    const Stamp now = stamp();
    if (now.size < 0 || (now.size == m_known.size && now.modified == m_known.modified)) {
        return;
    }
    m_known = now;
    if (!m_watcher.files().contains(m_path)) {
        m_watcher.addPath(m_path);
    }
    Q_EMIT changed();
}

} // namespace cnet::panel
