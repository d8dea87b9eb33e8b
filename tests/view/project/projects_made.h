#pragma once

#include "view/project/project_file.h"

#include "view/support/files.h"

#include <QTemporaryDir>

#include <memory>

namespace cnet::view {

inline Project projectWith(const QString &text)
{
    Project project;
    project.window.insert(QLatin1String("title"), text);
    return project;
}

inline QString titleOf(const std::optional<Project> &project)
{
    return project ? project->window.value(QLatin1String("title")).toString() : QString();
}

/** A folder that is empty when a test begins. */
class FreshFolder
{
protected:
    void empty() { m_folder = std::make_unique<QTemporaryDir>(); }
    QString in(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace cnet::view
