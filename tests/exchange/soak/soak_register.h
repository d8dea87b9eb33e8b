#pragma once

#include "plc/point.h"

#include <QString>

#include <vector>

namespace exchange::soak {

/** A register as a panel names it, described apart from the driver's own table. */
struct Register
{
    QString name;
    char device;          ///< device letter
    plc::PointKind kind;  ///< what an address counts
    int highest;          ///< highest address that a panel may use
    bool bitsThroughWord; ///< even a single bit is written by reading and writing its word

    bool isBit() const { return kind == plc::PointKind::Bit; }
    bool isWord() const { return kind == plc::PointKind::Word; }
    bool isContact() const { return kind == plc::PointKind::Contact; }
};

constexpr int kBitsPerWord = 16;

const std::vector<Register> &registers();

/** @return nullptr where there is none of this name. */
const Register *registerNamed(const QString &name);

/** The word register that holds the bits of this one; itself where it has no bits of words. */
const Register &wordsOf(const Register &bits);

/** A range of one register of one station. */
struct Range
{
    int station = 0;
    const Register *reg = nullptr;
    int address = 0;
    int count = 0;

    bool operator==(const Range &other) const
    {
        return station == other.station && reg == other.reg && address == other.address &&
               count == other.count;
    }
};

/** "1 M_bit 35 x2", for messages. */
QString text(const Range &range);

/** The PLC's name for the value `offset` places behind the first. */
plc::Point pointOf(const Range &range, int offset = 0);

} // namespace exchange::soak
