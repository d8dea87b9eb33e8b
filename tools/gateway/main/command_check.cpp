#include "gateway/main/commands.h"
#include "gateway/main/config_file.h"
#include "gateway/main/messages.h"

namespace cnet::gateway {

int runCheck(const Invocation &invocation)
{
    const QString path = invocation.arguments.value(0, usualConfigFile());
    QStringList complaints;
    const auto config = loadConfig(path, complaints);
    for (const QString &complaint : qAsConst(complaints)) {
        sayPlain(complaint);
    }
    if (!config) {
        return kUsage;
    }
    const QString text = QString::fromLatin1("%1: good; lines: %2, sinks: %3\n")
                             .arg(path)
                             .arg(config->lines.size())
                             .arg(config->sinks.size());
    return print(text) ? kFine : kFailed;
}

} // namespace cnet::gateway
