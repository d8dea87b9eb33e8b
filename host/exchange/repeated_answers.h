#pragma once

namespace cnet {

/** What is done about an answer that is, byte for byte, the one before it, to another question. */
enum class RepeatedAnswers {
    Confirm, ///< it may be the last one once more: it is not believed without a fence
    Trust,   ///< it is believed: no line in between delivers anything twice
};

} // namespace cnet
