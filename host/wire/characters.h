#pragma once

namespace cnet {

constexpr char kEtx = 0x03; ///< ends an answer
constexpr char kEot = 0x04; ///< ends a request
constexpr char kEnq = 0x05; ///< begins a request
constexpr char kAck = 0x06; ///< begins a positive answer
constexpr char kNak = 0x15; ///< begins a refusal

/** Whether a frame begins with it, request or answer. */
constexpr bool isHead(char byte)
{
    return byte == kEnq || byte == kAck || byte == kNak;
}

// Head st(2) command
constexpr int kCommandPosition = 3;

constexpr int kBlockCheckLength = 2;

/** Whether a frame with this command has a block check: lower-case letters ask for one. */
constexpr bool hasBlockCheck(char command)
{
    return command >= 'a' && command <= 'z';
}

/** No frame of a MASTER-K is longer, request or answer. */
constexpr int kLongestFrame = 256;

/** What a MASTER-K gives for one request at most. */
constexpr int kMostWordsOfRequest = 60;

// NAK st(2) command(1) type(2) error code(4) ETX BCC(2)
constexpr int kRefusalLength = 1 + 2 + 1 + 2 + 4 + 1 + kBlockCheckLength;

} // namespace cnet
