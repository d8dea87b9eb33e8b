#pragma once

#include "host/text/finding.h"
#include "host/value/typed_value.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace cnet::gateway {

/** Where a value of the configuration stands in its file. */
struct ConfigPlace
{
    int line = 0; ///< from 1; 0: it is a usual value, and stands nowhere
    int column = 0;
};

struct ConfigEntry;

/** A value of a TOML file, and where it stands. */
struct ConfigNode
{
    enum class Kind { Table, List, Text, Whole, Fraction, Truth, Other };

    Kind kind = Kind::Table;
    ConfigPlace place;
    Scalar value;                     ///< of Text, Whole, Fraction and Truth
    std::vector<ConfigEntry> entries; ///< of Table, by their keys' alphabet; of List without keys
};

/** A key of a table with its value. */
struct ConfigEntry
{
    QString key;
    ConfigPlace place; ///< of the key
    ConfigNode node;
};

/**
 * Reads a TOML file.
 * @param findings receives why, when the result is empty: what it breaks off at
 */
std::optional<ConfigNode> parseToml(const QByteArray &content, Findings &findings);

} // namespace cnet::gateway
