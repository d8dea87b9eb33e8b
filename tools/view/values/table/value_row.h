#pragma once

#include "view/values/table/value_writer.h"

#include "host/tag/tag_values.h"

#include <QString>

namespace cnet::view {

/** What is known of one value of a tag. */
struct ValueRow
{
    int tag = 0;            ///< index in the tags that are watched
    int index = 0;          ///< in the tag's values
    QString name;           ///< tagText() of the value
    QString key;            ///< name and place: the same as long as it is the same value
    QString searched;       ///< name, group and description in lower case, for the filter
    TagValue now;           ///< as it was read last
    qint64 changedAtMs = 0; ///< see wallTime(); 0: never
    qint64 freshAtMs = -1;  ///< on the model's clock, when it became another one; negative: never
    Scalar least;           ///< least number that was read; nothing: none yet
    Scalar greatest;        ///< greatest one
    WriteNote write;        ///< what came of the last write from here
    bool isWritable = false;
};

/** The row of a value that was not read yet. @param index below tag.count */
ValueRow rowOf(const Tag &tag, int tagIndex, int index);

/** The value as a tag of its own. @param index below tag.count */
Tag valueTag(const Tag &tag, int index);

/** Takes a number that was read into the least and the greatest; other values leave them. */
void widen(ValueRow &row);

/** -1, 0 or 1 as the left one comes before, with or behind the right one: what is not known first,
 * then truths and numbers, then texts. */
int compareScalars(const Scalar &left, const Scalar &right);

/** Words as "0x12FF 0x0001", bits as "1 0". @param isBit what the units are */
QString rawText(const QVector<quint16> &units, bool isBit);

/** "0.2 s", "12 s", "3 min", "2 h", "4 d". @param ms negative: empty */
QString ageText(qint64 ms);

} // namespace cnet::view
