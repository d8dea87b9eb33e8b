#pragma once

#include "host/monitor/monitor.h"
#include "host/tag/tag_values.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

namespace cnet::panel {

/**
 * A value for JSON: null where there is none. A whole number beyond 2^53, which most readers of
 * JSON would round, is a string of its digits.
 */
QJsonValue jsonValue(const Scalar &value);

/** A value as a field of CSV, as people read it but for strings, which are without marks. */
QString csvValue(const Tag &tag, const TypedValue &value);

/** A field of CSV, in quotation marks where its content needs them. */
QString csvField(const QString &text);

/** A value of a tag that has changed. */
struct TypedChange
{
    int index = 0; ///< of the value in the tag
    qint64 atMs = 0;
    TagValue value;
};

/**
 * The values that changes of words belong to, each once.
 *
 * @param changes of a monitor; those of the item `first` begins with are taken
 * @param first index of the first one; is set behind the last one taken
 */
QVector<TypedChange> typedChanges(const Tag &tag, const ItemState &state,
                                  const QVector<ValueChange> &changes, int &first);

/** Of a tag with a type: "type", "values", "words", and "faults" where there are any. */
void addTypedValues(QJsonObject &line, const Tag &tag, const QVector<TagValue> &values);

/** That of the whole tag: implausible where one of its values is and the rest is no worse. */
Quality wholeQuality(const QVector<TagValue> &values, Quality quality);

/** Why values are implausible, in words: "wrong BCD digit"; of several the first one's. */
QString firstFault(const QVector<TagValue> &values);

} // namespace cnet::panel
