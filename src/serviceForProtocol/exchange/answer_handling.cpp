#include "serviceForProtocol/exchange/answer_handling.h"

#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/exchange/job_finish.h"
#include "serviceForProtocol/exchange/known_block.h"
#include "serviceForProtocol/exchange/write_settle.h"
#include "shared/protocol.h"

int dealReadFrameReturnSaveData(const QByteArray &reply)
{
    if (!driver.frames.isEmpty()) {
        const FRAME_PRO &frame = driver.frames.at(0);
        analyzeFrameOfVal(reply, frame.unitCount, frame.dataPos, frame.var);
    }
    return 0;
}

static void settleIfWrite(int success)
{
    if (driver.sendState == kJobWrite) {
        const VARIABLE &var = driver.frames.at(0).var;
        const QString regName = var.regName; // a copy: the host is called, and may change the frame
        _write_FailOrSuc(var.stationNo, regName, var.startAddr, var.count, success);
    }
}

static int finishStep()
{
    driver.lastFailed = 0;
    if (!driver.frames.isEmpty()) {
        driver.frames.removeFirst();
    }
    if (driver.frames.isEmpty()) {
        dealListWhenFinish();
    }
    driver.failCount = 0;
    return kAnswerGood;
}

static int countBadAnswer()
{
    ++driver.failCount;
    if (driver.failCount < driver.maxRetries) {
        return kAnswerResend;
    }
    driver.lastFailed = 1;
    settleIfWrite(0);
    driver.frames.clear();
    driver.failCount = 0;
    dealListWhenFinish();
    return kAnswerGivenUp;
}

int intf_dealRcvFrame(QByteArray &reply, QString &errorText)
{
    const DriverEntry inside;
    if (driver.frames.isEmpty()) {
        errorText = QLatin1String("");
        return kAnswerUnexpected;
    }
    describeRequest(reply, errorText);
    if (isLastAnswer(reply)) {
        return finishStep();
    }
    ++driver.answerSerial;
    // A copy: the host may change its array from within the callback.
    const QByteArray answer = reply; // NOLINT(performance-unnecessary-copy-initialization)
    switch (check_rcv_data(reinterpret_cast<const unsigned char *>(answer.constData()),
                           driver.curReadList, static_cast<int>(answer.size()))) {
    case kAnswerHasData:
        dealReadFrameReturnSaveData(answer);
        return finishStep();
    case kAnswerAcknowledges:
        settleIfWrite(1);
        return finishStep();
    default:
        return countBadAnswer();
    }
}
