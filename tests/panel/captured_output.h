#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryFile>

#include <unistd.h>

#include <cstdio>

/** Keeps what is written to standard output while it lives. */
class CapturedOutput
{
public:
    CapturedOutput()
    {
        std::fflush(stdout);
        m_before = dup(STDOUT_FILENO);
        if (m_file.open()) {
            dup2(m_file.handle(), STDOUT_FILENO);
        }
    }
    ~CapturedOutput() { end(); }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    /** Standard output is as before from here on. @return what was written */
    QByteArray end()
    {
        if (m_before >= 0) {
            std::fflush(stdout);
            dup2(m_before, STDOUT_FILENO);
            close(m_before);
            m_before = -1;
        }
        QFile written(m_file.fileName());
        return written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray();
    }

private:
    int m_before = -1;
    QTemporaryFile m_file;
};
