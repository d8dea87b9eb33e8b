#include <cstring>
#include <new>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "shared/protocol.h"
#include "support/rows.h"

// A driver object built on storage full of ones: a member that the constructor leaves out shows.
class ProtocolOnDirtyStorage
{
public:
    ProtocolOnDirtyStorage()
    {
        std::memset(m_storage, 0xFF, sizeof(m_storage));
        m_protocol = new (m_storage) Protocol;
    }
    ~ProtocolOnDirtyStorage() { m_protocol->~Protocol(); }

    Protocol *operator->() { return m_protocol; }

private:
    alignas(Protocol) unsigned char m_storage[sizeof(Protocol)];
    Protocol *m_protocol;

    Q_DISABLE_COPY(ProtocolOnDirtyStorage)
};

static bool isBlank(const VARIABLE &item)
{
    const unsigned char nothing[kValueAreaSize] = {};
    return item.opKind == 0 && item.stationNo == 0 && item.startAddr == 0 && item.count == 0 &&
           item.regName.isEmpty() && std::memcmp(item.data, nothing, sizeof(nothing)) == 0;
}

static VARIABLE item(int stationNo, const char *regName, int startAddr, int count)
{
    VARIABLE variable = VARIABLE();
    variable.stationNo = stationNo;
    variable.regName = latin(regName);
    variable.startAddr = startAddr;
    variable.count = count;
    return variable;
}

static const struct
{
    const char *what;
    int stationNo;
    const char *regName;
    int startAddr, count;
    bool same;
} kSameRequestIsRecognised[] = {
    {"other tag and other values only", 1, "D_W", 100, 5, true},
    {"other station", 2, "D_W", 100, 5, false},
    {"other register", 1, "M_W", 100, 5, false},
    {"other letter case", 1, "d_w", 100, 5, false},
    {"other start", 1, "D_W", 101, 5, false},
    {"other count", 1, "D_W", 100, 4, false},
};

class TestProtocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void globalIsBuiltAfterTheTables()
    {
        QCOMPARE(driver.initDone, 0);
        QCOMPARE(driver.maxBlockWords, 0);
        QVERIFY(driver.valueChangeCallback == nullptr);
        QCOMPARE(sizeOf(driver.regNames), 16);
        for (int i = 0; i < kRegisterCount; ++i) {
            QVERIFY(!REG_LIST[i].isEmpty());
            QCOMPARE(driver.regNames.at(i), REG_LIST[i]);
        }
    }

    void settingsAreZero()
    {
        ProtocolOnDirtyStorage protocol;

        QCOMPARE(protocol->deviceNo, 0);
        QCOMPARE(protocol->cacheOnlyWrites, 0);
        QCOMPARE(protocol->property3, 0);
        QCOMPARE(protocol->maxRetries, 0);
        QCOMPARE(protocol->maxBlockWords, 0);
        QCOMPARE(protocol->maxBlockBits, 0);
        QCOMPARE(protocol->maxBlockWordsCopy, 0);
        QCOMPARE(protocol->hostArg2, 0);
        QCOMPARE(protocol->initDone, 0);
    }

    void hostObjectsAreNull()
    {
        ProtocolOnDirtyStorage protocol;

        QVERIFY(protocol->valueChangeCallback == nullptr);
        QVERIFY(protocol->shmBase == nullptr);
        QVERIFY(protocol->rcpBuffer == nullptr);
        QVERIFY(protocol->shmMutex == nullptr);
        QVERIFY(protocol->propertyPage.isNull());
    }

    void listsAreEmpty()
    {
        ProtocolOnDirtyStorage protocol;

        QVERIFY(protocol->cyclicReads.isEmpty());
        QVERIFY(protocol->pendingWrites.isEmpty());
        QVERIFY(protocol->conditionReads.isEmpty());
        QVERIFY(protocol->dataArea.isEmpty());
        QVERIFY(protocol->rcpItems.isEmpty());
        QVERIFY(protocol->rcpBlocks.isEmpty());
        QVERIFY(protocol->rcpBlockStarts.isEmpty());
        QVERIFY(protocol->curReadList.isEmpty());
        QVERIFY(protocol->frames.isEmpty());
    }

    void exchangeIsIdle()
    {
        ProtocolOnDirtyStorage protocol;

        QCOMPARE(protocol->sendState, 0);
        QCOMPARE(protocol->tryCount, 0);
        QCOMPARE(protocol->needHandshake, 0);
        QCOMPARE(protocol->failCount, 0);
        QCOMPARE(protocol->lastFailed, 0);
        QCOMPARE(protocol->curFrameIndex, 0);
        QCOMPARE(protocol->rcpIndex, 0);
        QCOMPARE(protocol->readItemCount, 0);
    }

    void requestsAreEmpty()
    {
        ProtocolOnDirtyStorage protocol;

        QVERIFY(isBlank(protocol->lastVar));
        QVERIFY(protocol->lastVar.regName.isNull());
        QVERIFY(isBlank(protocol->curVar));
        QVERIFY(!protocol->curVar.regName.isNull());
    }

    void registerNamesAreThoseOfTheTable()
    {
        ProtocolOnDirtyStorage protocol;

        QStringList names(protocol->regNames);
        QCOMPARE(names.join(QLatin1String(" ")),
                 latin("D_W C_W T_W K_W P_W F_W L_W M_W P_bit K_bit M_bit L_bit F_bit "
                       "TX CX D_bit"));
    }

    void listLockIsFreeAndNotRecursive()
    {
        ProtocolOnDirtyStorage protocol;

        QVERIFY(protocol->listMutex.tryLock());
        const bool twice = protocol->listMutex.tryLock();
        protocol->listMutex.unlock();
        QVERIFY(!twice);
    }

    void sameRequestIsRecognised_data() { addRows(kSameRequestIsRecognised); }
    void sameRequestIsRecognised()
    {
        const auto &row = currentRow(kSameRequestIsRecognised);
        VARIABLE other = item(row.stationNo, row.regName, row.startAddr, row.count);
        other.opKind = 9;
        other.data[0] = 0x55;
        QCOMPARE(isSameRequest(item(1, "D_W", 100, 5), other), row.same);
        QCOMPARE(isSameRequest(other, item(1, "D_W", 100, 5)), row.same);
    }
};

QTEST_APPLESS_MAIN(TestProtocol)
#include "test_protocol.moc"
