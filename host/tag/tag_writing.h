#pragma once

#include "host/address/assignment.h"
#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <QVector>

#include <optional>

namespace cnet {

/**
 * What a write of a tag's values sends to the PLC. All of it is checked here, before anything
 * reaches the line: bounds, scale, and what the type holds.
 *
 * A value of several words is never cut: each assignment fits one request. A bit of a word goes to
 * the register that has the bits of the same memory, D_bit for D_W, since a write of the whole word
 * would undo what the PLC does with the other fifteen meanwhile; a word without such a register is
 * not written.
 *
 * @param values as many as the tag counts, in its unit
 * @param mostWords words that one request can write, 1 or more
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<Assignment>> assignmentsOf(const Tag &tag, const QVector<Scalar> &values,
                                                 const RegisterCatalog &registers, int mostWords,
                                                 QString &error);

} // namespace cnet
