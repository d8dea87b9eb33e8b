#pragma once

#include "host/address/register_info.h"

#include <QString>

#include <optional>

namespace cnet {

constexpr int kBitsPerWord = 16;

/**
 * Reads an address in the register's own form, whatever the limits are.
 * @return the number (word * 16 + bit in the word.bit form), or nothing where the text does not
 * fit.
 */
std::optional<int> readAddress(const RegisterInfo &info, const QString &text);

/** The text that readAddress() takes for this number. */
QString addressText(const RegisterInfo &info, int address);

/** What an address of this register looks like, for a message: "a number from 0 to 9999". */
QString addressHint(const RegisterInfo &info);

} // namespace cnet
