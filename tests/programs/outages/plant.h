#pragma once

#include "gateway.h"
#include "outages/cut_relay.h"
#include "outages/records.h"
#include "outages/standing.h"

#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/postgres_server.h"

#include <QFileInfo>

#include <memory>
#include <utility>

/** A gateway with its PLC and its sinks, all of them real, and all of what can happen to them. */
class Plant
{
public:
    /** What differs from run to run. */
    struct Settings
    {
        QString gateway;  ///< program file
        int ledgerKb = 0; ///< bound of the ledger; 0: the usual one
    };

    explicit Plant(Settings settings)
        : m_settings(std::move(settings))
        , m_isBounded(m_settings.ledgerKb > 0)
    {}

    /** Starts everything. @return what did not work, or nothing */
    QString start();

    enum class Part { Broker, Gateway, Plc, Database };
    /** kill -9. */
    void kill(Part part);
    /** Starts what was killed. @return false when it did not start */
    bool revive(Part part);
    bool isAlive(Part part) const;

    /** What stands between the gateway and this part. */
    CutRelay &relay(Part part);

    /** The broker does nothing more, until it is told so again. */
    void hangBroker(bool isHanging) { isHanging ? m_broker.pause() : m_broker.resume(); }

    /** No file of the gateway grows beyond so many bytes; negative: as they like. */
    void limitFiles(qint64 bytes);

    /** The gateway's wall clock is so far ahead of the computer's. */
    bool setClock(qint64 secondsAhead);

    /** Neither the broker nor the database can be reached, until it is told so again. */
    void setSinksAway(bool isAway);

    /** The bound of the ledger from the next start of the gateway on; 0: the usual one. */
    bool setLedgerKb(int bound);

    /** Whether the gateway said within that time that nothing waits any more. */
    bool isDrained(qint64 withinMs) const;
    /** Whether bounds of the ledger took something from broker and database. */
    bool isDropping() const { return standingIn(folder()).losingSinks == 2; }
    /** Whether something has come to all sinks. */
    bool hasBegun();
    /** Whether the history has all that the ledger took; the gateway is dead, and so nobody else
     * has the ledger. */
    bool hasHistoryAll() const;
    /** Rises as long as something arrives somewhere. */
    qint64 progress();

    /** Compares everything; the gateway is dead. @return what is wrong, a line each */
    QStringList audit();

    /** What the gateway said, in all of its lives that are over. */
    const QByteArray &messages() const { return m_messages; }

    /** What the ledger took, and counted as dropped; known by audit(). */
    const LedgerRecord &ledger() const { return m_ledger; }
    qint64 oldMessages() const { return m_oldMessages; }
    qint64 messageCount() { return m_record.all().size(); }
    qint64 edgeCount() { return m_record.edge().all().size(); }

private:
    bool configure();
    QVector<const char *> sinks() const;
    bool startPlc();
    bool startGateway();
    void endGateway();
    void checkLedger(QStringList &faults) const;
    QString file(const char *name) const { return m_folder.path(name); }
    QString folder() const { return QFileInfo(file("ledger.sqlite")).path(); }

    Settings m_settings;
    bool m_isBounded; ///< the ledger, at first
    cnet::gateway::MosquittoBroker m_broker;
    cnet::gateway::PostgresServer m_database;
    bool m_isDatabaseUp = false;
    bool m_isLimited = false; ///< its files were, in this life of the gateway
    std::unique_ptr<PlcProgram> m_plc;
    QString m_plcPlace;
    GatewayProgram m_folder;
    std::unique_ptr<Program> m_gateway;
    CutRelay m_toBroker;
    CutRelay m_toPlc;
    CutRelay m_toDatabase;
    BrokerRecord m_record;
    QByteArray m_messages;
    QStringList m_complaints;
    QFile m_clock;
    LedgerRecord m_ledger;
    qint64 m_oldMessages = 0;
};
