#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

namespace cnet::gateway {

/** Where the answer to a request goes; only the sink that asked reads it. */
struct WriteReply
{
    QString sink;           ///< its name
    QString topic;          ///< empty: the sink's usual one
    QByteArray correlation; ///< given back as it came; often empty
};

/** Somebody outside wants a tag to have a value. Nothing of it has been checked yet. */
struct WriteRequest
{
    enum class Arrival {
        Live,    ///< sent now
        Retained ///< kept by a broker from some time before: never carried out
    };

    QString id;    ///< chosen by who asks, and given back; empty: there was none
    QString line;  ///< names as the configuration and the tag file have them
    QString tag;   ///< a value of an array has its index behind: "mould.zones[2]"
    QString value; ///< as text, in the tag's unit: "12.5", "true", "running"
    Arrival arrival = Arrival::Live;
    WriteReply reply;
    QString fault = {}; ///< why it cannot be carried out, as the sink saw at once; empty: nothing
};

/** What became of a request. Each gets exactly one. */
struct WriteAnswer
{
    enum class Outcome {
        Taken,     ///< the PLC has it, and it was read back
        Refused,   ///< it was not sent, or the PLC refused it
        NoAnswer,  ///< it was sent, and what came of it is not known
        Superseded ///< a later request for the same value took its place before it was sent
    };

    QString id;
    QString line;
    QString tag;
    Outcome outcome = Outcome::Refused;
    QString reason;  ///< in words; empty when it was taken
    QString isNow;   ///< what was read back, as text in the tag's unit; empty: nothing was
    qint64 atMs = 0; ///< milliseconds since 1970 in UTC
    WriteReply reply;
};

/** "taken", "refused", "no answer" or "superseded": the same words everywhere. */
QString outcomeText(WriteAnswer::Outcome outcome);

} // namespace cnet::gateway

Q_DECLARE_METATYPE(cnet::gateway::WriteRequest)
Q_DECLARE_METATYPE(cnet::gateway::WriteAnswer)
