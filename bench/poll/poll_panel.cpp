// Polls cnet-plc as every program on the host library does, without showing anything: a session
// with one monitor and the driver behind it. It finds the end of the answer, checks station,
// command and block check, keeps late answers apart, decodes the hexadecimal, stores and compares
// each word, watches the time, and keeps the counters. With a file's name behind the other
// arguments it also writes a capture, as --capture does.

#include "poll_clock.h"

#include <host/decode/frame_comments.h>
#include <host/link/captured_link.h>
#include <host/session.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace {

std::unique_ptr<cnet::Link> captured(std::unique_ptr<cnet::Link> link, const QString &path)
{
    cnet::CaptureOptions options;
    options.path = path;
    QString error;
    const std::shared_ptr<cnet::Capture> capture = cnet::Capture::open(options, error);
    if (!capture) {
        std::fprintf(stderr, "%s\n", error.toLocal8Bit().constData());
        return nullptr;
    }
    capture->setWords([comments = cnet::FrameComments()](const QByteArray &frame,
                                                         cnet::CaptureDirection) mutable {
        return comments.next(frame);
    });
    return std::make_unique<cnet::CapturedLink>(std::move(link), capture);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_NO_GLIB", "1"); // as cnet-panel does
    QCoreApplication application(argc, argv);
    const bench::PollArguments arguments = bench::pollArguments(std::min(argc, 3), argv);
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
    std::unique_ptr<cnet::Link> link = cnet::makeLink(address);
    if (const QString path = QCoreApplication::arguments().value(3); !path.isEmpty()) {
        link = captured(std::move(link), path);
    }
    if (!link) {
        return 1;
    }
    cnet::Session session(driver, std::move(link), options);
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
