#pragma once

#include <string>

/** What a register's name alone says, without a table. */
namespace model {

/** Place of the name in the driver's register list, which sorts addresses; -1 for no register. */
int registerPlace(const std::string &name);

/** "TX" and "CX": transferred one by one, numbered plainly. */
bool isContact(const std::string &name);

/** Addressed as word * 16 + bit, whether or not there is such a register. */
bool isBitName(const std::string &name);

/** A word register; an unknown name is none. */
bool isWordRegister(const std::string &name);

/** "M" of "M_bit": words and bits of one device share their memory. */
std::string deviceLetter(const std::string &name);

/** Two letters of a read request: "MW" for "M_W" and for "M_bit", "TX" for "TX". */
std::string readDevice(const std::string &name);

/** Two letters of a write request: "MX" for "M_bit", which is written bit by bit. */
std::string writeDevice(const std::string &name);

} // namespace model
