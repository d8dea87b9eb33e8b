#pragma once

#include "view/recipes/sheet/recipe_transfer.h"

#include "host/monitor/quality.h"

namespace cnet::view {

/** How a row of a recipe stands to the PLC, and what it looks like. */
struct RowState
{
    enum Kind {
        Unknown,
        Same,      ///< the PLC has it
        Different, ///< it has another value, or it is not known whether it has this one
    };

    Kind kind = Unknown;
    Quality like = Quality::NeverRead; ///< whose sign it has
    QString text;                      ///< for people; may be empty
};

/**
 * @param word what a transfer told of the row
 * @param value of the recipe; empty: it has none
 */
RowState rowState(const WordOutcome &word, std::optional<quint16> value);

} // namespace cnet::view
