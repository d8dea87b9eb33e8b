#include "ls_master_k_cnet/cnet_frame.h"

#include "shared/bytes.h"
#include "shared/protocol.h"

unsigned short computate_check(const unsigned char *buf, unsigned short len)
{
    unsigned sum = 0;
    for (unsigned i = 0; i < len; ++i) {
        sum += buf[i];
    }
    return static_cast<unsigned short>(sum);
}

void handShakeFrame()
{
    driver.frames.appendBlank();
}

int check_rcv_data(const unsigned char *buf, const QList<VARIABLE> &, int len)
{
    if (driver.frames.isEmpty() || len < kTrailerLength) {
        return kAnswerRejected;
    }
    const FRAME_PRO &frame = driver.frames.at(0);
    if (len != frame.recvLen || buf[0] != kAck || buf[len - kTrailerLength] != kEtx) {
        return kAnswerRejected;
    }
    const int checkPos = len - 2;
    const int check = computate_check(buf, static_cast<unsigned short>(checkPos));
    if (buf[checkPos] != hexCharacter(check >> 4) || buf[checkPos + 1] != hexCharacter(check)) {
        return kAnswerRejected;
    }
    return frame.unitCount != 0 ? kAnswerHasData : kAnswerAcknowledges;
}
