#pragma once

#include <QString>

#include <variant>

namespace plc {

/** One sentence for the user: what is wrong with a text and what was expected. */
struct TextError
{
    QString message;
};

template <typename T>
using Parsed = std::variant<T, TextError>;

/** The sentence about a text that is wrong. */
inline TextError wrongText(const QString &text, const QString &why)
{
    return {QString::fromLatin1("\"%1\": %2").arg(text, why)};
}

} // namespace plc
