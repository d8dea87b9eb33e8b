// Polls cnet-plc as every program on the host library does, without showing anything: a session
// with one monitor and the driver behind it. It finds the end of the answer, checks station,
// command and block check, keeps late answers apart, decodes the hexadecimal, stores and compares
// each word, watches the time, and keeps the counters.

#include "poll_clock.h"

#include <host/session.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1"); // as cnet-panel does
    QCoreApplication application(argc, argv);
    const bench::PollArguments arguments = bench::pollArguments(argc, argv);
    cnet::Driver driver;
    QString error;
    if (!driver.load(QString(), error)) {
        std::fprintf(stderr, "%s\n", error.toLocal8Bit().constData());
        return 1;
    }
    cnet::LinkAddress address;
    address.host = QLatin1String("127.0.0.1");
    address.port = static_cast<quint16>(arguments.port);
    cnet::SessionOptions options;
    options.intervalMs = 0;
    cnet::Session session(driver, cnet::makeLink(address), options);
    session.monitor({{1, *driver.registers().find(QLatin1String("D_W")), 0, bench::kPollWords}});
    bench::PollClock clock(arguments.polls);
    QObject::connect(&session, &cnet::Session::exchangeEnded, &session,
                     [&](const cnet::ExchangeReport &report) {
                         if (!report.good) {
                             QCoreApplication::exit(1);
                         } else if (report.purpose == cnet::Purpose::Cyclic && !clock.pollEnded()) {
                             QCoreApplication::exit(0);
                         }
                     });
    session.open();
    return QCoreApplication::exec();
}
