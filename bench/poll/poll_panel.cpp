// Polls cnet-plc like `cnet-panel monitor`, but without output: the session of tools/panel with the
// driver. It finds the end of the answer, checks station, command and block check, decodes,
// compares and stores each word, handles timeouts, and updates the counters.

#include "poll_clock.h"

#include <panel/runs/command_session.h>

#include <QCoreApplication>

namespace {

cnet::LinkSettings linkTo(int port)
{
    cnet::LinkSettings settings;
    settings.link.kind = cnet::LinkAddress::Kind::Tcp;
    settings.link.host = QLatin1String("127.0.0.1");
    settings.link.port = static_cast<quint16>(port);
    settings.intervalMs = 0;
    return settings;
}

KEY_ADDRESS polledWords()
{
    KEY_ADDRESS key{};
    key.stationNo = 1;
    key.regName = QLatin1String("D_W");
    key.count = bench::kPollWords;
    return key;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1"); // as cnet-panel does
    const QCoreApplication application(argc, argv);
    const bench::PollArguments arguments = bench::pollArguments(argc, argv);
    cnet::DriverLibrary library;
    if (!library.load()) {
        std::fprintf(stderr, "%s\n", library.errorText().toLocal8Bit().constData());
        return 1;
    }
    cnet::Messages messages;
    cnet::Session session(library.functions(), linkTo(arguments.port), {1}, messages);
    session.exchange().setRoundLength(session.driver().monitor({polledWords()}));
    bench::PollClock clock(arguments.polls);
    QObject::connect(&session.exchange(), &cnet::Exchange::ended, &session,
                     [&](const cnet::ExchangeReport &report) {
                         if (report.result != kAnswerGood) {
                             session.finish(1);
                         } else if (!clock.pollEnded()) {
                             session.finish(0);
                         }
                     });
    return session.run();
}
