#include "view/shell/start.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace cnet::view {

namespace {

constexpr int kUsageError = 2;

} // namespace

std::optional<Start> readStart(const QStringList &arguments, QString &output, int &exitCode)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "Start", "A window on PLCs of the MASTER-K family: values, trends, frames, stations.\n"
                 "Without arguments it shows a simulated press line."));
    const auto help = parser.addHelpOption();
    const auto version = parser.addVersionOption();
    const QCommandLineOption link(
        QLatin1String("link"),
        QCoreApplication::translate(
            "Start", "Connect to tcp:HOST:PORT or serial:DEVICE[,BAUD,DATABITS,PARITY,STOPBITS]."),
        QLatin1String("LINK"));
    const QCommandLineOption station(
        QLatin1String("station"),
        QCoreApplication::translate("Start", "Station of what names none, 0 to 31 (default 1)."),
        QLatin1String("NUMBER"), QLatin1String("1"));
    parser.addOptions({link, station});
    parser.addPositionalArgument(
        QLatin1String("FILE"),
        QCoreApplication::translate("Start", "A project of this program, or a tag file (.csv)."),
        QLatin1String("[FILE]"));

    const auto refuse = [&](const QString &text) {
        output = QLatin1String("cnet-view: ") + text + QLatin1Char('\n');
        exitCode = kUsageError;
        return std::nullopt;
    };
    if (!parser.parse(arguments)) {
        return refuse(parser.errorText());
    }
    exitCode = 0;
    if (parser.isSet(help)) {
        output = parser.helpText();
        return std::nullopt;
    }
    if (parser.isSet(version)) {
        output = QString::fromLatin1("cnet-view %1\n").arg(QCoreApplication::applicationVersion());
        return std::nullopt;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() > 1) {
        return refuse(
            QCoreApplication::translate("Start", "one file at a time, not '%1'").arg(files.at(1)));
    }
    Start start;
    start.file = files.value(0);
    start.isDemo = files.isEmpty() && !parser.isSet(link);
    QJsonObject asked{{QLatin1String("link"),
                       parser.isSet(link) ? parser.value(link) : QLatin1String("simulator")}};
    bool isNumber = false;
    asked.insert(QLatin1String("station"), parser.value(station).toInt(&isNumber));
    QString error;
    if (parser.isSet(link) && !parseLinkAddress(parser.value(link), error)) {
        return refuse(error);
    }
    const auto connection = Connection::restored(asked);
    if (!isNumber || !connection) {
        return refuse(QCoreApplication::translate("Start", "--station '%1': expected 0 to 31")
                          .arg(parser.value(station)));
    }
    if (parser.isSet(link)) {
        start.connection = connection;
    }
    return start;
}

} // namespace cnet::view
