#pragma once

#include "programs/program.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/** A screen that nobody sees, with a window manager, a keyboard, and who types on it. */
class Screen
{
public:
    /** Whether what it takes is installed. @param missing receives the programs that are not */
    static bool isInstalled(QStringList &missing);

    /** Begins it. @return one sentence; empty: windows can come */
    QString start();

    /** For the environment of programs: ":99". */
    QByteArray display() const { return m_display; }

    /** Presses keys one after another, such as "ctrl+s" or "Return". @return false: it failed */
    bool press(const QStringList &keys);

    /** Types a text into what has the keyboard. @return false: it failed */
    bool type(const QString &text);

    /** The title of the window that has the keyboard; empty: none has it. */
    QString activeTitle();

    /**
     * Gives the keyboard to a window.
     * @param process its program's
     * @param titleEnd how its title ends
     * @return whether it has it
     */
    bool activate(qint64 process, const QString &titleEnd);

    /** The title of a window that is seen. @param titleEnd how it ends @return empty: there is none
     */
    QString titleOf(qint64 process, const QString &titleEnd);

private:
    QByteArray windowOf(qint64 process, const QString &titleEnd);
    bool run(const char *program, const QStringList &arguments, QByteArray &output);
    bool isManaged();

    Program m_server;
    Program m_manager; // ended first
    QByteArray m_display;
};
