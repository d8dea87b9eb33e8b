#pragma once

#include <QDir>
#include <QProcess>
#include <QStringList>

namespace cnet::gateway {

/**
 * Certificates in a folder, made by the openssl command: "ca.crt", and of it "good" for
 * localhost, "other" for another name, "expired", and "client"; "strange.crt" is another CA.
 */
class TestCertificates
{
public:
    explicit TestCertificates(const QString &folder)
        : m_folder(folder)
    {}

    /** @return false when openssl failed */
    bool make() const
    {
        return makeCa("ca") && makeCa("strange") && makeLeaf("good", "localhost", "2") &&
               makeLeaf("other", "elsewhere.example", "2") &&
               makeLeaf("expired", "localhost", "-1") && makeLeaf("client", "gateway", "2");
    }

    QString path(const char *name) const { return QDir(m_folder).filePath(QLatin1String(name)); }

private:
    bool run(const QString &arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(m_folder);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QLatin1String("openssl"), arguments.split(QLatin1Char(' ')));
        return process.waitForFinished() && process.exitCode() == 0;
    }

    static QString withKey(const char *name)
    {
        return QString::fromLatin1("req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout "
                                   "%1.key -subj /CN=%1 ")
            .arg(QLatin1String(name));
    }

    bool makeCa(const char *name) const
    {
        return run(withKey(name) +
                   QString::fromLatin1("-x509 -days 2 -out %1.crt").arg(QLatin1String(name)));
    }

    bool makeLeaf(const char *name, const char *host, const char *days) const
    {
        const QLatin1String own(name);
        return run(withKey(name) + QString::fromLatin1("-addext subjectAltName=DNS:%1 -out %2.csr")
                                       .arg(QLatin1String(host), own)) &&
               run(QString::fromLatin1("x509 -req -in %1.csr -CA ca.crt -CAkey ca.key "
                                       "-CAcreateserial -copy_extensions copy -days %2 -out %1.crt")
                       .arg(own, QLatin1String(days)));
    }

    QString m_folder;
};

} // namespace cnet::gateway
