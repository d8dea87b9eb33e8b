#include <cstring>
#include <new>

#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "support/driver_fixture.h"
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

    void numbersAreZero()
    {
        ProtocolOnDirtyStorage protocol;
        const int settings[] = {
            protocol->deviceNo,          protocol->cacheOnlyWrites, protocol->property3,
            protocol->maxRetries,        protocol->maxBlockWords,   protocol->maxBlockBits,
            protocol->maxBlockWordsCopy, protocol->hostArg2,        protocol->initDone};
        for (const int setting : settings) {
            QCOMPARE(setting, 0);
        }
        const int exchange[] = {protocol->sendState,     protocol->tryCount,
                                protocol->needHandshake, protocol->failCount,
                                protocol->lastFailed,    protocol->curFrameIndex,
                                protocol->rcpIndex,      protocol->readItemCount};
        for (const int number : exchange) {
            QCOMPARE(number, 0);
        }
    }

    void hostObjectsAreNull()
    {
        ProtocolOnDirtyStorage protocol;
        QVERIFY(protocol->valueChangeCallback == nullptr);
        QVERIFY(protocol->shmBase == nullptr && protocol->rcpBuffer == nullptr);
        QVERIFY(protocol->shmMutex == nullptr);
        QVERIFY(protocol->propertyPage.isNull());
    }

    void listsAreEmpty()
    {
        ProtocolOnDirtyStorage protocol;
        QVERIFY(protocol->cyclicReads.isEmpty() && protocol->pendingWrites.isEmpty());
        QVERIFY(protocol->conditionReads.isEmpty() && protocol->curReadList.isEmpty());
        QVERIFY(protocol->dataArea.isEmpty() && protocol->frames.isEmpty());
        QVERIFY(protocol->rcpItems.isEmpty() && protocol->rcpBlocks.isEmpty());
        QVERIFY(protocol->rcpBlockStarts.isEmpty());
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
        VARIABLE other = makeItem(row.stationNo, row.regName, row.startAddr, row.count);
        other.opKind = 9;
        other.data[0] = 0x55;
        QCOMPARE(isSameRequest(makeItem(1, "D_W", 100, 5), other), row.same);
        QCOMPARE(isSameRequest(other, makeItem(1, "D_W", 100, 5)), row.same);
    }
};

QTEST_APPLESS_MAIN(TestProtocol)
#include "test_protocol.moc"
