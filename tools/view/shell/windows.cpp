#include "view/shell/windows.h"

// The linker leaves out what nobody asks for.
static void takeResources()
{
    Q_INIT_RESOURCE(cnet_view);
    Q_INIT_RESOURCE(cnet_view_translations);
}

namespace cnet::view {

Windows::Windows(const RecentFiles &recent, QObject *parent)
    : QObject(parent)
    , m_recent(recent)
{
    takeResources();
}

Windows::~Windows()
{
    for (MainWindow *window : all()) {
        delete window;
    }
}

MainWindow &Windows::add()
{
    auto *window = new MainWindow(m_recent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_windows.append(window);
    connect(window, &MainWindow::anotherWanted, this, [this] { add().offerLeftWork(); });
    connect(window, &MainWindow::leftWorkWanted, this, [this] { add().takeLeftWork(); });
    window->show();
    return *window;
}

MainWindow &Windows::begin(const Start &start)
{
    MainWindow &window = add();
    if (start.isDemo) {
        window.openDemo();
    }
    if (!start.file.isEmpty()) {
        window.openFile(start.file);
    }
    if (start.connection) {
        window.pages().connectPage().connectTo(*start.connection);
    }
    window.offerLeftWork();
    return window;
}

QVector<MainWindow *> Windows::all() const
{
    QVector<MainWindow *> open;
    for (const auto &window : m_windows) {
        if (!window.isNull()) {
            open.append(window.data());
        }
    }
    return open;
}

} // namespace cnet::view
