#include "view/look/readable_palette.h"
#include "view/shell/start.h"
#include "view/shell/windows.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <cstdio>

namespace {

/** The window's texts in the user's language, and Qt's own, as far as there are any. */
void translate(QApplication &application, QTranslator &own, QTranslator &qt)
{
    if (own.load(QLocale(), QLatin1String("cnet-view"), QLatin1String("_"),
                 QLatin1String(":/translations")) ||
        own.load(QLatin1String(":/translations/cnet-view_en.qm"))) { // has the plurals
        QApplication::installTranslator(&own);
    }
    if (qt.load(QLocale(), QLatin1String("qtbase"), QLatin1String("_"),
                QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&qt);
    }
    application.setWindowIcon(QIcon(QLatin1String(":/cnet-view.svg")));
}

/** --help needs no screen, and --version neither. */
std::optional<cnet::view::Start> startOf(int argc, char *argv[], int &exitCode)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    QString output;
    auto start = cnet::view::readStart(arguments, output, exitCode);
    if (!start) {
        std::fputs(output.toLocal8Bit().constData(), exitCode == 0 ? stdout : stderr);
    }
    return start;
}

bool isOption(const char *argument)
{
    const QLatin1String text(argument);
    return text == QLatin1String("--help") || text == QLatin1String("-h") ||
           text == QLatin1String("--help-all") || text == QLatin1String("--version") ||
           text == QLatin1String("-v");
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QLatin1String("cnet-view"));
    QCoreApplication::setApplicationVersion(QLatin1String(CNET_VERSION));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    int exitCode = 0;
    for (int i = 1; i < argc; ++i) {
        if (isOption(argv[i])) {
            const QCoreApplication application(argc, argv);
            startOf(argc, argv, exitCode);
            return exitCode;
        }
    }
    QApplication application(argc, argv);
    const auto start = startOf(argc, argv, exitCode); // without what Qt took for itself
    if (!start) {
        return exitCode;
    }
    const QPalette desktop = QApplication::palette();
    const QPalette readable = cnet::view::withReadableDisabled(desktop);
    if (readable != desktop) {
        QApplication::setPalette(readable);
    }
    const cnet::view::RecentFiles recent;
    cnet::view::Windows windows(recent);
    QTranslator own;
    QTranslator qt;
    translate(application, own, qt);
    windows.begin(*start);
    return QApplication::exec();
}
