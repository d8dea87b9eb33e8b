#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include <QtCore/QStringList>

#include "serviceForProtocol/cache/expected_blocks.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

void intf_setAddrValueChangeCallBack(ValueChangeCallback callback)
{
    const DriverEntry inside;
    driver.valueChangeCallback = callback;
}

static void takeProperties(const char *props)
{
    const QStringList fields = QString::fromLatin1(props).split(QLatin1Char('#'));
    if (fields.size() < 5) {
        return;
    }
    driver.deviceNo = fields.at(0).toInt();
    driver.cacheOnlyWrites = fields.at(1).toInt();
    driver.property3 = fields.at(2).toInt();
    driver.maxRetries = fields.at(3).toInt();
    driver.maxBlockWords = fields.at(4).toInt();
}

static void resetExchange()
{
    driver.cyclicReads.clear();
    forgetBlocks();
    driver.pendingWrites.clear();
    driver.conditionReads.clear();
    driver.dataArea.clear();
    driver.sendState = kJobIdle;
    driver.tryCount = 0;
    driver.needHandshake = 0;
    driver.failCount = 0;
    driver.lastFailed = 0;
    driver.maxBlockWordsCopy = driver.maxBlockWords;
    driver.maxBlockBits = wrapMul(8, driver.maxBlockWords);
    driver.frames.clear();
    driver.curFrameIndex = 0;
}

int intf_initProperty(unsigned char *shm, int hostArg, unsigned char *rcpData, int *status,
                      const char *props, QMutex *shmLock)
{
    if (status != nullptr) {
        *status = 0;
    }
    const DriverEntry inside;
    takeProperties(props);
    driver.shmBase = shm;
    driver.hostArg2 = hostArg;
    driver.rcpBuffer = rcpData;
    driver.shmMutex = shmLock;
    resetExchange();
    driver.initDone = 1;
    return 1;
}
