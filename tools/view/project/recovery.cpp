#include "view/project/recovery.h"

#include "view/project/project_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QStandardPaths>

namespace cnet::view {

namespace {

const QLatin1String kFormat("cnet-view unsaved work");
const QLatin1String kFormatKey("format");
const QLatin1String kFileKey("file");
const QLatin1String kProjectKey("project");
constexpr int kMostWindows = 1000; ///< of a process

// Work of a day may be unsaved: only the death of its process makes a file free.
std::unique_ptr<QLockFile> lockOf(const QString &path)
{
    auto lock = std::make_unique<QLockFile>(path + QLatin1String(".lock"));
    lock->setStaleLockTime(0);
    return lock;
}

QByteArray bytesOf(const Unsaved &work)
{
    const QJsonObject object{
        {kFormatKey, kFormat}, {kFileKey, work.file}, {kProjectKey, objectOf(work.project)}};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

std::optional<Unsaved> parse(const QByteArray &bytes, QString &error)
{
    const auto object = parseObject(bytes, error);
    if (!object) {
        return std::nullopt;
    }
    if (object->value(kFormatKey).toString() != kFormat) {
        error = QCoreApplication::translate("Recovery", "this is no unsaved work of cnet-view");
        return std::nullopt;
    }
    const auto project = projectOfObject(object->value(kProjectKey).toObject(), error);
    return project ? std::optional<Unsaved>({object->value(kFileKey).toString(), *project})
                   : std::nullopt;
}

QFileInfoList filesIn(const QString &folder)
{
    return QDir(folder).entryInfoList({QLatin1String("*-*.json")}, QDir::Files | QDir::Hidden,
                                      QDir::Time);
}

// What cannot be read is not offered at each start, and not lost either.
void putAside(const QString &path)
{
    const QString aside = path + QLatin1String(".broken");
    QFile::remove(aside);
    QFile::rename(path, aside);
}

} // namespace

QString Recovery::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QLatin1String("/recovery");
}

Recovery::Recovery(Work work, const QString &folder, QObject *parent)
    : QObject(parent)
    , m_work(std::move(work))
    , m_folder(folder.isEmpty() ? usualFolder() : folder)
{
    m_beat.setInterval(kBeatMs);
    m_beat.setSingleShot(true);
    connect(&m_beat, &QTimer::timeout, this, &Recovery::writeNow);
}

Recovery::~Recovery()
{
    release();
}

void Recovery::noteChange()
{
    if (!m_beat.isActive()) {
        m_beat.start();
    }
}

bool Recovery::writeNow()
{
    m_beat.stop();
    if (write()) {
        m_isTroubled = false;
        return true;
    }
    m_beat.start(); // the disk may have room again
    return false;
}

bool Recovery::write()
{
    const QByteArray bytes = bytesOf(m_work());
    if (bytes == m_written) {
        return true;
    }
    QString error;
    if (takeName() && writeWholeFile(m_path, bytes, error)) {
        m_written = bytes;
        return true;
    }
    if (!m_isTroubled) {
        m_isTroubled = true;
        Q_EMIT troubled(error.isEmpty() ? tr("Unsaved work cannot be kept in %1.").arg(m_folder)
                                        : error,
                        tr("Save the project: should the program end now, its changes are lost."));
    }
    return false;
}

void Recovery::discard()
{
    m_beat.stop();
    m_written.clear();
    if (!m_path.isEmpty()) {
        QFile::remove(m_path);
    }
    release();
}

int Recovery::left() const
{
    int count = 0;
    for (const QFileInfo &file : filesIn(m_folder)) {
        const auto lock = lockOf(file.filePath());
        // Its own file is locked, too.
        count += lock->tryLock(0) ? 1 : 0;
    }
    return count;
}

std::optional<Unsaved> Recovery::claim(QString &error)
{
    if (!m_path.isEmpty()) {
        return std::nullopt;
    }
    QStringList errors;
    std::optional<Unsaved> found;
    for (const QFileInfo &file : filesIn(m_folder)) {
        auto lock = lockOf(file.filePath());
        QString why;
        // Whoever had the lock just before may have removed the file.
        if (!lock->tryLock(0) || !QFileInfo::exists(file.filePath())) {
            continue;
        }
        const auto bytes = readWholeFile(file.filePath(), 2 * kMostProjectBytes, why);
        found = bytes ? parse(*bytes, why) : std::nullopt;
        if (found) {
            m_path = file.filePath();
            m_lock = std::move(lock);
            m_written = *bytes;
            break;
        }
        putAside(file.filePath());
        errors.append(tr("Unsaved work in %1 cannot be read: %2").arg(file.filePath(), why));
    }
    error = errors.join(QLatin1Char('\n'));
    return found;
}

bool Recovery::takeName()
{
    if (!m_path.isEmpty()) {
        return true;
    }
    if (!QDir().mkpath(m_folder)) {
        return false;
    }
    // A process long ago may have had the number of this one.
    for (int i = 0; i < kMostWindows; ++i) {
        const QString path = QString::fromLatin1("%1/%2-%3.json")
                                 .arg(m_folder)
                                 .arg(QCoreApplication::applicationPid())
                                 .arg(i);
        auto lock = lockOf(path);
        if (!QFileInfo::exists(path) && lock->tryLock(0)) {
            if (QFileInfo::exists(path)) {
                continue; // made in between
            }
            m_path = path;
            m_lock = std::move(lock);
            return true;
        }
    }
    return false;
}

void Recovery::release()
{
    m_path.clear();
    m_lock.reset();
}

} // namespace cnet::view
