#pragma once

#include "host/address/register_catalog.h"

#include <QString>
#include <QVector>

#include <optional>

namespace cnet {

/** What a MASTER-K answers to. */
constexpr int kHighestStation = 31;

/** A row of consecutive values of one register that the user asks for. */
struct Item
{
    int station = 1;
    RegisterInfo reg;
    int start = 0; ///< first address as a number; word * 16 + bit in the word.bit form
    int count = 1; ///< words, bits or contacts

    /** As the user may write it: "1/D_W:100*10". */
    QString text() const;
    /** The address of one of its values: "103", "3.5". */
    QString addressText(int offset) const;
};

/** A part of an item that one block read serves. */
struct ItemBlock
{
    int offset = 0; ///< of its first value in the item
    int count = 0;
};

/**
 * Reads "[STATION/]REGISTER:ADDRESS[*COUNT]" and checks it against the register's description.
 *
 * @param defaultStation station of an item that names none
 * @param error receives one sentence, with what was expected, when the result is empty
 */
std::optional<Item> parseItem(const QString &text, int defaultStation,
                              const RegisterCatalog &registers, QString &error);

/**
 * Cuts an item so that each block is served by one block read.
 *
 * The driver merges keys into blocks but never cuts one, so a longer key would ask the PLC for more
 * words than it answers. And of a block of contacts the driver reads the first one only, so every
 * contact is a block of its own.
 *
 * @param blockWords words of a block read, at least 1
 */
QVector<ItemBlock> blocksOf(const Item &item, int blockWords);

} // namespace cnet
