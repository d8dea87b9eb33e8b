#pragma once

#include "gateway/config/config_reader.h"

#include <QStringList>
#include <QtTest>

namespace cnet::gateway {

/** A line of two keys: what is put behind it goes on with it in line 4. */
inline const char kLeastConfig[] =
    "[line.press]\nlink = \"tcp:10.0.0.1:8000\"\ntags = \"press.csv\"\n";

/**
 * Reads a configuration as of the folder /etc/gw, with its state in /var/lib/gw.
 * @param mistakes receives each with its place
 */
inline std::optional<GatewayConfig> readConfigText(const QByteArray &content, QStringList &mistakes)
{
    Findings findings(100);
    auto config =
        readConfig(content, {QLatin1String("/etc/gw"), QLatin1String("/var/lib/gw")}, findings);
    for (const Finding &finding : findings.first()) {
        mistakes.append(finding.placed());
    }
    return config;
}

/** A configuration has one mistake. @param expected how it begins, with its place */
inline void findsOneMistake(const QByteArray &content, const QByteArray &expected)
{
    QStringList mistakes;
    QVERIFY(!readConfigText(content, mistakes));
    QVERIFY2(mistakes.size() == 1 && mistakes.first().startsWith(QString::fromUtf8(expected)),
             qPrintable(mistakes.join(QLatin1Char('\n'))));
}

} // namespace cnet::gateway
