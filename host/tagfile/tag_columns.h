#pragma once

#include "host/tag/tag.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace cnet {

/** The columns of a tag file, in the order in which a new one has them. */
enum class TagColumn {
    Name,
    Register,
    Address,
    Station,
    Type,
    Count,
    Scale,
    Offset,
    Unit,
    Min,
    Max,
    Deadband,
    Access,
    Texts,
    Description,
    Group,
};

constexpr int kTagColumns = 16;

/** Its heading: "name". */
QString tagColumnName(TagColumn column);
/** All headings. */
QStringList tagColumnNames();

/** Which column a heading stands for; upper and lower case do not matter. */
std::optional<TagColumn> tagColumnOf(const QString &heading);

/** True where no tag is without: name, register and address. */
bool isNeeded(TagColumn column);

/** What stands in a column for a tag, "scale": "0.1"; a file that says so gives that tag again. */
QString tagFieldText(const Tag &tag, TagColumn column);

/** What an empty field, or no such column, stands for; the station is not among it. */
QString tagFieldDefault(TagColumn column);

/** In which columns two tags differ. */
QVector<TagColumn> tagDifferences(const Tag &left, const Tag &right);

/**
 * True for a name or group that a tag may have: letters, digits and . _ - / only, with a letter or
 * _ in front, so that it is never taken for an item, an option or a pattern; 120 letters at most.
 */
bool isTagName(const QString &text);

} // namespace cnet
