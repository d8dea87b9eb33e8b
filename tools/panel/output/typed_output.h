#pragma once

#include "host/monitor/monitor.h"
#include "host/tag/tag_values.h"
#include "host/value/json_value.h"

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QVector>

namespace cnet::panel {

/** A value as a field of CSV, as people read it but for strings, which are without marks. */
QString csvValue(const Tag &tag, const TypedValue &value);

/** A field of CSV, in quotation marks where its content needs them. */
QString csvField(const QString &text);

/** Whether an output has columns for names. */
enum class NamedTags { None, Some };

/** Some where one of the tags has a name. */
NamedTags namedTags(const QVector<Tag> &tags);

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

/** What a stream has told of tags with a deadband: what differs from it by less is not told. */
class ToldValues
{
public:
    /** Those changes that are to be told; they are told then. */
    QVector<TypedChange> toTell(const Tag &tag, const QVector<TypedChange> &changes);

    /** Nothing was told yet of these tags. @param before only where this is negative */
    void forget(const QVector<Tag> &tags, const QVector<int> &before);

private:
    QHash<QString, QVector<TypedValue>> m_told; ///< by the tags' names
};

/** Of a tag with a type: "type", "values", "words", and "faults" where there are any. */
void addTypedValues(QJsonObject &line, const Tag &tag, const QVector<TagValue> &values);

/** Of a tag with a name: "name", and "unit" and "group" where it has them. */
void addNames(QJsonObject &line, const Tag &tag);

/** The fields of CSV behind the others, ",name,unit"; @param named nothing where no tag has one */
QString csvNames(const Tag &tag, NamedTags named);

/** That of the whole tag: implausible where one of its values is and the rest is no worse. */
Quality wholeQuality(const QVector<TagValue> &values, Quality quality);

/** Why values are implausible, in words: "wrong BCD digit"; of several the first one's. */
QString firstFault(const QVector<TagValue> &values);

} // namespace cnet::panel
