#include "panel/commands.h"
#include "panel/standard_output.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    panel::keepStandardStreams();
    // Qt's own event loop: GLib's, where there is one, asks the system twice for each event.
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argc, argv);
    panel::Messages messages;
    return panel::runCommandLine(QCoreApplication::arguments(), messages);
}
