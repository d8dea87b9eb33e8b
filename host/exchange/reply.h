#pragma once

#include <QByteArray>
#include <QString>

namespace cnet {

/** How long a line that is never quiet is listened to before the next frame is sent. */
constexpr int kLongestBabbleMs = 2000;

/** How one request ended. */
enum class Outcome {
    Answered, ///< a positive answer came
    Refused,  ///< the station said no
    Bad,      ///< something came that could not be used
    TimedOut, ///< nothing came
};

/** What was wrong with an answer, of Outcome::Bad. */
enum class Defect {
    None,
    BlockCheck, ///< its block check
    Other,      ///< cut short, of another station or command, or not what the driver expects
};

/** What became of one question. */
struct Reply
{
    int station = 0;
    QByteArray frame;   ///< as sent
    QByteArray answer;  ///< as received, from ACK or NAK on; empty where neither came
    int strayBytes = 0; ///< bytes received meanwhile that belong to no answer
    bool sent = true;   ///< false: the line never became clear for it
    qint64 sentMs = 0;  ///< when it was sent, on the clock
    double tookMs = 0;  ///< from the first sending that is still open until the answer was complete
    Outcome outcome = Outcome::TimedOut;
    Defect defect = Defect::None;
    QString note; ///< why an answer was not used
};

} // namespace cnet
