#include "view/shell/project_document.h"

#include "view/project/project_store.h"

#include <QFileInfo>

namespace cnet::view {

ProjectDocument::ProjectDocument(WindowPages &pages, QObject *parent)
    : QObject(parent)
    , m_pages(pages)
    , m_recovery([this] {
        return Unsaved{m_path, project()};
    })
{
    connect(&pages, &WindowPages::changed, this, &ProjectDocument::noteChange);
    connect(&m_recovery, &Recovery::troubled, this, &ProjectDocument::troubled);
}

QString ProjectDocument::title() const
{
    return m_path.isEmpty() ? tr("New project") : QFileInfo(m_path).completeBaseName();
}

bool ProjectDocument::isReplaced() const
{
    QString error;
    const auto bytes = readWholeFile(m_path, kMostProjectBytes, error);
    return bytes && !m_stored.isEmpty() && *bytes != m_stored;
}

void ProjectDocument::startNew()
{
    m_recovery.discard();
    m_base = Project();
    m_stored.clear();
    setState(QString(), Changes::Saved);
}

QString ProjectDocument::open(const QString &path)
{
    QString error;
    const auto read = load(path, error);
    if (!read) {
        return error;
    }
    show(*read);
    noteFile(path);
    return QString();
}

QString ProjectDocument::save(const QString &path)
{
    QString error;
    if (!view::save(path, project(), error)) {
        return error;
    }
    noteFile(path);
    return QString();
}

void ProjectDocument::noteFile(const QString &path)
{
    QString error;
    m_stored = readWholeFile(path, kMostProjectBytes, error).value_or(QByteArray());
    m_recovery.discard();
    setState(QFileInfo(path).absoluteFilePath(), Changes::Saved);
}

Project ProjectDocument::project() const
{
    Project project = m_base;
    project.version = kProjectVersion;
    project.pages = m_pages.saved();
    project.connection = m_pages.connectPage().saved();
    project.pages.remove(QLatin1String("connect")); // that is the connection
    project.window.insert(QLatin1String("page"), m_pages.currentIndex());
    return project;
}

void ProjectDocument::adopt(const Project &project, const QString &path)
{
    show(project);
    m_stored.clear();
    setState(path, Changes::Unsaved);
    m_recovery.noteChange();
}

void ProjectDocument::abandon()
{
    m_recovery.discard();
    setState(m_path, Changes::Saved);
}

bool ProjectDocument::claimLeft(QString &error)
{
    const auto left = m_recovery.claim(error);
    if (left) {
        adopt(left->project, left->file);
    }
    return left.has_value();
}

void ProjectDocument::show(const Project &project)
{
    m_base = project;
    // First the connection: tags and recipes that name no station are of its station.
    const auto connection = Connection::restored(project.connection);
    if (connection) {
        m_pages.connectPage().connectTo(*connection);
    } else {
        // What is shown and written from now on is not the PLC's of before.
        m_pages.line().close();
        Q_EMIT troubled(tr("The connection of the project cannot be used."),
                        tr("Choose one on the Connect page; until then nothing is connected."));
    }
    m_pages.restore(project.pages);
    m_pages.setCurrentIndex(project.window.value(QLatin1String("page")).toInt());
}

void ProjectDocument::setState(const QString &path, Changes changes)
{
    m_path = path;
    m_isChanged = changes == Changes::Unsaved;
    Q_EMIT stateChanged();
}

void ProjectDocument::noteChange()
{
    m_recovery.noteChange();
    if (!m_isChanged) {
        setState(m_path, Changes::Unsaved);
    }
}

} // namespace cnet::view
