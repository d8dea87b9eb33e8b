#pragma once

#include "view/project/project_file.h"
#include "view/project/recovery.h"
#include "view/shell/window_pages.h"

#include <QObject>

namespace cnet::view {

/**
 * The project of a window: what its pages hold, the file it is kept in, and whether that file has
 * it all. What is not saved yet is kept aside, so that nothing is lost with the program.
 */
class ProjectDocument : public QObject
{
    Q_OBJECT

public:
    /** @param pages must outlive this object */
    explicit ProjectDocument(WindowPages &pages, QObject *parent = nullptr);

    /** The file; empty: none yet. */
    const QString &path() const { return m_path; }
    /** Of the file, or what stands for it. */
    QString title() const;
    bool isChanged() const { return m_isChanged; }

    /** Somebody else has stored the file since it was opened or saved here. */
    bool isReplaced() const;

    /** What the window holds is of no file any more. */
    void startNew();

    /**
     * Takes a project's place. Where the file is not good everything stays as it is.
     * @return one sentence; empty: it is open, and connects
     */
    QString open(const QString &path);

    /** @return one sentence; empty: it is stored */
    QString save(const QString &path);

    /** What the window holds now. */
    Project project() const;

    /** Takes this over as work that is not saved. @param path of its file; may be empty */
    void adopt(const Project &project, const QString &path);

    /** What is not saved is not wanted. */
    void abandon();

    /** How many windows left unsaved work behind when their program ended badly. */
    int left() const { return m_recovery.left(); }

    /**
     * Takes over the newest of it, into a window without changes of its own.
     * @param error receives a sentence for each file that is broken
     * @return false: there was none
     */
    bool claimLeft(QString &error);

Q_SIGNALS:
    /** path() or isChanged() may differ. */
    void stateChanged();
    /** Work cannot be kept aside, or a part of a project cannot be used. */
    void troubled(const QString &text, const QString &advice);

private:
    enum class Changes { Saved, Unsaved };

    void show(const Project &project);
    void noteFile(const QString &path);
    void setState(const QString &path, Changes changes);
    void noteChange();

    WindowPages &m_pages;
    Project m_base; ///< as it was read: what this program does not know goes back into the file
    QString m_path;
    QByteArray m_stored; ///< in the file when it was opened or saved; empty: not known
    bool m_isChanged = false;
    Recovery m_recovery;
};

} // namespace cnet::view
