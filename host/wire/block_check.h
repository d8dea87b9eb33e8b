#pragma once

#include <QByteArray>

namespace cnet {

/**
 * The block check of a frame: the sum of its bytes from the head to the tail character, the low
 * byte in upper-case hexadecimal.
 *
 * @param frame with its head first; bytes behind `length` do not count
 * @param length bytes up to and including the tail character, 0 to the frame's size
 */
QByteArray blockCheck(const QByteArray &frame, int length);

/**
 * True when an answer is whole: ACK or NAK first, ETX before two last characters and, where the
 * command asks for one by a lower-case letter, a block check that is right.
 */
bool isWholeAnswer(const QByteArray &answer);

} // namespace cnet
