#pragma once

#include "gateway.h"
#include "outages/records.h"

/** A gateway with a PLC of which everything changes, and one sink, an MQTT broker. */
class Site
{
public:
    /** @param sink the sink's lines in the configuration. @return false when it did not start */
    bool start(const QByteArray &sink);

    /** Where its ledger is, or will be: one that is there already is taken as it is. */
    QString ledgerFile() const { return file("ledger.sqlite"); }

    /** The PLC is gone: changes come to an end. */
    void endChanges();

    /** Waits until the gateway says that nothing waits any more, twice. @return false in vain */
    bool waitUntilDrained() const;

    /** Kills the gateway. @return what its ledger ever took */
    LedgerRecord end();

    /** What it said; after end(). */
    const QByteArray &messages() const { return m_messages; }

private:
    bool storeFiles(const QByteArray &sink) const;
    bool isDrained() const;
    QString file(const char *name) const { return m_folder.path(name); }

    PlcProgram m_plc;
    GatewayProgram m_folder;
    Program m_gateway;
    QByteArray m_messages;
};
