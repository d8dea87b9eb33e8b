#pragma once

#include "sparkplug/checker/message_reader.h"
#include "sparkplug/checker/packet.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace spcheck {

/** Who is looked at. */
struct Subject
{
    QByteArray group;
    QByteArray node;
    QByteArray host;           ///< the primary host that the node waits for; empty: none
    bool isClockSteady = true; ///< its wall clock; else history may seem to be of the future
};

/** What the stream says about a rule. */
struct Verdict
{
    enum class Is { NotSeen, Pass, Fail };

    Is is = Is::NotSeen;
    QString detail; ///< where it fails first
};

/**
 * Reads what went between an edge node and its broker, one event after the other, and says which
 * rules of Sparkplug B 3.0.0 it keeps. It is written from the rules alone.
 */
class Checker
{
public:
    explicit Checker(Subject subject);

    /** Names of all rules. */
    static const QStringList &rules();

    void see(const Packet &packet);
    void see(const Stream &stream)
    {
        for (const Packet &packet : stream) {
            see(packet);
        }
    }

    /** The stream is at its end; what was left open fails. */
    void finish();

    const QMap<QString, Verdict> &verdicts() const { return m_verdicts; }
    QStringList failed() const;
    QStringList notSeen() const;
    /** A line for each rule: "pass seq.step". */
    QStringList report() const;

private:
    /** A metric as its birth told it. */
    struct Born
    {
        QByteArray name;
        quint64 datatype = 0;
        bool hasAlias = false;
    };
    /** What a node or device told in its birth. */
    struct Teller
    {
        enum class Life { Unborn, Alive, Dead };
        Life life = Life::Unborn;
        QMap<QByteArray, Born> byName;
        QMap<quint64, Born> byAlias;
    };
    struct Session
    {
        bool isOpen = false;
        int protocol = 4;
        int bdSeq = -1; ///< of the will
        QList<QPair<QByteArray, int>> filters;
        bool isBorn = false;
        bool isDead = false;
        int seq = -1; ///< of the last message
        Teller node;
        QMap<QByteArray, Teller> devices;
        QSet<quint64> aliases;
        bool isRebirthWanted = false;
        QSet<QByteArray> toBear; ///< devices that lived before a rebirth
        bool hostOnline = false;
        qint64 hostAtMs = -1;
        bool mustLeave = false;
        bool wasFooled = false; ///< an outdated word said that the host is offline
    };
    struct Topic
    {
        QByteArray kind;
        QByteArray device;
        bool isRight = false;
    };

    void expect(const char *rule, bool holds, const QString &detail = QString());
    // checker_session.cpp
    void seeConnect(const Packet &packet);
    void seeWill(const Message &will);
    void seeSubscribe(const Packet &packet);
    void seeDisconnect();
    void seeReceived(const Message &message);
    void seeHost(const QByteArray &payload);
    bool hasSubscribed(const QByteArray &topic) const;
    // checker.cpp
    Topic topicOf(const QByteArray &topic);
    void seePublished(const Message &message);
    void seeMessage(const Topic &topic, const ReadMessage &read);
    void seeNumber(const Topic &topic, const ReadMessage &read);
    void seeLeaving(const Topic &topic);
    // checker_births.cpp
    void seeNodeBirth(const ReadMessage &read);
    void seeDeviceBirth(const QByteArray &device, const ReadMessage &read);
    void seeBirthMetrics(Teller &teller, const ReadMessage &read);
    void seeNodeDeath(const ReadMessage &read);
    void seeDeviceDeath(const QByteArray &device, const ReadMessage &read);
    // checker_data.cpp
    void seeData(const Topic &topic, const ReadMessage &read);
    void seeDataMetric(const Teller &teller, const ReadMetric &metric, const QString &where);
    void seeProperties(const ReadMetric &metric, const QString &where);
    static bool fits(const ReadMetric &metric, quint64 datatype);

    Subject m_subject;
    QMap<QString, Verdict> m_verdicts;
    Session m_session;
    int m_lastBdSeq = -1;
    int m_unseenConnects = 0;   ///< that may have been since m_lastBdSeq
    bool m_isRestarted = false; ///< since then: it may begin at 0, or go on
    int m_count = 0;            ///< of events, for details
    QByteArray m_where;
};

} // namespace spcheck
