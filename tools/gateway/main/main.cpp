#include "gateway/main/commands.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    // Qt's own event loop: GLib's, where there is one, asks the system twice for each event.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    return cnet::gateway::runCommandLine(QCoreApplication::arguments());
}
