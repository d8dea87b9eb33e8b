#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QVector>

#include <libpq-fe.h>

#include <pwd.h>
#include <unistd.h>

#include <memory>

namespace cnet::gateway {

/**
 * A PostgreSQL server of this machine on a free port of 127.0.0.1, with a folder of its own. Over
 * TCP it wants the password "right" of its user `gateway`; its certificate is for "localhost". It
 * ends with the object.
 */
class PostgresServer
{
public:
    ~PostgresServer() { kill(); }

    /** Makes the database cluster and starts it. @return false: there is none on this machine */
    bool make()
    {
        const QDir versions(QLatin1String("/usr/lib/postgresql"));
        const QStringList names = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (names.isEmpty() || !giveFolder()) {
            return false;
        }
        m_programs = versions.filePath(names.last() + QLatin1String("/bin/"));
        return runToItsEnd(m_programs + QLatin1String("initdb"),
                           {"--no-sync", "-E", "UTF8", "--locale=C", "-A", "trust", "-U", "admin",
                            "-D", data()}) &&
               runToItsEnd(QLatin1String("openssl"),
                           {"req", "-x509", "-newkey", "ec", "-pkeyopt",
                            "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2", "-subj",
                            "/CN=localhost", "-keyout",
                            path("server.key").toLocal8Bit().constData(), "-out",
                            certificate().toLocal8Bit().constData()}) &&
               write("data/pg_hba.conf", "local all all trust\n"
                                         "host all all 127.0.0.1/32 scram-sha-256\n") &&
               write("data/postgresql.auto.conf", "fsync = off\n") && start() &&
               !sql("CREATE ROLE gateway LOGIN PASSWORD 'right'").isEmpty() &&
               !sql("CREATE DATABASE plant OWNER gateway").isEmpty();
    }

    /** Starts it, and waits until it answers. */
    bool start()
    {
        if (m_port == 0) {
            QTcpServer probe;
            probe.listen(QHostAddress::LocalHost);
            m_port = probe.serverPort();
        }
        // What was killed may hold its memory for a moment, and is tried again.
        for (int tries = 0; tries < 100; ++tries) {
            begin();
            while (m_process->state() != QProcess::NotRunning) {
                if (PQping(conninfo("postgres").constData()) == PQPING_OK) {
                    return true;
                }
                QTest::qWait(20);
            }
        }
        return false;
    }

    /** Ends it like a power cut. */
    void kill()
    {
        if (m_process) {
            m_process->kill();
            m_process->waitForFinished();
        }
    }

    /**
     * Runs statements as its administrator.
     * @return the rows of the last one, one row without fields where it gives none, nothing where
     * it failed
     */
    QVector<QStringList> sql(const QByteArray &statements, const char *database = "plant") const
    {
        const bool isAboutServer =
            statements.startsWith("CREATE ROLE") || statements.startsWith("CREATE DATABASE");
        const std::unique_ptr<PGconn, decltype(&PQfinish)> connection(
            PQconnectdb(conninfo(isAboutServer ? "postgres" : database).constData()), &PQfinish);
        const std::unique_ptr<PGresult, decltype(&PQclear)> result(
            PQexec(connection.get(), statements.constData()), &PQclear);
        QVector<QStringList> rows;
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_COMMAND_OK) {
            rows.append(QStringList());
        } else if (status != PGRES_TUPLES_OK) {
            qWarning("%s", PQerrorMessage(connection.get()));
        }
        for (int row = 0; row < PQntuples(result.get()); ++row) {
            rows.append(QStringList());
            for (int column = 0; column < PQnfields(result.get()); ++column) {
                rows.last().append(QString::fromUtf8(PQgetvalue(result.get(), row, column)));
            }
        }
        return rows;
    }

    /** The only field of the only row. */
    QString value(const QByteArray &statement) const { return sql(statement).value(0).value(0); }

    int port() const { return m_port; }
    QString certificate() const { return path("server.crt"); }
    /** How its administrator connects without a password. */
    QByteArray conninfo(const char *database) const
    {
        return "host=" + m_folder.path().toLocal8Bit() + " port=" + QByteArray::number(m_port) +
               " user=admin dbname=" + database;
    }

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QByteArray data() const { return path("data").toLocal8Bit(); }

    /** The server does not run as root: then it is another user's. */
    bool giveFolder() const
    {
        if (geteuid() != 0) {
            return true;
        }
        const passwd *user = getpwnam("postgres");
        return user != nullptr &&
               chown(m_folder.path().toLocal8Bit().constData(), user->pw_uid, user->pw_gid) == 0;
    }

    void prepare(QProcess &process, const QString &program,
                 const QList<QByteArray> &arguments) const
    {
        QStringList all{QLatin1String("--pdeathsig"), QLatin1String("KILL")};
        if (geteuid() == 0) {
            all << QLatin1String("--reuid=postgres") << QLatin1String("--regid=postgres")
                << QLatin1String("--clear-groups");
        }
        all << program;
        for (const QByteArray &argument : arguments) {
            all << QString::fromLocal8Bit(argument);
        }
        process.setProgram(QLatin1String("setpriv"));
        process.setArguments(all);
        process.setWorkingDirectory(m_folder.path());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(path("errors"), QIODevice::Append);
    }

    bool runToItsEnd(const QString &program, const QList<QByteArray> &arguments) const
    {
        QProcess process;
        prepare(process, program, arguments);
        process.start();
        return process.waitForFinished(60000) && process.exitCode() == 0;
    }

    void begin()
    {
        m_process = std::make_unique<QProcess>();
        prepare(*m_process, m_programs + QLatin1String("postgres"),
                {"-D", data(), "-k", m_folder.path().toLocal8Bit(), "-p",
                 QByteArray::number(m_port), "-h", "127.0.0.1", "-c", "ssl=on", "-c",
                 "ssl_cert_file=" + certificate().toLocal8Bit(), "-c",
                 "ssl_key_file=" + path("server.key").toLocal8Bit(), "-c", "shared_buffers=32MB"});
        m_process->start();
        m_process->waitForStarted();
    }

    bool write(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QTemporaryDir m_folder;
    QString m_programs;
    int m_port = 0;
    std::unique_ptr<QProcess> m_process;
};

} // namespace cnet::gateway
