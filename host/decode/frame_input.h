#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace cnet {

/** A frame that was found in a text. */
struct FoundFrame
{
    QByteArray bytes;
    int line = 1; ///< where it begins, from 1
};

/** What was found in a text. */
struct FoundFrames
{
    QVector<FoundFrame> frames;
    int skippedLines = 0; ///< that have no frame: headings, remarks, "no answer"
    QStringList errors;   ///< "line 3, column 7: expected two hexadecimal digits, as in 05"
};

/**
 * Finds the frames in what people have of them. A line may be
 *
 *  - hexadecimal: "05 30 31", "0x05,0x30", "05-30-31", "0530"; a frame may go on in the next line,
 *    and the columns of a hex dump beside it do not matter;
 *  - text: control characters as they are, as "\x05" or as "<ENQ>";
 *  - a line of a log with either of them, and of a trace of this project.
 *
 * A text of a single line is a frame whatever stands in it, so that it can be explained.
 *
 * @param content ASCII as far as it counts; a dump of a line may have any bytes
 */
FoundFrames findFrames(const QByteArray &content);

/** The bytes of one text as above, without looking for frames; empty where `error` is not. */
QByteArray readBytes(const QString &text, QString &error);

} // namespace cnet
