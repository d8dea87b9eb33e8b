#pragma once

#include "program.h"

#include <QFile>
#include <QTemporaryDir>

/** cnet-gateway as a program, with a folder of its own. */
class GatewayProgram
{
public:
    /** Stores a file in the folder. */
    bool store(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }

    /** Runs it to its end. @return exit code */
    int run(const QList<QByteArray> &arguments)
    {
        Program program;
        const QByteArray state = QFile::encodeName(m_directory.path());
        program.setVariable("STATE_DIRECTORY", state.constData());
        if (!program.startBytes(CNET_GATEWAY, arguments)) {
            return -1;
        }
        const int code = program.exitCode();
        output = program.lines();
        errors = program.errors();
        return code;
    }

    /** Starts it for good. */
    bool start(Program &program, const QList<QByteArray> &arguments) const
    {
        const QByteArray state = QFile::encodeName(m_directory.path());
        program.setVariable("STATE_DIRECTORY", state.constData());
        return program.startBytes(CNET_GATEWAY, arguments);
    }

    /** The rows of a tag in the history, oldest first. */
    QList<QJsonObject> history(const QByteArray &tag)
    {
        run({"history", tag, "--format", "json", "--file",
             QFile::encodeName(path("history.sqlite"))});
        return jsonLines(output);
    }

    QList<QByteArray> output; ///< of what run() ran last
    QByteArray errors;

private:
    QTemporaryDir m_directory;
};
