#pragma once

#include "host/address/item.h"

#include <QString>
#include <QVector>

#include <optional>

namespace cnet {

/** Values that the user wants written to a row of addresses. */
struct Assignment
{
    Item item;
    QVector<quint16> values; ///< as many as the item counts; 0 or 1 for bits and contacts

    /** For messages: "1/D_W:100*3=1,2,3"; of a long row the first values. */
    QString text() const;
};

/**
 * Reads "ITEM=VALUE[,VALUE...]". An item without a count has as many addresses as there are values;
 * one with a count takes as many values, or one for all of its addresses.
 *
 * The addresses are not checked against the register's limits yet: Driver::check() does that.
 *
 * @param defaultStation station of an item that names none
 * @param error receives one sentence, with what was expected, when the result is empty
 */
std::optional<Assignment> parseAssignment(const QString &text, int defaultStation,
                                          const RegisterCatalog &registers, QString &error);

} // namespace cnet
