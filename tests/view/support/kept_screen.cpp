#include <QGuiApplication>
#include <QScreen>

// Qt's platform without a screen forgets its one screen at the end, and all that hangs on it counts
// as lost. Here something remembers it, so that only what the window loses counts.
namespace cnet::view {

const QScreen *keptScreen = nullptr;

} // namespace cnet::view

static void keepScreen()
{
    cnet::view::keptScreen = QGuiApplication::primaryScreen();
}
Q_COREAPP_STARTUP_FUNCTION(keepScreen)
