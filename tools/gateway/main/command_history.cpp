#include "gateway/main/commands.h"
#include "gateway/main/history_output.h"
#include "gateway/main/messages.h"
#include "gateway/toml/time_text.h"

#include "host/text/near_miss.h"

#include <QDateTime>
#include <QFileInfo>

namespace cnet::gateway {

namespace {

bool readTime(const QCommandLineParser &parser, const char *name, qint64 &ms)
{
    if (!parser.isSet(QLatin1String(name))) {
        return true;
    }
    const QString text = parser.value(QLatin1String(name));
    const auto time = parseTime(text, QDateTime::currentMSecsSinceEpoch());
    if (!time) {
        say(QString::fromLatin1("--%1 '%2': expected a time as in 2026-11-22T06:00, or so long "
                                "ago as in 90m, 2h or 3d")
                .arg(QLatin1String(name), text));
        return false;
    }
    ms = *time;
    return true;
}

std::optional<HistoryFormat> readFormat(const QCommandLineParser &parser)
{
    const QStringList names{QLatin1String("text"), QLatin1String("json"), QLatin1String("csv")};
    const QString text = parser.value(QLatin1String("format"));
    const int index = text.isEmpty() ? 0 : static_cast<int>(names.indexOf(text));
    if (index < 0) {
        say(QString::fromLatin1("--format '%1': expected text, json or csv").arg(text));
        return std::nullopt;
    }
    return static_cast<HistoryFormat>(index);
}

QString fileOf(const QCommandLineParser &parser)
{
    const QString here = QLatin1String("history.sqlite");
    if (parser.isSet(QLatin1String("file"))) {
        return parser.value(QLatin1String("file"));
    }
    const QString service = QLatin1String("/var/lib/cnet-gateway/history.sqlite");
    return QFileInfo::exists(service) && !QFileInfo::exists(here) ? service : here;
}

bool openHistory(HistoryReader &reader, const QString &path, const HistoryQuery &query)
{
    const StoreError failed =
        QFileInfo::exists(path)
            ? reader.open(path)
            : StoreError{StoreError::Kind::Other, QLatin1String("there is no such file")};
    if (!failed.isNone()) {
        say(QString::fromLatin1("cannot read %1: %2").arg(path, failed.text));
        return false;
    }
    if (!reader.hasTag(query)) {
        say(QString::fromLatin1("%1 has no tag '%2'%3")
                .arg(path, query.tag, nearMissHint(query.tag, reader.tags())));
        return false;
    }
    return true;
}

} // namespace

int runHistory(const Invocation &invocation)
{
    const QCommandLineParser &parser = invocation.parser;
    HistoryQuery query;
    query.tag = invocation.arguments.value(0);
    query.line = parser.value(QLatin1String("line"));
    const auto format = readFormat(parser);
    if (query.tag.isEmpty()) {
        say(QLatin1String("expected a tag: cnet-gateway history TAG"));
    }
    if (query.tag.isEmpty() || !format || !readTime(parser, "from", query.fromMs) ||
        !readTime(parser, "to", query.toMs)) {
        return kUsage;
    }
    HistoryReader reader;
    const QString path = fileOf(parser);
    if (!openHistory(reader, path, query)) {
        return kFailed;
    }
    bool isTaken = print(historyHeader(*format));
    const StoreError failed = reader.read(query, [&](const HistoryRow &row) {
        isTaken = isTaken && print(historyLine(*format, row));
        return isTaken;
    });
    if (!failed.isNone()) {
        say(QString::fromLatin1("cannot read %1: %2").arg(path, failed.text));
    }
    return failed.isNone() && isTaken ? kFine : kFailed;
}

} // namespace cnet::gateway
