#include "gateway/main/commands.h"
#include "gateway/main/messages.h"
#include "gateway/service/listening.h"
#include "gateway/service/status_text.h"

#include <QFileInfo>

namespace cnet::gateway {

namespace {

// As with the history: what runs here comes before the service.
QString folderOf(const QCommandLineParser &parser)
{
    const QString here = QLatin1String(".");
    if (parser.isSet(QLatin1String("state"))) {
        return parser.value(QLatin1String("state"));
    }
    const QString service = QLatin1String("/var/lib/cnet-gateway");
    const bool isHere = QFileInfo::exists(listeningFile());
    return QFileInfo::exists(service) && !isHere ? service : here;
}

} // namespace

int runStatus(const Invocation &invocation)
{
    const QString format = invocation.parser.value(QLatin1String("format"));
    const bool isJson = format == QLatin1String("json");
    if (!isJson && !format.isEmpty() && format != QLatin1String("text")) {
        say(QString::fromLatin1("--format '%1': expected text or json").arg(format));
        return kUsage;
    }
    QString error;
    const auto json = askInFolder(folderOf(invocation.parser), "/status", error);
    if (!json) {
        say(error);
        return kFailed;
    }
    const auto text =
        isJson ? std::optional<QString>(QString::fromUtf8(*json)) : statusTextOf(*json);
    if (!text) {
        say(QLatin1String("the gateway's answer cannot be read; it may be of another version"));
        return kFailed;
    }
    return print(*text) ? kFine : kFailed;
}

} // namespace cnet::gateway
