#include "view/trend/output/trend_record.h"

#include "host/text/csv_field.h"
#include "host/text/number_text.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace cnet::view {

namespace {

const QByteArray kHeader("time,name,value,quality\n");
constexpr int kMostWaiting = 64 * 1024;
constexpr int kFlushMs = 1000;

/** @return true where there is no file, an empty one, or one that a recording made */
bool isOurs(const QString &path)
{
    QFile file(path);
    if (!file.exists() || file.size() == 0) {
        return true;
    }
    return file.open(QIODevice::ReadOnly) && file.read(kHeader.size()) == kHeader;
}

/** A row that was cut off when the power went is ended, so that the next one is whole. */
bool endsInRow(QFile &file)
{
    char last = '\n';
    return file.size() == 0 || (file.seek(file.size() - 1) && file.getChar(&last) && last == '\n');
}

/** Where there can be no lock, one goes without. */
bool isTakenByOthers(QLockFile &lock)
{
    lock.setStaleLockTime(0); // a recording may take months
    return !lock.tryLock(0) && lock.error() == QLockFile::LockFailedError;
}

/** A computer that went down left its lock on a disk of the network. */
QString holderOf(const QLockFile &lock)
{
    qint64 process = 0;
    QString computer;
    QString program;
    return lock.getLockInfo(&process, &computer, &program)
               ? QLatin1String("%1, %2, %3").arg(program, QString::number(process), computer)
               : QString(QLatin1Char('?'));
}

} // namespace

TrendRecord::TrendRecord(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(kFlushMs);
    connect(&m_timer, &QTimer::timeout, this, &TrendRecord::flush);
}

TrendRecord::~TrendRecord()
{
    blockSignals(true);
    stop();
}

QString TrendRecord::olderPath(const QString &path)
{
    const QFileInfo info(path);
    const QString suffix = info.suffix();
    const QString base = info.completeBaseName() + QLatin1String(".older");
    return info.dir().filePath(suffix.isEmpty() ? base : base + QLatin1Char('.') + suffix);
}

bool TrendRecord::start(const QString &path, qint64 mostBytes, QString &error)
{
    stop();
    const QFileInfo info(path);
    const QString real = info.exists() ? info.canonicalFilePath() : path;
    for (const QString &part : {real, olderPath(real)}) {
        if (!isOurs(part)) {
            error = tr("%1 is there, and is no recording.").arg(QDir::toNativeSeparators(part));
            return false;
        }
    }
    const QString lockPath = real + QLatin1String(".lock");
    auto lock = std::make_unique<QLockFile>(lockPath);
    if (isTakenByOthers(*lock)) {
        error = tr("Another window is recording to %1 (%2). If it is gone, remove %3.")
                    .arg(QDir::toNativeSeparators(real), holderOf(*lock),
                         QDir::toNativeSeparators(lockPath));
        return false;
    }
    m_mostBytes = std::max(mostBytes, kLeastBound);
    m_file.setFileName(real);
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        error = tr("%1 cannot be written: %2.")
                    .arg(QDir::toNativeSeparators(real), m_file.errorString());
        return false;
    }
    m_lock = std::move(lock);
    m_waiting = m_file.size() == 0 ? kHeader : endsInRow(m_file) ? QByteArray() : QByteArray("\n");
    m_file.seek(m_file.size());
    m_timer.start();
    return true;
}

void TrendRecord::stop()
{
    if (isRunning()) {
        flush();
    }
    m_timer.stop();
    m_file.close();
    m_lock.reset();
    m_waiting.clear();
}

void TrendRecord::add(const QString &name, qint64 atMs, double value, Quality quality)
{
    if (!isRunning()) {
        return;
    }
    m_waiting += m_time.text(atMs) + ',' + csvField(name, CsvDialect()) + ',';
    if (std::isfinite(value)) {
        m_waiting += numberText(value).toLatin1();
    }
    m_waiting += ',' + qualityText(quality).toUtf8() + '\n';
    if (m_waiting.size() >= kMostWaiting) {
        flush();
    }
}

bool TrendRecord::turn()
{
    const QString path = m_file.fileName();
    const QString older = olderPath(path);
    m_file.close();
    const bool isMoved = (!QFile::exists(older) || QFile::remove(older)) && m_file.rename(older);
    m_file.setFileName(path);
    if (!isMoved || !m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        return false;
    }
    m_waiting.prepend(kHeader);
    return true;
}

void TrendRecord::flush()
{
    if (!isRunning() || m_waiting.isEmpty()) {
        return;
    }
    const qint64 before = m_file.size();
    if (before > 0 && before + m_waiting.size() > m_mostBytes / 2 && !turn()) {
        fail(m_file.errorString());
        return;
    }
    const qint64 whole = m_file.size();
    if (m_file.write(m_waiting) != m_waiting.size()) {
        const QString reason = m_file.errorString();
        m_file.resize(whole); // no half row
        fail(reason);
        return;
    }
    m_waiting.clear();
}

void TrendRecord::fail(const QString &reason)
{
    const QString text = tr("The recording to %1 has ended: %2.")
                             .arg(QDir::toNativeSeparators(m_file.fileName()), reason);
    m_waiting.clear();
    stop();
    Q_EMIT failed(text);
}

} // namespace cnet::view
