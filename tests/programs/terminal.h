#pragma once

#include <QByteArray>
#include <QList>

#include <sys/types.h>
#include <termios.h>

/** A program on a terminal of its own, and the user before it. It is ended with the object. */
class Terminal
{
public:
    Terminal() = default;
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /** Of what is started next; 100 x 24 otherwise. */
    void setSize(int columns, int rows);

    /** @param command the program's file and its arguments */
    bool start(const QList<QByteArray> &command);

    /** Waits until the program has shown this, after all that was waited for before. */
    bool shows(const QByteArray &text);

    /** Waits until this stands on the screen, whenever it came there. */
    bool displays(const QByteArray &text);

    /** What stands on the screen now. */
    QByteArray screen() const;

    bool type(const QByteArray &keys);
    void signal(int number);

    /** Stops its output, as Ctrl-S does, or lets it go on: what writes has to wait. */
    bool stopOutput(bool stop);

    /** Ctrl-C, Enter and so on work as before, and what is typed is echoed. */
    bool isAsUsual() const;

    /** Nothing at all is other than when the program was started. */
    bool isAsBefore() const;

    /** @return exit code, -1 where it did not end in order */
    int wait();

    /** Signals again and again until it ends. @return exit code, -1 where it never did */
    int signalUntilEnd(int number);

    /** All that it has shown. */
    const QByteArray &shown() const { return m_shown; }

private:
    bool readMore(int waitMs);
    int exitCode(int status);

    int m_master = -1;
    int m_slave = -1; ///< kept open: with the last one closed, the settings are gone
    pid_t m_child = -1;
    int m_columns = 100;
    int m_rows = 24;
    termios m_before{};
    QByteArray m_shown;
    int m_seen = 0;
};
