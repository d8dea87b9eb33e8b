#pragma once

#include "view/shell/windows.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace cnet::view {

/** The windows of the program, without a screen, in a folder of their own. */
class OpenedWindows
{
protected:
    /** @param test its name, so that none takes the left-over work of another */
    static void prepare(const char *test)
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setApplicationName(QLatin1String(test));
    }
    void open()
    {
        QDir(Recovery::usualFolder()).removeRecursively();
        m_folder = std::make_unique<QTemporaryDir>();
        m_recent = std::make_unique<RecentFiles>(path("recent.json"));
        restart();
    }
    /** Another start of the program. */
    void restart() { m_windows = std::make_unique<Windows>(*m_recent); }
    void close()
    {
        m_windows.reset();
        QDir(Recovery::usualFolder()).removeRecursively();
    }

    static Start demo() { return Start(); }
    static Start nothing()
    {
        Start start;
        start.isDemo = false;
        return start;
    }
    MainWindow &begin(const Start &start) { return m_windows->begin(start); }
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecentFiles> m_recent;
    std::unique_ptr<Windows> m_windows;
};

} // namespace cnet::view
