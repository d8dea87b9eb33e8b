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
 * A request with what is missing of it: ENQ before it, EOT behind it, and the block check where the
 * command asks for one. A block check that is there already is replaced.
 *
 * @param text from the station on, or from ENQ; nothing in it is checked
 */
QByteArray completedRequest(const QByteArray &text);

/**
 * True when an answer is whole: ACK or NAK first, ETX before two last characters and, where the
 * command asks for one by a lower-case letter, a block check that is right.
 */
bool isWholeAnswer(const QByteArray &answer);

} // namespace cnet
