#pragma once

#include "gateway.h"

#include "gateway/support/mosquitto_broker.h"
#include "sparkplug/support/message_writer.h"
#include "sparkplug/wire/judgement.h"
#include "sparkplug/wire/recording_relay.h"
#include "sparkplug/wire/watcher.h"

#include <QtTest>

#include <csignal>
#include <memory>

#define WAIT_FOR(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 30000)

/** cnet-gateway as an edge node between a PLC program and a real broker; all it says is kept. */
class SparkplugSite
{
protected:
    void start()
    {
        m_program = std::make_unique<Program>();
        m_gateway = std::make_unique<GatewayProgram>();
        m_broker = std::make_unique<cnet::gateway::MosquittoBroker>();
        m_relay = std::make_unique<spcheck::RecordingRelay>();
        m_watcher = std::make_unique<spcheck::Watcher>();
        QVERIFY(m_broker->start());
        QVERIFY(m_relay->start(m_broker->port()));
        QVERIFY(m_watcher->start(m_broker->port()));
        startPlc(QLatin1String("127.0.0.1:0"));
        configure(m_relay->port());
    }

    void startPlc(const QString &place)
    {
        m_plc = std::make_unique<PlcProgram>();
        QVERIFY(m_plc->serve({QLatin1String("--tcp"), place},
                             {QLatin1String("--counter"), QLatin1String("D_W:100@20")}));
    }

    /** @param more keys of the sink, and whatever is to follow */
    void configure(quint16 port, const QByteArray &more = QByteArray())
    {
        QVERIFY(m_gateway->store("tags.csv", "name,register,address,type\ncounter,D_W,100,u32\n"
                                             "fixed,D_W,110,u16\nsetpoint,D_W,120,u16\n"));
        QVERIFY(m_gateway->store("gateway.toml",
                                 "[batch]\nage = \"100ms\"\n[line.press]\ntags = \"tags.csv\"\n"
                                 "interval = \"50ms\"\nlink = \"tcp:" +
                                     m_plc->place().toLatin1() +
                                     "\"\n[sink.history]\n[sink.scada]\nkind = \"sparkplug\"\n"
                                     "group = \"plant\"\nnode = \"gate\"\nspread = \"0\"\n"
                                     "brokers = \"tcp:127.0.0.1:" +
                                     QByteArray::number(port) + "\"\n" + more));
    }

    void run()
    {
        m_program = std::make_unique<Program>();
        QVERIFY(m_gateway->start(*m_program,
                                 {"run", QFile::encodeName(m_gateway->path("gateway.toml"))}));
    }

    void end()
    {
        const int connections = births();
        m_program->signal(SIGTERM);
        WAIT_FOR(!m_program->isRunning());
        QVERIFY2(m_program->exitCode() == 0, m_program->errors().constData());
        WAIT_FOR(m_relay->stream().last().kind == spcheck::Packet::Kind::Closed);
        QCOMPARE(births(), connections);
    }

    void check(const QByteArray &host = QByteArray()) const
    {
        const QStringList faults = spcheck::faultsOf(m_relay->stream(), {"plant", "gate", host});
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
    }

    int births() const { return m_relay->count("NBIRTH"); }
    int data() const { return m_relay->count("DDATA"); }

    void askForRebirth()
    {
        spcheck::ReadMetric metric;
        metric.name = "Node Control/Rebirth";
        metric.datatype = 11U;
        metric.field = spcheck::Field::Truth;
        metric.number = 1;
        m_watcher->publish({"spBv1.0/plant/NCMD/gate",
                            spcheck::MessageWriter::write({1U, std::nullopt, {metric}}), 0, false});
    }

    /** All values of a metric that a host saw, by the births before. @param lastAlias of it */
    QSet<qint64> valuesSeen(const QByteArray &name, std::optional<quint64> *lastAlias = nullptr)
    {
        QSet<qint64> values;
        std::optional<quint64> alias;
        for (const spcheck::Message &message : m_watcher->seen()) {
            if (message.topic.contains("CMD/")) {
                continue;
            }
            const auto read =
                spcheck::readMessage(message.payload).value_or(spcheck::ReadMessage());
            for (const spcheck::ReadMetric &metric : read.metrics) {
                alias = metric.name == name ? metric.alias : alias;
                if (metric.alias && metric.alias == alias && !metric.isNull) {
                    values.insert(qint64(metric.number));
                }
            }
        }
        if (lastAlias != nullptr) {
            *lastAlias = alias;
        }
        return values;
    }

    std::unique_ptr<cnet::gateway::MosquittoBroker> m_broker;
    std::unique_ptr<spcheck::RecordingRelay> m_relay;
    std::unique_ptr<spcheck::Watcher> m_watcher;
    std::unique_ptr<GatewayProgram> m_gateway;
    std::unique_ptr<PlcProgram> m_plc;
    std::unique_ptr<Program> m_program;
};
