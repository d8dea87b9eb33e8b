#include "host/address/value_text.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_input.h"
#include "panel/commands/commands.h"
#include "panel/options/output_format.h"
#include "panel/reports/decode_output.h"
#include "panel/system/exit_code.h"
#include "panel/system/input_file.h"
#include "panel/system/standard_output.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace cnet::panel {

namespace {

const int kLongestInput = 16 * 1024 * 1024;

void addOptions(QCommandLineParser &parser)
{
    addFormatOption(parser, "text (default: a line for each field) or json.");
}

// A file where there is one of this name; else the frame stands on the command line.
std::optional<QByteArray> readContent(const QStringList &arguments, QString &error)
{
    if (arguments.isEmpty()) {
        error = QLatin1String("expected a frame, a file or -, for example decode "
                              "'\\x0501rSB08%DW0010005\\x04EF'");
        return std::nullopt;
    }
    const QString &first = arguments.first();
    if (first == QLatin1String("-")) {
        return readInputFile(QLatin1String("/dev/stdin"), kLongestInput, error);
    }
    if (arguments.size() == 1 && QFileInfo::exists(first)) {
        return readInputFile(first, kLongestInput, error);
    }
    return arguments.join(QLatin1Char(' ')).toUtf8();
}

bool print(const FoundFrame &found, FrameDecoder &decoder, OutputFormat format)
{
    const DecodedFrame frame = decoder.next(found.bytes);
    if (format == OutputFormat::Json) {
        QJsonObject object = decodedJson(frame);
        object.insert(QLatin1String("event"), QLatin1String("frame"));
        object.insert(QLatin1String("line"), found.line);
        writeToStandardOutput(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    } else {
        writeToStandardOutput(decodedText(frame));
    }
    return frame.isGood();
}

int run(const Invocation &invocation)
{
    QString error;
    OutputFormat format = OutputFormat::Text;
    std::optional<QByteArray> content;
    if (readTextOrJsonOption(invocation.parser, format, error)) {
        content = readContent(invocation.arguments, error);
    }
    if (!content) {
        invocation.messages.say(error);
        return kUsage;
    }
    const FoundFrames found = findFrames(*content);
    for (const QString &fault : found.errors) {
        invocation.messages.say(fault);
    }
    FrameDecoder decoder;
    bool good = found.errors.isEmpty() && !found.frames.isEmpty();
    for (const FoundFrame &frame : found.frames) {
        good = print(frame, decoder, format) && good;
    }
    if (found.frames.isEmpty() && found.errors.isEmpty()) {
        invocation.messages.say(QLatin1String("there is no frame in it"));
    } else if (found.skippedLines > 0) {
        invocation.messages.say(counted(found.skippedLines, "line") +
                                QLatin1String(" without a frame left out"));
    }
    return good ? kFine : kUsage;
}

} // namespace

const Command kDecodeCommand = {
    "decode",
    "[FRAME|FILE|-]",
    "Explains frames field by field and says where a wrong one goes wrong, without a PLC. FRAME is "
    "in hexadecimal, or text with \\x05 or <ENQ> for control characters; FILE may also be a log or "
    "what --trace printed. Ends with 2 when a frame is wrong.",
    "decode '<ENQ>01rSB08%DW0010005<EOT>EF'\n"
    "decode 05 30 31 77 53 42 04\n"
    "decode --format json trace.log\n",
    addOptions,
    run};

} // namespace cnet::panel
