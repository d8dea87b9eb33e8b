#include "host/capture/capture_command_line.h"

#include <array>

namespace cnet {

namespace {

constexpr qint64 kSmallestFile = 16384;
constexpr qint64 kLargestFile = 1LL << 40;
constexpr qint64 kLongestAge = 366LL * 24 * 3600;
constexpr qint64 kMostFiles = 1000;
constexpr qint64 kUsualFiles = 10;

const char *const kSize = "capture-size";
const char *const kAge = "capture-age";
const char *const kFiles = "capture-files";
const char *const kFormat = "capture-as";

struct Unit
{
    char letter;
    qint64 factor;
};

constexpr std::array<Unit, 3> kBytes = {{{'k', 1LL << 10}, {'M', 1LL << 20}, {'G', 1LL << 30}}};
constexpr std::array<Unit, 3> kSeconds = {{{'m', 60}, {'h', 3600}, {'d', 24LL * 3600}}};
constexpr std::array<Unit, 0> kNone = {};

// A whole number with the letter of a unit or none.
template <std::size_t count>
bool readAmount(QString text, const std::array<Unit, count> &units, qint64 low, qint64 high,
                qint64 &amount)
{
    qint64 factor = 1;
    for (const Unit &unit : units) {
        if (text.endsWith(QLatin1Char(unit.letter))) {
            factor = unit.factor;
            text.chop(1);
            break;
        }
    }
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (!ok || number < 0 || number > high / factor) {
        return false;
    }
    amount = number * factor;
    return amount >= low;
}

bool readFormat(const QString &text, CaptureFormat &format)
{
    format = text == QLatin1String("rtac") ? CaptureFormat::RtacSerial : CaptureFormat::ExportedPdu;
    return text == QLatin1String("rtac") || text == QLatin1String("pdu");
}

/** The options that say how, of which the first wrong one is told. */
class HowReader
{
public:
    HowReader(const QCommandLineParser &parser, QString &error)
        : m_parser(parser)
        , m_error(error)
    {}

    template <typename Read>
    bool read(const char *name, const char *expected, Read read)
    {
        const QString option = QLatin1String(name);
        if (!m_parser.isSet(option)) {
            return true;
        }
        const QString text = m_parser.value(option);
        if (!m_parser.isSet(QLatin1String("capture"))) {
            m_error = QString::fromLatin1("--%1: expected --capture FILE with it").arg(option);
            return false;
        }
        if (!read(text)) {
            m_error = QString::fromLatin1("--%1 '%2': expected %3")
                          .arg(option, text, QLatin1String(expected));
            return false;
        }
        return true;
    }

private:
    const QCommandLineParser &m_parser;
    QString &m_error;
};

bool readHow(const QCommandLineParser &parser, CaptureOptions &options, QString &error)
{
    qint64 files = kUsualFiles;
    HowReader how(parser, error);
    const bool ok =
        how.read(kFormat, "pdu or rtac",
                 [&](const QString &text) { return readFormat(text, options.format); }) &&
        how.read(kSize, "bytes from 16k to 1024G, for example 10M",
                 [&](const QString &text) {
                     return readAmount(text, kBytes, kSmallestFile, kLargestFile,
                                       options.fileBytes);
                 }) &&
        how.read(kAge, "seconds from 1 to 366d, for example 90, 30m, 1h or 1d",
                 [&](const QString &text) {
                     return readAmount(text, kSeconds, 1, kLongestAge, options.fileSeconds);
                 }) &&
        how.read(kFiles, "a number from 1 to 1000", [&](const QString &text) {
            return readAmount(text, kNone, 1, kMostFiles, files);
        });
    options.files = static_cast<int>(files);
    return ok;
}

} // namespace

void addCaptureOptions(QCommandLineParser &parser)
{
    const auto add = [&parser](const char *name, const char *description, const char *value) {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value)});
    };
    add("capture",
        "Writes every frame to a pcapng file as it goes, for Wireshark; - is standard output, for "
        "| wireshark -k -i -, and what else is printed goes to standard error.",
        "FILE");
    add(kFormat,
        "pdu (default: Wireshark needs no setting) or rtac (as serial recorders write it).",
        "FORMAT");
    add(kSize, "Begins another file before one has this many bytes: 16k to 1024G.", "BYTES");
    add(kAge, "Begins another file when one spans this many seconds, or 30m, 1h, 1d.", "SECONDS");
    add(kFiles,
        "How many files of this size or age are kept, 1-1000 (default 10): FILE, and the older "
        "FILE.1, FILE.2 and so on with the number before the suffix.",
        "N");
}

bool readCaptureOptions(const QCommandLineParser &parser, const QString &program,
                        std::optional<CaptureOptions> &options, QString &error)
{
    CaptureOptions read;
    if (!readHow(parser, read, error)) {
        return false;
    }
    if (parser.isSet(QLatin1String(kFiles)) && !read.isRing()) {
        error = QLatin1String("--capture-files: expected --capture-size or --capture-age with it");
        return false;
    }
    const QString capture = QLatin1String("capture");
    if (!parser.isSet(capture)) {
        return true;
    }
    read.path = parser.value(capture);
    read.program = program;
    if (read.path.isEmpty()) {
        error = QLatin1String("--capture: expected the name of a file, or - for standard output");
        return false;
    }
    options = read;
    return true;
}

} // namespace cnet
