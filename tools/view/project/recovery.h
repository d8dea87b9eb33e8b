#pragma once

#include "view/project/project_file.h"

#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

namespace cnet::view {

/** Work of a window that is in no project file yet. */
struct Unsaved
{
    QString file; ///< of the project; empty: it has none
    Project project;
};

/**
 * Keeps the unsaved work of one window where the next start finds it, should this program be killed
 * or the machine lose its power. Each window has a file of its own, locked as long as its process
 * lives: "4711-0.json".
 */
class Recovery : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<Unsaved()>;

    static constexpr int kBeatMs = 10000; ///< from a change to its writing

    /** Where the system has data of programs. */
    static QString usualFolder();

    /**
     * @param work asked for what there is when it is to be written
     * @param folder made when it is needed; empty: usualFolder()
     */
    explicit Recovery(Work work, const QString &folder = QString(), QObject *parent = nullptr);
    /** What was written and not discarded stays for the next start. */
    ~Recovery() override;

    /** Writes this many milliseconds after a change, 0 or more, instead of kBeatMs. */
    void setBeat(int ms) { m_beat.setInterval(ms); }

    /** There is work that differs from what was written. It is written within a beat. */
    void noteChange();

    /**
     * Writes what there is now.
     * @return false: it could not be written; troubled() said why
     */
    bool writeNow();

    /** Nothing is unsaved: it was saved, or nobody wants it. */
    void discard();

    /** How many files of processes that are no more claim() would offer. */
    int left() const;

    /**
     * Takes over the newest work that a process left which is no more. From now on it is this
     * window's own, in its own file: no other window gets it, and discard() removes it.
     * @param error receives one sentence for each file that is broken; those are kept as
     * "4711-0.json.broken"
     * @return empty: there is none, or this window has unsaved work of its own
     */
    std::optional<Unsaved> claim(QString &error);

    /** Of this window; empty: nothing has been written. */
    QString path() const { return m_path; }

Q_SIGNALS:
    /** Work could not be written: once, until it can be again. */
    void troubled(const QString &text, const QString &advice);

private:
    bool takeName();
    bool write();
    void release();

    Work m_work;
    QString m_folder;
    QString m_path;
    std::unique_ptr<QLockFile> m_lock; ///< of m_path
    QByteArray m_written;
    QTimer m_beat;
    bool m_isTroubled = false;
};

} // namespace cnet::view
