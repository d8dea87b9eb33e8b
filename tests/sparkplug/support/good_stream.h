#pragma once

#include "sparkplug/checker/packet.h"
#include "sparkplug/support/message_writer.h"

#include <QMap>

namespace spcheck {

/**
 * A life of an edge node that keeps all rules, event by event, each with a name: so that a test can
 * spoil one of them.
 */
class GoodStream
{
public:
    struct Event
    {
        QByteArray name;
        Packet packet;
        std::optional<ReadMessage> content;     ///< of what is published
        std::optional<ReadMessage> willContent; ///< of CONNECT
    };

    GoodStream()
    {
        connect("connect", 0);
        nodeBirth("nbirth", 0);
        deviceBirth("dbirth", "press.1", 1, 10);
        deviceBirth("dbirth-oven", "oven.1", 2, 20);
        publish("ndata", "NDATA", "", {{}, 3U, {data(5)}});
        publish("ddata", "DDATA", "/press.1", {{}, 4U, {data(10), data(11), bad(12)}});
        publish("history", "DDATA", "/press.1", {{}, 5U, {old(10)}});
        publish("ddeath", "DDEATH", "/oven.1", {{}, 6U, {}});
        deviceBirth("dbirth-back", "oven.1", 7, 20);
        publish("ddata-back", "DDATA", "/oven.1", {{}, 8U, {data(20)}});
        rebirth();
        nodeBirth("nbirth-again", 0);
        deviceBirth("dbirth-again", "press.1", 1, 10);
        deviceBirth("dbirth-oven-again", "oven.1", 2, 20);
        publish("ddata-again", "DDATA", "/press.1", {{}, 3U, {data(10)}});
        state("outdated", false, 500);
        publish("ddata-on", "DDATA", "/press.1", {{}, 4U, {data(10)}});
        state("offline", false, 2000);
        publish("ndeath", "NDEATH", "", death(0));
        add("disconnect").packet.kind = Packet::Kind::Disconnect;
        connect("reconnect", 1);
        nodeBirth("nbirth-later", 1);
        add("closed").packet.kind = Packet::Kind::Closed;
    }

    Event &event(const QByteArray &name)
    {
        for (Event &event : m_events) {
            if (event.name == name) {
                return event;
            }
        }
        qFatal("no event %s", name.constData());
    }
    Packet &packet(const QByteArray &name) { return event(name).packet; }
    ReadMessage &content(const QByteArray &name) { return *event(name).content; }
    ReadMessage &will(const QByteArray &name) { return *event(name).willContent; }
    ReadMetric &metric(const QByteArray &name, int index)
    {
        return event(name).content->metrics[index];
    }

    void remove(const QByteArray &name)
    {
        for (int i = 0; i < m_events.size(); ++i) {
            if (m_events.at(i).name == name) {
                m_events.removeAt(i);
                return;
            }
        }
    }
    /** Puts a copy of one event in front of another one. */
    void copy(const QByteArray &name, const QByteArray &before)
    {
        Event copied = event(name);
        copied.name += "-copy";
        for (int i = 0; i < m_events.size(); ++i) {
            if (m_events.at(i).name == before) {
                m_events.insert(i, copied);
                return;
            }
        }
    }
    /** Cuts what comes behind an event. */
    void endAt(const QByteArray &name)
    {
        while (m_events.last().name != name) {
            m_events.removeLast();
        }
    }
    /** Numbers the messages anew, after one came or went. */
    void renumber()
    {
        quint64 seq = 0;
        for (Event &event : m_events) {
            if (event.content && event.content->seq) {
                seq = event.packet.message.topic.contains("/NBIRTH/") ? 0 : seq + 1;
                event.content->seq = seq;
            }
        }
    }

    Stream stream() const
    {
        Stream stream;
        for (const Event &event : m_events) {
            Packet packet = event.packet;
            if (event.content) {
                packet.message.payload = MessageWriter::write(*event.content);
            }
            if (event.willContent && packet.will) {
                packet.will->payload = MessageWriter::write(*event.willContent);
            }
            stream.append(packet);
        }
        return stream;
    }

    static ReadMetric data(quint64 alias)
    {
        ReadMetric metric;
        metric.alias = alias;
        metric.timestamp = 1000U;
        metric.field = Field::Int;
        metric.number = 7;
        return metric;
    }

private:
    Event &add(const QByteArray &name)
    {
        m_events.append(Event());
        m_events.last().name = name;
        return m_events.last();
    }

    static ReadMetric birth(const QByteArray &name, quint64 alias)
    {
        ReadMetric metric = data(alias);
        metric.name = name;
        metric.datatype = 6U;
        return metric;
    }
    static ReadMetric bdSeq(quint64 number)
    {
        ReadMetric metric = birth("bdSeq", 0);
        metric.alias.reset();
        metric.datatype = 4U;
        metric.field = Field::Long;
        metric.number = number;
        return metric;
    }
    static ReadMetric bad(quint64 alias)
    {
        ReadMetric metric = data(alias);
        metric.isNull = true;
        metric.field = Field::None;
        metric.properties = {{"Quality", 3, 500, Field::Int}};
        return metric;
    }
    static ReadMetric old(quint64 alias)
    {
        ReadMetric metric = data(alias);
        metric.timestamp = 900U;
        metric.isHistorical = true;
        return metric;
    }
    static ReadMessage death(quint64 number) { return {1000U, std::nullopt, {bdSeq(number)}}; }

    void connect(const QByteArray &name, quint64 number)
    {
        Event &event = add(name);
        event.packet.kind = Packet::Kind::Connect;
        event.packet.will = Message{"spBv1.0/plant/NDEATH/gate", QByteArray(), 1, false};
        event.willContent = death(number);
        Event &subscribe = add(name + "-subscribe");
        subscribe.packet.kind = Packet::Kind::Subscribe;
        subscribe.packet.filters = {{"spBv1.0/plant/NCMD/gate", 1},
                                    {"spBv1.0/plant/DCMD/gate/+", 1},
                                    {"spBv1.0/STATE/scada", 1}};
        state(name + "-online", true, 1000);
    }

    void publish(const QByteArray &name, const QByteArray &kind, const QByteArray &device,
                 ReadMessage content)
    {
        Event &event = add(name);
        event.packet.message.topic = "spBv1.0/plant/" + kind + "/gate" + device;
        event.packet.message.qos = kind == "NDEATH" ? 1 : 0;
        content.timestamp = 1000U;
        event.content = content;
    }
    void nodeBirth(const QByteArray &name, quint64 number)
    {
        ReadMetric control = birth("Node Control/Rebirth", 0);
        control.alias.reset();
        control.datatype = 11U;
        control.field = Field::Truth;
        control.number = 0;
        publish(name, "NBIRTH", "", {{}, 0U, {bdSeq(number), control, birth("load", 5)}});
    }
    void deviceBirth(const QByteArray &name, const QByteArray &device, quint64 seq, quint64 alias)
    {
        publish(
            name, "DBIRTH", '/' + device,
            {{}, seq, {birth("speed", alias), birth("level", alias + 1), birth("n", alias + 2)}});
    }
    void state(const QByteArray &name, bool isOnline, int atMs)
    {
        Event &event = add(name);
        event.packet.from = Packet::From::Broker;
        event.packet.message.topic = "spBv1.0/STATE/scada";
        event.packet.message.payload = QByteArray("{\"online\":") + (isOnline ? "true" : "false") +
                                       ",\"timestamp\":" + QByteArray::number(atMs) + '}';
    }
    void rebirth()
    {
        Event &event = add("rebirth");
        event.packet.from = Packet::From::Broker;
        event.packet.message.topic = "spBv1.0/plant/NCMD/gate";
        ReadMetric wanted = birth("Node Control/Rebirth", 0);
        wanted.alias.reset();
        wanted.datatype = 11U;
        wanted.field = Field::Truth;
        wanted.number = 1;
        event.content = ReadMessage{1000U, std::nullopt, {wanted}};
    }

    QList<Event> m_events;
};

} // namespace spcheck
