#pragma once

#include "gateway.h"
#include "relay.h"

#include "gateway/support/mosquitto_broker.h"
#include "gateway/support/mqtt_talker.h"

#include <QJsonDocument>
#include <QtTest>

#include <csignal>

/**
 * A gateway that may be written through from an MQTT broker, with two PLCs: one behind a relay, and
 * a small one. And somebody who asks, with MQTT 5.
 */
class WrittenPlant
{
public:
    /** Often enough for tests of something else. */
    static QByteArray often()
    {
        return "tag_per_minute = 6000\ntag_burst = 1000\nline_per_minute = 6000\n"
               "line_burst = 1000\n";
    }

    /**
     * @param settings of [writes.press], and sections behind it
     * @param tags further rows of the tag file
     */
    bool start(const QByteArray &settings = often(), const QByteArray &tags = QByteArray())
    {
        const QStringList place{QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")};
        return broker.start() &&
               plc.serve(place, {QLatin1String("--ramp"), QLatin1String("D_W:100=0..60000@20")}) &&
               small.serve(place, {QLatin1String("--model"), QLatin1String("k120s")}) &&
               configure(settings, tags) && connectAsker() && startGateway();
    }

    /** Also after its end. */
    bool startGateway()
    {
        asker->received.clear();
        program = std::make_unique<Program>();
        if (!gateway.start(*program, {"run", QFile::encodeName(gateway.path("gateway.toml"))})) {
            return false;
        }
        // It listens when it is online, and both lines are good when both have values.
        return QTest::qWaitFor([this] { return newest("plant/press/1/counter").contains("good"); },
                               30000) &&
               QTest::qWaitFor([this] { return newest("plant/small/1/near").contains("good"); },
                               30000);
    }

    /** Publishes on the command topic of a tag. @return what tells its answer from others */
    QByteArray send(const char *line, const char *tag, const QByteArray &payload,
                    bool isRetained = false)
    {
        cnet::gateway::MqttMessage message = cnet::gateway::messageOf(
            (QByteArray("plant/write/") + line + '/' + tag + "/set").constData(), payload);
        message.responseTopic = QLatin1String("me/answers");
        message.correlation = "c" + QByteArray::number(++m_sent);
        message.isRetained = isRetained;
        asker->connection.publish(message);
        return message.correlation;
    }

    /** All answers to it. */
    QList<QJsonObject> answers(const QByteArray &correlation) const
    {
        QList<QJsonObject> found;
        for (const cnet::gateway::MqttMessage &message : asker->received) {
            if (message.topic == QLatin1String("me/answers") &&
                message.correlation == correlation) {
                found.append(QJsonDocument::fromJson(message.payload).object());
            }
        }
        return found;
    }

    /** Waits for the first one. @return "taken", "refused: ...", "taken [12.5]"; empty: none came
     */
    QString answer(const QByteArray &correlation)
    {
        if (!QTest::qWaitFor([&] { return !answers(correlation).isEmpty(); }, 30000)) {
            return QString();
        }
        return textOf(answers(correlation).first());
    }

    /** Asks, and waits for the answer. */
    QString ask(const char *line, const char *tag, const QByteArray &payload)
    {
        return answer(send(line, tag, payload));
    }

    static QString textOf(const QJsonObject &answer)
    {
        QString text = answer.value(QLatin1String("outcome")).toString();
        const QString why = answer.value(QLatin1String("why")).toString();
        const QString now = answer.value(QLatin1String("v")).toString();
        text += why.isEmpty() ? QString() : QLatin1String(": ") + why;
        return now.isEmpty() ? text : text + QLatin1String(" [") + now + QLatin1Char(']');
    }

    /** The newest message of a topic; empty: there was none. */
    QByteArray newest(const char *topic) const
    {
        for (int i = int(asker->received.size()) - 1; i >= 0; --i) {
            if (asker->received.at(i).topic == QLatin1String(topic)) {
                return asker->received.at(i).payload;
            }
        }
        return QByteArray();
    }

    QList<QJsonObject> audit() const
    {
        QFile file(gateway.path("writes.jsonl"));
        file.open(QIODevice::ReadOnly);
        QList<QByteArray> lines = file.readAll().split('\n');
        lines.removeAll(QByteArray());
        return jsonLines(lines);
    }

    /** Empty: the log has each answer just once, and a request before it. */
    QString auditFault() const
    {
        QStringList asked;
        QHash<QString, QStringList> ends;
        QHash<QString, int> repeats; // each is answered as the first one was
        for (const QJsonObject &line : audit()) {
            const QString what = line.value(QLatin1String("what")).toString();
            const QString id = line.value(QLatin1String("id")).toString();
            if (what == QLatin1String("request") || what == QLatin1String("refusal")) {
                asked.append(id);
            }
            repeats[id] += what == QLatin1String("repeat") ? 1 : 0;
            if (what != QLatin1String("request") && what != QLatin1String("repeat")) {
                ends[id].append(asked.contains(id) ? line.value(QLatin1String("outcome")).toString()
                                                   : QLatin1String("nobody asked"));
            }
        }
        for (const cnet::gateway::MqttMessage &message : asker->received) {
            if (message.topic == QLatin1String("me/answers")) {
                const QJsonObject own = QJsonDocument::fromJson(message.payload).object();
                const QString id = own.value(QLatin1String("id")).toString();
                if (!ends[id].removeOne(own.value(QLatin1String("outcome")).toString()) &&
                    --repeats[id] < 0) {
                    return QString::fromUtf8(message.payload);
                }
            }
        }
        for (auto it = ends.cbegin(); it != ends.cend(); ++it) {
            if (!it->isEmpty()) {
                return QLatin1String("nobody was answered: ") + it.key();
            }
        }
        return QString();
    }

    /** A word of the PLC behind the relay. */
    QByteArray word(int address)
    {
        const QByteArray place = "1/D_W:" + QByteArray::number(address) + " = ";
        const auto before = plc.lines().size();
        plc.type("show D_W:" + QByteArray::number(address) + '\n');
        QByteArray found;
        plc.waitForLine([&](const QByteArray &line) {
            found = line.startsWith(place) ? line.mid(place.size()) : found;
            return plc.lines().size() > before && !found.isEmpty();
        });
        return found;
    }

    cnet::gateway::MosquittoBroker broker;
    PlcProgram plc;
    PlcProgram small;
    std::unique_ptr<Relay> relay;
    GatewayProgram gateway;
    std::unique_ptr<Program> program;
    std::unique_ptr<cnet::gateway::Talker> asker;

private:
    bool configure(const QByteArray &settings, const QByteArray &tags)
    {
        relay = std::make_unique<Relay>(plc.place());
        return gateway.store("press.csv", "name,register,address,station,type,count,scale,min,max,"
                                          "access\n"
                                          "counter,D_W,100,,u16,,,,,\n"
                                          "speed,D_W,10,,u16,,0.1,0,120,\n"
                                          "count,D_W,11,,u16,,,,,\n"
                                          "other,D_W,12,,u16,,,,,\n"
                                          "sealed,D_W,13,,u16,,,,,read\n"
                                          "zones,D_W,20,,i16,4,0.1,,,\n" +
                                              tags) &&
               gateway.store("small.csv", "name,register,address\nnear,D_W,1\nfar,D_W,9000\n") &&
               gateway.store("gateway.toml",
                             "[line.press]\ntags = \"press.csv\"\ninterval = \"0\"\n"
                             "timeout = \"500ms\"\nattempts = 2\nlink = \"" +
                                 relay->link().toLatin1() +
                                 "\"\n[line.small]\ntags = \"small.csv\"\nlink = \"tcp:" +
                                 small.place().toLatin1() +
                                 "\"\n[batch]\nage = \"50ms\"\n"
                                 "[writes.small]\nallow = [\"*\"]\n"
                                 "[sink.centre]\nkind = \"mqtt\"\nversion = \"5\"\n"
                                 "site = \"plant\"\nclient_id = \"gateway\"\n"
                                 "commands = \"{site}/write/{line}/{tag}/set\"\n"
                                 "brokers = \"tcp:127.0.0.1:" +
                                 QByteArray::number(broker.port()) +
                                 "\"\n[writes.press]\nallow = [\"speed\", \"count\", \"s*\", "
                                 "{tag = \"zones[*]\", min = 0, max = 100, step = 0.5}]\n" +
                                 settings);
    }

    bool connectAsker()
    {
        cnet::gateway::MqttConnectionSettings settings;
        settings.brokers = {{QLatin1String("127.0.0.1"), broker.port(), false}};
        settings.version = cnet::gateway::MqttConnectionSettings::Version::V5;
        asker = std::make_unique<cnet::gateway::Talker>(settings);
        if (!asker->open()) {
            return false;
        }
        asker->connection.subscribe({QLatin1String("me/answers"), QLatin1String("plant/#")}, 1);
        return true;
    }

    int m_sent = 0;
};
