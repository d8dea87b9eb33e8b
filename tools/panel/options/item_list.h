#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace cnet::panel {

/** An item or an assignment of a command line, or of a list that it names. */
struct ListedItem
{
    QString text;
    QString place; ///< of a list: "press.txt:3: ", for messages; empty: on the command line
};

/**
 * Puts lists in the place of what names them: "@FILE" stands for the lines of a file, "-" for those
 * of standard input. A line is an item; empty ones and those that begin with "#" do not count.
 *
 * @param error receives one sentence when the result is false: a list cannot be read
 */
bool readLists(const QStringList &arguments, QVector<ListedItem> &items, QString &error);

} // namespace cnet::panel
