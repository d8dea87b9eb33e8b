#include "panel/main/command_line.h"
#include "panel/system/standard_output.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    cnet::panel::keepStandardStreams();
    // Qt's own event loop: GLib's, where there is one, asks the system twice for each event.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    cnet::panel::Messages messages;
    return cnet::panel::runCommandLine(QCoreApplication::arguments(), messages);
}
