#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/item.h"

namespace model {

enum class Act {
    Start,  ///< communication starts anew
    Listen, ///< the host's callback is installed (1), looks at each place (2), or is taken away (0)
    Monitor,   ///< the monitored ranges are replaced
    Recipe,    ///< the recipe is replaced
    Buffer,    ///< the host changes its recipe buffer
    Ask,       ///< a recipe request byte (0 write, 1 read) is set to a value
    Write,     ///< the panel writes
    ReadOnce,  ///< the panel asks for one reading
    Look,      ///< the panel reads what the driver knows
    Handshake, ///< the line needs (1) or no longer needs (0) a handshake
    Send,      ///< the next frame is asked for
    Answer,    ///< the PLC answers; `Fault` says how
};

/** What is wrong with an answer. The first three are good ones for the driver. */
enum class Fault {
    None,
    Foreign, ///< another station's number
    Odd,     ///< data that are no hexadecimal digits
    Refused, ///< NAK with an error code
    NakHead, ///< NAK where ACK belongs, all else right
    Silent,  ///< nothing came
    Check,   ///< a wrong block check
    Lower,   ///< block check in lower case
    Short,
    Long,
    NoEtx,
    Noise, ///< any bytes
};

/**
 * One step of a sequence, with a text that can be read back.
 *
 *     start 7#0#0#3#60            start 7#0#0#3#60 without block      (buffer, lock)
 *     listen 0                    handshake 1
 *     monitor 1/D_W:100*6 1/M_bit:48*3                                (none: cleared)
 *     recipe 7@0=1/D_W:10*2 7@2=1/D_W:12*3                            (device@place)
 *     buffer 5                    ask write 1
 *     write 1/M_bit:53*1 value 3 tag 9
 *     once 1/D_W:100*2 bits 0 tag 9
 *     look 1/D_W:100*2
 *     send                        answer 5                            (value)
 *     answer 5 check
 *     within write 1/D_W:100*1 value 3 tag 9                          (also once, look, listen)
 */
struct Operation
{
    Act act = Act::Send;
    std::string text;          ///< properties; what is missing at the start ("block" and the like)
    std::vector<Range> ranges; ///< monitored, written, read, recipe items
    std::vector<int> devices;  ///< of each recipe item
    std::vector<int> places;   ///< of each recipe item in the buffer, in words
    std::string missing;       ///< at the start: "block", "buffer", "lock" or nothing
    int value = 0;             ///< on or off, a request byte, or what values are made of
    int tag = 0;
    Fault fault = Fault::None;
    bool within = false; ///< waits for a call of the host's callback, each for its own
};

/** A step that is about no range. */
Operation makeStep(Act act, int value = 0, const std::string &text = std::string());

/** A step that is about ranges: monitored, written, read once or looked at. */
Operation makeStep(Act act, const std::vector<Range> &ranges, int value = 0);

using Sequence = std::vector<Operation>;

std::string textOf(const Operation &operation);

/** Is it a step that a host may take from within the callback? */
bool mayBeWithin(const Operation &operation);

/** The steps with "; " between them: a row for a test. */
std::string textOf(const Sequence &sequence);

/** The reverse; nothing when the text is no sequence. */
std::optional<Sequence> sequenceOf(const std::string &text);

/** The i-th word that stands for a value: 0 for value 0, else few different ones. */
unsigned wordOf(int value, int i);

/** An answer's value of `n * kOtherWord` more has another n-th word, and nothing else. */
constexpr int kOtherWord = 200;

/** The bytes that a panel hands over: two a word, or one a bit, which is sometimes 2. */
Bytes bytesOf(const Range &range, int value);

/** Size of the recipe buffer, and what the host puts there. */
enum { kRecipeBytes = 1024 };
Bytes recipeBytes(int value);

} // namespace model
