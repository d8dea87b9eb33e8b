#pragma once

#include "gateway/config/gateway_config.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <thread>

namespace cnet::gateway {

/** Where the configuration is, unless the command line says otherwise. */
QString usualConfigFile();

/** Folder of ledger and history, unless the configuration says otherwise. */
QString usualStateFolder();

/**
 * Reads the configuration and all tag files that it names.
 * @param complaints receives all that is wrong, a line each with file, line and column
 * @return nothing where something is
 */
std::optional<GatewayConfig> loadConfig(const QString &path, QStringList &complaints);

/**
 * Reads the configuration anew while the gateway goes on. Many tags take a while, in which lines
 * are to be polled: it is done on a thread of its own.
 */
class ConfigReading : public QObject
{
    Q_OBJECT

public:
    using Load = std::function<std::optional<GatewayConfig>(QStringList &complaints)>;

    /** @param load called on another thread, never twice at once; usually loadConfig() */
    explicit ConfigReading(Load load);
    ~ConfigReading() override;

    /** Begins. Where it is under way, it is done once more afterwards: the files may be others. */
    void start();

Q_SIGNALS:
    /** @param config nothing where something is wrong: it is in the complaints */
    void finished(const std::optional<cnet::gateway::GatewayConfig> &config,
                  const QStringList &complaints);
    void read(); ///< from the other thread

private:
    void handleRead();

    Load m_load;
    std::thread m_thread;
    std::optional<GatewayConfig> m_config; ///< what the thread has read, once it has ended
    QStringList m_complaints;
    bool m_isAskedAgain = false;
};

} // namespace cnet::gateway
