#pragma once

#include "host/driver/driver_library.h"
#include "host/address/item.h"

#include <QString>

namespace cnet {

enum class Access { Read, Write };

/** Why the driver refuses an address, in words: "out of range". */
QString addressCodeText(int code);

/**
 * Asks the driver whether an address is good for an object of the panel.
 *
 * @param text address in the register's own form
 * @param asBits the object uses bits or contacts, not words
 * @param count words, bits or contacts, 1 or more
 * @param number receives the address as the driver's number, where the result is kAddressValid
 * @return an AddressCode
 */
int checkAddress(const DriverFunctions &driver, const QString &registerName, const QString &text,
                 bool asBits, int count, Access access, int &number);

/**
 * Asks the driver whether it takes all addresses of an item. The driver itself refuses no request,
 * so this is what keeps a wrong one off the line: call it for every item before any is queued.
 *
 * @param error receives one sentence, with what was expected, when the result is false
 */
bool checkItem(const DriverFunctions &driver, const Item &item, Access access, QString &error);

} // namespace cnet
