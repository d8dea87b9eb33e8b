#pragma once

#include <QtCore/QList>

#include "ls_master_k_cnet/records.h"

/// The common parts of all Cnet frames: control characters, envelope, block check. Exchange thread.

/// Control characters of the wire.
enum ControlCharacter {
    kEnq = 0x05, ///< starts a request
    kEot = 0x04, ///< ends a request, before its block check
    kAck = 0x06, ///< starts a positive answer
    kNak = 0x15, ///< starts a refusal
    kEtx = 0x03  ///< ends an answer, before its block check
};

/// Lengths in bytes. A block check is two hexadecimal characters.
enum FrameLength {
    kTrailerLength = 3,        ///< ETX BCC(2), or EOT BCC(2)
    kAnswerHeadLength = 6,     ///< ACK st(2) command(3)
    kWriteAnswerLength = 9,    ///< kAnswerHeadLength + kTrailerLength
    kReadAnswerDataPos = 10,   ///< kAnswerHeadLength + blocks(2) bytes(2)
    kReadAnswerOverhead = 13,  ///< kReadAnswerDataPos + kTrailerLength
    kContactAnswerLength = 15, ///< kReadAnswerOverhead + one byte(2)
    kBlockRequestOverhead =
        21,                    ///< ENQ st(2) command(3) 08(2) %XX(3) address(5) words(2) EOT BCC(2)
    kBlockRequestDataPos = 18, ///< kBlockRequestOverhead - kTrailerLength
    kWordCharacters = 4        ///< a word on the wire
};

// The largest answer that a PLC can send.
static_assert(kReadAnswerOverhead + 255 * kWordCharacters < 65536, "block check counts in 16 bits");

/// @return  sum of the first `len` bytes of `buf`, in 16 bits; the block check is its low 8 bits
unsigned short computate_check(const unsigned char *buf, unsigned short len);

/// Appends the handshake frame to `driver.frames`. It has no bytes, because this link needs no
/// handshake; the exchange treats it like any other job.
void handShakeFrame();

/// The results of `check_rcv_data`.
enum AnswerVerdict {
    kAnswerRejected = 0,
    kAnswerHasData = 1,     ///< good, with values
    kAnswerAcknowledges = 2 ///< good, a plain acknowledgement
};

/// Checks the answer to the first frame of `driver.frames`: its length, ACK, ETX and block check
/// (upper case only). Station and command are not compared.
///
/// @param buf  the answer, `len` bytes
/// @param len  0 or more
/// @return     an `AnswerVerdict`; every answer is rejected if there is no frame
int check_rcv_data(const unsigned char *buf, const QList<VARIABLE> &, int len);
