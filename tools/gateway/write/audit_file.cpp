#include "gateway/write/audit_file.h"

#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace cnet::gateway {

namespace {

// So that two lines of the same trouble are one.
QString reason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// A disk that becomes full takes a part, and says why with what is left.
bool writeAll(QFile &file, const QByteArray &bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 count = file.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0) {
            return false;
        }
        done += count;
    }
    return true;
}

QList<QByteArray> wholeLines(const QString &path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const qint64 from = std::max<qint64>(0, file.size() - bytes);
    file.seek(from);
    QList<QByteArray> lines = file.read(bytes).split('\n');
    lines.removeLast(); // what no end of a line follows was cut off
    if (from > 0 && !lines.isEmpty()) {
        lines.removeFirst();
    }
    return lines;
}

} // namespace

AuditFile::AuditFile(AuditConfig config)
    : m_config(std::move(config))
    , m_file(m_config.path)
{}

QString AuditFile::nameOf(int file) const
{
    return file == 0 ? m_config.path : QString::fromLatin1("%1.%2").arg(m_config.path).arg(file);
}

QString AuditFile::failed()
{
    const QString why =
        QString::fromLatin1("cannot write %1: %2").arg(m_config.path, m_file.errorString());
    m_file.close();
    return why;
}

QString AuditFile::open()
{
    if (m_file.isOpen()) {
        return QString();
    }
    const bool isNew = !m_file.exists();
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered)) {
        return failed();
    }
    if (isNew) {
        m_file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                              QFileDevice::ReadGroup);
        syncFolder();
    }
    // A line that a kill or a power cut has cut off must not spoil the next one.
    char last = '\n';
    if (m_file.size() > 0) {
        m_file.seek(m_file.size() - 1);
        m_file.getChar(&last);
    }
    return last == '\n' || m_file.write("\n", 1) == 1 ? QString() : failed();
}

QString AuditFile::append(const QByteArray &line)
{
    QString error = open();
    if (error.isEmpty() && m_file.size() > 0 && m_file.size() + line.size() + 1 > m_config.bytes) {
        error = rotate();
    }
    if (!error.isEmpty()) {
        return error;
    }
    const qint64 before = m_file.size();
    if (writeAll(m_file, line + '\n')) {
        return QString();
    }
    const bool isCutOff = m_file.size() > before;
    error = failed();
    if (isCutOff) {
        QFile::resize(m_config.path, before);
    }
    return error;
}

QString AuditFile::sync()
{
    if (m_file.isOpen() && ::fdatasync(m_file.handle()) != 0) {
        const QString why = QString::fromLatin1("cannot write %1: %2").arg(m_config.path, reason());
        m_file.close();
        return why;
    }
    return QString();
}

QString AuditFile::rotate()
{
    const QString unsafe = sync();
    if (!unsafe.isEmpty()) {
        return unsafe;
    }
    m_file.close();
    QFile::remove(nameOf(m_config.files - 1));
    for (int file = m_config.files - 1; file > 0; --file) {
        const QByteArray from = QFile::encodeName(nameOf(file - 1));
        const QByteArray to = QFile::encodeName(nameOf(file));
        if (::rename(from.constData(), to.constData()) != 0 && errno != ENOENT) {
            return QString::fromLatin1("cannot rename %1: %2").arg(nameOf(file - 1), reason());
        }
    }
    return open();
}

// A file that was made or renamed is there after a power cut only when its folder knows.
void AuditFile::syncFolder() const
{
    const QByteArray folder = QFile::encodeName(QFileInfo(m_config.path).absolutePath());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

QList<QByteArray> AuditFile::tail(qint64 bytes) const
{
    const QList<QByteArray> newest = wholeLines(nameOf(0), bytes);
    return QFile(nameOf(0)).size() < bytes ? wholeLines(nameOf(1), bytes) + newest : newest;
}

} // namespace cnet::gateway
