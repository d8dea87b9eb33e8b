#pragma once

#include "host/tag/tag_set.h"
#include "host/tagfile/tag_file.h"
#include "panel/options/invocation.h"
#include "panel/options/item_list.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace cnet::panel {

/** Mistakes and warnings of a tag file that are told one by one, unless something else is asked. */
constexpr int kUsualFindings = 100;

/**
 * Reads a tag file, whatever is wrong with it.
 *
 * @param station of tags that name none
 * @param limit mistakes and warnings that are kept
 * @param error receives one sentence when the result is empty: the file cannot be read
 */
std::optional<TagFile> readTagFile(const Invocation &invocation, const QString &path, int station,
                                   int limit, QString &error);

/**
 * Reads the tags of a file, for a command that works with them.
 * @param error receives one sentence when the result is empty: the first mistake, and how many more
 * there are
 */
std::optional<TagSet> readTagSet(const Invocation &invocation, const QString &path, int station,
                                 QString &error);

/** Tags of a file, of which a command works with some. */
struct ChosenTags
{
    TagSet all;
    QVector<Tag> tags; ///< the chosen ones
};

/** What a command with tags was asked for; enough to read the file again. */
struct TagChoice
{
    QString path;
    int station = 1;           ///< of tags and items that name none
    QVector<ListedItem> words; ///< names, groups, patterns and items; none: all tags
};

/** Adds --tags. */
void addTagsOption(QCommandLineParser &parser);

/** Reads the tag file, and chooses. @param error as for readTagSet() and tagsOrItem() */
std::optional<ChosenTags> chooseTags(const Invocation &invocation, const TagChoice &choice,
                                     QString &error);

/**
 * The same for what is running already.
 * @param complaints receives the first mistakes and their number when the result is empty
 */
std::optional<ChosenTags> chooseAgain(const Invocation &invocation, const TagChoice &choice,
                                      QStringList &complaints);

} // namespace cnet::panel
