#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace cnet {

/** A capture that is read as a whole has at most so many bytes. */
constexpr int kMostRecordingBytes = 256 * 1024 * 1024;

/** One packet of a line: a frame, or bytes that belong to none. */
struct RecordedFrame
{
    int number = 0;    ///< of the packet in the file, from 1, as Wireshark counts
    qint64 timeNs = 0; ///< since 1970 in UTC
    QByteArray bytes;  ///< never empty
    QString comment;   ///< empty: none
};

/** A request, and all that came before the next one: its answer, noise, late answers. */
struct RecordedExchange
{
    RecordedFrame request;
    std::vector<RecordedFrame> answers; ///< in their order
    /** Nothing came, and nothing follows on the line: it may have been answered. */
    bool isOpen = false;
};

/** What went over one line. Which way requests go is seen from what they are. */
struct RecordedLine
{
    QString name;                            ///< of its interface, or "interface 0"
    std::vector<RecordedExchange> exchanges; ///< in the order of the file, at least one
};

/** The lines of a capture, whichever end wrote it. */
struct Recording
{
    std::vector<RecordedLine> lines;
    QStringList remarks; ///< what is missing or left out, a sentence each
    QString error;       ///< one sentence where there is no line
};

/** Reads a capture file of either link type. It takes any bytes. */
Recording readRecording(const QByteArray &content);

/**
 * The same of a file.
 * @param path of a file that ends; its name is in front of remarks and error
 */
Recording readRecordingFile(const QString &path);

/**
 * The line to work with.
 *
 * @param name as in RecordedLine; empty: the only one
 * @param error receives one sentence with the names there are when the result is null
 */
const RecordedLine *findLine(const Recording &recording, const QString &name, QString &error);

} // namespace cnet
