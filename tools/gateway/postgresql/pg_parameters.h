#pragma once

#include "gateway/config/gateway_config.h"
#include "gateway/postgresql/pg_connection.h"

#include <QFile>

namespace cnet::gateway {

/** "plant at db.example:5432", or with the folder of a socket. */
inline QString placeText(const PostgresqlSettings &settings)
{
    const QString place = QString::fromLatin1("%1 at %2").arg(settings.database, settings.host);
    return settings.host.startsWith(QLatin1Char('/'))
               ? place
               : place + QLatin1Char(':') + QString::number(settings.port);
}

/**
 * What libpq is told.
 * @param addresses of the host, with commas; empty where it is a folder
 * @param count of them; libpq wants the name once for each
 */
inline PgConnection::Parameters pgParameters(const PostgresqlSettings &settings,
                                             const QByteArray &password,
                                             const QByteArray &addresses, int count)
{
    const QByteArray host = QFile::encodeName(settings.host);
    QByteArray hosts = host;
    for (int more = 1; more < count; ++more) {
        hosts += ',' + host;
    }
    return {{"host", hosts},
            {"hostaddr", addresses},
            {"port", QByteArray::number(settings.port)},
            {"dbname", settings.database.toUtf8()},
            {"user", settings.user.toUtf8()},
            {"password", password},
            {"sslmode", settings.sslMode.toLatin1()},
            {"sslrootcert", QFile::encodeName(settings.rootCertificate)},
            {"sslcert", QFile::encodeName(settings.certificate)},
            {"sslkey", QFile::encodeName(settings.key)},
            // It would ask servers of its own, and wait for them.
            {"gssencmode", "disable"},
            {"client_encoding", "UTF8"},
            {"fallback_application_name", "cnet-gateway"}};
}

} // namespace cnet::gateway
