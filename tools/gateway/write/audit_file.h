#pragma once

#include "gateway/config/gateway_config.h"

#include <QByteArray>
#include <QFile>

namespace cnet::gateway {

/**
 * A file that lines are put behind, in whole or not at all. When it is full it becomes FILE.1, and
 * the oldest one goes.
 */
class AuditFile
{
public:
    explicit AuditFile(AuditConfig config);

    /** Hands a line to the system: a kill does not cost it. @return why not, in words */
    QString append(const QByteArray &line);

    /** Waits until all lines are on the disk: a power cut does not cost them. @return why not */
    QString sync();

    /** The newest lines, oldest first, of two files at most. @param bytes about so many */
    QList<QByteArray> tail(qint64 bytes) const;

    const AuditConfig &config() const { return m_config; }
    const QString &path() const { return m_config.path; }

private:
    QString open();
    QString rotate();
    QString nameOf(int file) const;
    QString failed();
    void syncFolder() const;

    AuditConfig m_config;
    QFile m_file;
};

} // namespace cnet::gateway
