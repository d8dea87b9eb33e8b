#pragma once

#include "view/screen/screen.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/** cnet-view with a project, worked on by keys alone. */
class ViewWindow
{
public:
    /**
     * @param screen must outlive this object
     * @param home a folder of the program's own
     * @param project its file
     */
    ViewWindow(Screen &screen, const QString &home, const QString &project);

    /** @return false: no window has come, or it does not get the keyboard */
    bool start(const QStringList &arguments);

    /** Its title; empty: it is not there. */
    QString title();
    /** Whether the title tells of changes that are not saved. */
    bool isChanged() { return title().contains(QLatin1Char('*')); }

    /** Gives the window the keyboard, and presses keys. @return false: it failed */
    bool press(const QStringList &keys);
    /** Types where the keyboard is. */
    bool type(const QString &text) { return m_screen.type(text); }

    /** Chooses the row of a tag on the page of the values. @return false: it failed */
    bool choose(const QString &tag);

    /** What the table shows of a tag, by the titles of its columns; empty: nothing yet. */
    QHash<QString, QString> row(const QString &tag);

    /** Has it save its project. @return what the file holds then */
    QJsonObject saved();
    /** The same of one page. */
    QJsonObject savedPage(const char *page);

    /** Waits for its end. @return exit code, -1 where it did not end or crashed */
    int exitCode() { return m_program.exitCode(); }
    bool isRunning() const { return m_program.isRunning(); }
    QByteArray errors() { return m_program.errors(); }

private:
    Screen &m_screen;
    QString m_project;
    Program m_program;
};
