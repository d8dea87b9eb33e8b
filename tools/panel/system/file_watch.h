#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

namespace cnet::panel {

/** Tells when somebody has stored a file anew, in place or by another file of the same name. */
class FileWatch : public QObject
{
    Q_OBJECT

public:
    /** A file that is stored in steps is told of once, this long after the first one. */
    static constexpr int kSettleMs = 300;

    /** @param path of a file that need not be there yet */
    explicit FileWatch(const QString &path);

Q_SIGNALS:
    /** The file is there, and is another one than before. */
    void changed();

private:
    /** What of a file tells that it is another one. */
    struct Stamp
    {
        QDateTime modified;
        qint64 size = -1; ///< negative: there is no file
    };

    Stamp stamp() const;
    void look();

    QString m_path;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
    Stamp m_known;
};

} // namespace cnet::panel
