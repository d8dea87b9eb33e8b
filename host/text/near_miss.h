#pragma once

#include <QString>
#include <QStringList>

namespace cnet {

/**
 * What somebody probably meant: the candidate that differs by case only, that goes on where the
 * text ends, or that has the fewest letters left out, put in, exchanged or swapped.
 *
 * @return empty where none is near: more than a third of the letters differ
 */
QString nearMiss(const QString &text, const QStringList &candidates);

/** "; did you mean D_W?", or nothing; for the end of a message. */
QString nearMissHint(const QString &text, const QStringList &candidates);

} // namespace cnet
