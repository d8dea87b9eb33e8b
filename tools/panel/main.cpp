#include "panel/commands.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    panel::Messages messages;
    return panel::runCommandLine(QCoreApplication::arguments(), messages);
}
