#pragma once

#include "plc/setup/text_error.h"
#include "plc/stations/bus.h"

#include <QStringList>

#include <optional>

namespace plc {

/** A memory file, and a script, has at most so many bytes. */
constexpr qint64 kMostFileBytes = 16 * 1024 * 1024;

/** Takes the lines of a file. @return the lines, or one sentence with the file's name. */
Parsed<QStringList> readLines(const QString &path);

/**
 * Sets what a memory file says: lines like "1/D_W:100=5,6,7", blank lines, and comments behind "#".
 * @return every mistake of the file, up to a limit, as "FILE:LINE: ..."; empty: all is set. What is
 * right is set in any case.
 */
QStringList loadMemory(const QStringList &lines, const QString &path, Bus &bus);

/** All that is not 0, as loadMemory() takes it. */
QByteArray memoryText(Bus &bus);

/**
 * Writes memoryText() to a file, in such a way that a crash leaves the old file or the new one.
 * @return why it cannot
 */
std::optional<TextError> saveMemory(const QString &path, Bus &bus);

/** Mistakes that are told one by one; behind them only their number is. */
constexpr int kMostMistakes = 20;

/** Adds a mistake of a file, or only counts it. */
class Mistakes
{
public:
    explicit Mistakes(QString path)
        : m_path(std::move(path))
    {}

    /** @param line from 1 */
    void add(int line, const QString &message);

    /** What is to be told, a line each. */
    QStringList told() const;

private:
    QString m_path;
    QStringList m_told;
    int m_count = 0;
};

} // namespace plc
