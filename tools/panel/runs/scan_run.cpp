#include "panel/runs/scan_run.h"

#include "host/address/value_text.h"
#include "host/exchange/trace.h"
#include "host/scan/scan.h"
#include "host/time/system_clock.h"
#include "panel/reports/scan_output.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"
#include "panel/terminal/bar_and_messages.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>

namespace cnet::panel {

namespace {

const int kSimulatedStations = 3;

LinkSettings withLine(LinkSettings settings, const LineSettings &line)
{
    if (settings.link) {
        settings.link->line = line;
    }
    settings.session.line = line;
    return settings;
}

QVector<int> simulatedStations()
{
    QVector<int> stations;
    for (int station = 1; station <= kSimulatedStations; ++station) {
        stations.append(station);
    }
    return stations;
}

class ScanRun
{
public:
    ScanRun(const LinkSettings &link, const ScanOptions &options, OutputFormat format,
            Messages &messages)
        : m_link(link)
        , m_format(format)
        , m_messages(messages)
        , m_shown(messages, "questions")
        , m_scan([this](const LineSettings &line) { return makeLink(line); }, options,
                 SystemClock::instance())
        , m_surveys(!options.registers.isEmpty())
    {
        QObject::connect(&m_scan, &Scan::progressed, &m_scan,
                         [this](int done, int total) { m_shown.bar().show(done, total); });
        QObject::connect(&m_scan, &Scan::surveyed, &m_scan,
                         [this](int station) { print(station); });
        QObject::connect(&m_stopSignals, &StopSignals::caught, &m_scan, [this] {
            m_interrupted = true;
            m_scan.cancel();
        });
        QObject::connect(&m_scan, &Scan::finished, &m_loop, &QEventLoop::quit);
        if (link.trace) {
            trace();
        }
    }

    int run()
    {
        announce();
        m_scan.start();
        m_loop.exec();
        m_shown.bar().clear();
        for (const FoundStation &found : m_scan.found()) {
            if (!m_printed.contains(found.station)) {
                print(found.station);
            }
        }
        printEnd();
        return exitCode();
    }

private:
    std::unique_ptr<Link> makeLink(const LineSettings &line)
    {
        auto link = linkFor(withLine(m_link, line), simulatedStations(), m_messages);
        m_name = link->name();
        return link;
    }

    void trace()
    {
        QObject::connect(&m_scan, &Scan::trying, &m_scan, [this](const LineSettings &line) {
            m_messages.line(QLatin1String("trying ") + line.text());
        });
        QObject::connect(&m_scan, &Scan::frameSent, &m_scan, [this](const QByteArray &frame) {
            m_messages.line(traceRequest(QTime::currentTime(), frame));
        });
        QObject::connect(&m_scan, &Scan::frameEnded, &m_scan, [this](const Reply &reply) {
            ExchangeReport report;
            report.reply = reply;
            m_messages.line(traceAnswer(QTime::currentTime(), report));
        });
    }

    void announce()
    {
        QString text = QString::fromLatin1("at most %1 to find the stations")
                           .arg(counted(m_scan.mostSearchFrames(), "frame"));
        if (m_surveys) {
            text += QString::fromLatin1(", then at most %1 for the registers of each")
                        .arg(m_scan.mostSurveyFrames());
        }
        m_messages.say(text);
    }

    void print(int station)
    {
        m_shown.bar().clear();
        m_printed.append(station);
        for (const FoundStation &found : m_scan.found()) {
            if (found.station == station) {
                writeToStandardOutput(m_format == OutputFormat::Json ? foundJson(found, m_name)
                                                                     : foundText(found, m_name));
            }
        }
    }

    void printEnd()
    {
        if (m_interrupted) {
            m_messages.say(QLatin1String("scanning was given up: interrupted"));
        }
        if (!m_scan.lineError().isEmpty()) {
            m_messages.say(QLatin1String(m_scan.frames() == 0 ? "cannot open " : "") +
                           m_scan.lineError());
        } else if (m_scan.found().isEmpty() && !m_interrupted) {
            m_messages.say(QLatin1String("no station answers"));
        }
        if (m_format == OutputFormat::Json) {
            const QJsonObject end{
                {QLatin1String("event"), QLatin1String("end")},
                {QLatin1String("stations"), static_cast<int>(m_scan.found().size())},
                {QLatin1String("frames"), m_scan.frames()},
                {QLatin1String("most_search_frames"), m_scan.mostSearchFrames()},
                {QLatin1String("most_survey_frames"), m_scan.mostSurveyFrames()},
                {QLatin1String("complete"), !m_interrupted && m_scan.lineError().isEmpty()}};
            writeToStandardOutput(QJsonDocument(end).toJson(QJsonDocument::Compact) + '\n');
        }
    }

    int exitCode() const
    {
        if (!m_scan.lineError().isEmpty() && m_scan.frames() == 0) {
            return kNoLink;
        }
        const bool fine = !m_interrupted && m_scan.lineError().isEmpty();
        return fine && !m_scan.found().isEmpty() ? kFine : kDeviceFailed;
    }

    LinkSettings m_link;
    OutputFormat m_format;
    Messages &m_messages;
    BarAndMessages m_shown;
    Scan m_scan;
    StopSignals m_stopSignals;
    QEventLoop m_loop;
    QString m_name; ///< of the link that is open
    QVector<int> m_printed;
    bool m_surveys;
    bool m_interrupted = false;
};

} // namespace

int runScan(const LinkSettings &link, const ScanOptions &options, OutputFormat format,
            Messages &messages)
{
    return ScanRun(link, options, format, messages).run();
}

} // namespace cnet::panel
