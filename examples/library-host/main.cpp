// Watches values of PLCs with the host library: prints each change of a value and of a quality.
//
//   library-host LINK ITEM...     tcp:192.168.0.100:8000 'D_W:100*4' 2/TX:7
//                                 serial:/dev/ttyUSB0,38400,8,NONE,1 M_bit:3.5

#include <host/link/link.h>
#include <host/session.h>

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using namespace cnet;

static int fail(const QString &error)
{
    std::fprintf(stderr, "library-host: %s\n", qPrintable(error));
    return 2;
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return fail(QLatin1String("expected LINK ITEM..."));
    }
    QString error;
    Driver driver;
    const auto address = parseLinkAddress(arguments.at(1), error);
    if (!address || !driver.load(QString(), error)) {
        return fail(error);
    }
    QVector<Item> items;
    for (const QString &text : arguments.mid(2)) {
        const auto item = parseItem(text, 1, driver.registers(), error);
        if (!item || !driver.check(*item, Access::Read, error)) {
            return fail(error);
        }
        items.append(*item);
    }

    SessionOptions options;
    options.line = address->line;
    Session session(driver, makeLink(*address), options);
    Monitor *const monitor = session.monitor(items);
    QObject::connect(monitor, &Monitor::valuesChanged, [&](const QVector<ValueChange> &changes) {
        for (const ValueChange &change : changes) {
            const Item &item = monitor->items().at(change.item).item;
            std::printf("%d/%s:%s = %d\n", item.station, qPrintable(item.reg.name),
                        qPrintable(item.addressText(change.offset)), change.value);
        }
        std::fflush(stdout);
    });
    QObject::connect(monitor, &Monitor::itemStateChanged, [&](int index) {
        const ItemState &state = monitor->items().at(index);
        std::printf("%s: %s %s\n", qPrintable(state.item.text()),
                    qPrintable(qualityText(state.quality)), qPrintable(state.reason()));
        std::fflush(stdout);
    });
    QObject::connect(&session, &Session::stateChanged, [&](Session::State state) {
        if (state == Session::State::Closed) { // the line could not be opened
            QCoreApplication::exit(fail(session.lineError()));
        }
    });
    QTimer::singleShot(0, &session, &Session::open);
    return QCoreApplication::exec();
}
