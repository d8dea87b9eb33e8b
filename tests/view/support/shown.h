#pragma once

#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

namespace cnet::view {

/** Shows a window and waits until its shortcuts work. */
inline bool showActive(QWidget &window, const QSize &size)
{
    window.resize(size);
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window, 60000);
}

} // namespace cnet::view
