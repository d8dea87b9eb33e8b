#pragma once

#include "host/address/register_info.h"
#include "host/exchange/conversation.h"

namespace cnet {

/** How a word is asked for; the answers to both cannot be taken for one another. */
enum class ProbeForm {
    Single, ///< by its name
    Block,  ///< as a block of one word
};

/**
 * A request to read one word of a register, which changes nothing.
 *
 * @param station 0 to 31
 * @param address 0 to 99999
 */
Question probeQuestion(int station, const RegisterInfo &reg, int address, ProbeForm form);

} // namespace cnet
