#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace cnet {

/** A text in quotation marks, with "\\", "\"" and control characters as "\x0A". */
QString quotedText(const QString &text);

/**
 * Reads what quotedText() writes, and "\n", "\r" and "\t"; a text without quotation marks stands
 * for itself.
 * @param error receives one sentence, with an example, when the result is empty
 */
std::optional<QString> unquotedText(const QString &text, QString &error);

/** Cuts "1,2" or "\"a,b\",c" at the commas that are not within quotation marks. */
QStringList splitValues(const QString &list);

} // namespace cnet
