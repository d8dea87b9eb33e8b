#include "host/address/value_text.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_input.h"
#include "host/decode/frame_text.h"
#include "host/wire/block_check.h"
#include "host/wire/frame_splitter.h"
#include "host/wire/frame_words.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/options/output_format.h"
#include "panel/reports/decode_output.h"
#include "panel/runs/send_run.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

#include <QJsonDocument>

#include <cmath>

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    addLineOptions(parser);
    addFormatOption(parser, "text (default: a line for each field) or json.");
    parser.addOption(QCommandLineOption(
        QLatin1String("bcc"),
        QLatin1String("Adds what the frame lacks: ENQ, EOT and the block check.")));
    parser.addOption(
        QCommandLineOption(QLatin1String("yes"),
                           QLatin1String("Sends what writes, or what is no plain reading, too.")));
}

bool readFrame(const Invocation &invocation, QByteArray &frame, QString &error)
{
    frame = readBytes(invocation.arguments.join(QLatin1Char(' ')), error);
    if (!error.isEmpty()) {
        return false;
    }
    if (frame.isEmpty()) {
        error = QLatin1String("expected a frame, for example send --bcc 01rSB08%DW0010005");
        return false;
    }
    if (invocation.parser.isSet(QLatin1String("bcc"))) {
        frame = completedRequest(frame);
    }
    if (frame.size() > kMostBytesOfFrame) {
        error = QString::fromLatin1("a frame of %1 bytes: expected at most %2")
                    .arg(frame.size())
                    .arg(kMostBytesOfFrame);
        return false;
    }
    if (!invocation.parser.isSet(QLatin1String("yes")) && !onlyReads(frame)) {
        error = isWriteRequest(frame)
                    ? QLatin1String("the frame writes; --yes sends it")
                    : QLatin1String("the frame is no plain reading, so nobody knows what a PLC "
                                    "does with it; --yes sends it");
        return false;
    }
    return true;
}

void printJson(const char *event, QJsonObject object)
{
    object.insert(QLatin1String("event"), QLatin1String(event));
    writeToStandardOutput(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

// A tenth of a millisecond is as fine as the measurement is good.
double tenths(double ms)
{
    return std::round(ms * 10) / 10;
}

void printText(const RawReply &reply, const DecodedFrame &request, const DecodedFrame &answer)
{
    const QString took = QString::number(reply.tookMs, 'f', 1);
    QByteArray text = "sent " + decodedText(request);
    if (!reply.answer.isEmpty()) {
        text += "after " + took.toLatin1() + " ms " + decodedText(answer);
    }
    for (const QByteArray &other : splitFrames(reply.elsewhere, Between::Keep)) {
        text += "besides " + decodedText(decodeFrame(other, &request));
    }
    writeToStandardOutput(text);
}

void printJson(const RawReply &reply, const DecodedFrame &request, const DecodedFrame &answer)
{
    printJson("sent", decodedJson(request));
    if (!reply.answer.isEmpty()) {
        QJsonObject object = decodedJson(answer);
        object.insert(QLatin1String("took_ms"), tenths(reply.tookMs));
        printJson("answer", object);
    } else {
        printJson("no answer", {{QLatin1String("took_ms"), tenths(reply.tookMs)}});
    }
    for (const QByteArray &other : splitFrames(reply.elsewhere, Between::Keep)) {
        printJson("besides", decodedJson(decodeFrame(other, &request)));
    }
}

int run(const Invocation &invocation)
{
    QString error;
    QByteArray frame;
    OutputFormat format = OutputFormat::Text;
    const auto link = readLinkSettings(invocation.parser, LinkNeed::Required, error);
    if (!link || !readTextOrJsonOption(invocation.parser, format, error) ||
        !readFrame(invocation, frame, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    int exitCode = kFine;
    const auto reply = sendFrame(*link, frame, invocation.messages, exitCode);
    if (!reply) {
        return exitCode;
    }
    const DecodedFrame request = decodeFrame(frame);
    const DecodedFrame answer = decodeFrame(reply->answer, request.isGood() ? &request : nullptr);
    if (format == OutputFormat::Json) {
        printJson(*reply, request, answer);
    } else {
        printText(*reply, request, answer);
    }
    if (reply->answer.isEmpty()) {
        invocation.messages.say(
            QString::fromLatin1("no answer within %1 ms").arg(qRound(reply->tookMs)));
    }
    if (reply->strayBytes > 0) {
        invocation.messages.say(counted(reply->strayBytes, "byte") +
                                QLatin1String(" came that belong to no answer"));
    }
    return answer.isGood() && answer.direction == FrameDirection::Answer ? kFine : kDeviceFailed;
}

} // namespace

const Command kSendCommand = {
    "send",
    "FRAME",
    "Sends one frame as it is, and explains what comes back. FRAME is in hexadecimal, or text with "
    "\\x05 or <ENQ> for control characters. What writes needs --yes; --link is needed.",
    "send --link tcp:192.168.0.100:8000 --bcc 01rSB08%DW0010005\n"
    "send --link serial:/dev/ttyUSB0 '<ENQ>01rSB08%DW0010005<EOT>EF'\n",
    addOptions,
    run};

} // namespace cnet::panel
