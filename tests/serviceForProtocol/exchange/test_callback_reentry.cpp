#include <QtTest/QtTest>

#include "callback_places.h"

/// The host calls back into the driver from each place at which the driver calls the host. What the
/// driver was doing must come out as if the host had kept still.

static DriverFixture *host = nullptr;
static QStringList troubles;

static void expect(bool right, const char *what)
{
    if (!right) {
        troubles.append(latin(what));
    }
}

// Every function that the panel's thread may call, each of them with places that are new to the
// area and to the lists, so that these grow and move.
static void callBack()
{
    static int place = 0;
    static int depth = 0;
    if (depth > 0) {
        return;
    }
    ++depth;
    expect(isFree(driver.listMutex), "the list was locked");
    expect(isFree(host->shmLock), "the host's block was locked");

    place += 40;
    QByteArray values(80, '\x01');
    unsigned char *const bytes = DriverFixture::bytes(values);
    unsigned char buffer[1024];
    QString words = latin("K_W");
    QString bits = latin("L_bit");
    QString contacts = latin("CX");
    expect(intf_setData(9, words, place, 40, bytes, 0) == 1, "a word write was refused");
    expect(intf_setData(9, bits, 16 * place, 40, bytes, 0) == 1, "a bit write was refused");
    expect(intf_setData(9, contacts, place, 40, bytes, 0) == 1, "a contact write was refused");
    expect(intf_getData(9, words, place, 40, buffer) == 1, "a read was refused");
    expect(bytesOf(buffer, 80) == values, "the own write was not read back");
    intf_getData(1, words, 2000 + place, 40, buffer);
    KEY_ADDRESS key = makeKey(9, "T_W", place, 10);
    expect(intf_addConditionRead(key, 0) == 1, "a condition read was refused");
    key.startAddr = 5;
    key.count = 1;
    intf_addConditionRead(key, 0);
    --depth;
}

// What the driver knows of station 1 and did: its records, its jobs, the recipe buffer.
static QByteArray outcome(DriverFixture &fixture)
{
    QByteArray text;
    for (int i = 0; i < 40; ++i) {
        text += recordText(driver.dataArea.at(i)) + ' ';
    }
    const QList<VARIABLE> *const lists[] = {&driver.pendingWrites, &driver.cyclicReads};
    for (const QList<VARIABLE> *const list : lists) {
        for (const VARIABLE &item : *list) {
            if (item.stationNo == 1) {
                text += itemText(item).toLatin1() + ' ';
            }
        }
    }
    return text + fixture.recipe.toHex() + QByteArray::number(driver.rcpIndex) +
           hexOf(driver.shmBase + kRecipeWriteByte, 2) + QByteArray::number(sizeOf(driver.frames));
}

// Runs one place with a host that does `hook`.
static QByteArray runPlace(void (*run)(), void (*hook)(), bool hasCallback = true)
{
    DriverFixture fixture("7#0#0#1#60");
    host = &fixture;
    if (!hasCallback) {
        intf_setAddrValueChangeCallBack(nullptr);
    }
    watchAll();
    DriverFixture::hook() = hook;
    run();
    QByteArray result = outcome(fixture);
    host = nullptr;
    return result;
}

// A host may have one scratch buffer for all that it reads and writes.
static unsigned char scratchBuffer[4];

class TestCallbackReentry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostCallsBack_data() { addRows(kPlaces); }
    void hostCallsBack()
    {
        const auto &row = currentRow(kPlaces);
        troubles.clear();
        const QByteArray quiet = runPlace(row.run, nullptr);
        const QString quietCalls = callsText();
        QVERIFY2(!quietCalls.isEmpty(), "the host is called at this place");
        const QByteArray busy = runPlace(row.run, &callBack);
        QCOMPARE(busy, quiet);
        QCOMPARE(callsText(), quietCalls);
        QCOMPARE(troubles, QStringList());
    }

    void withoutCallback_data() { addRows(kPlaces); }
    void withoutCallback()
    {
        const auto &row = currentRow(kPlaces);
        const QByteArray quiet = runPlace(row.run, nullptr);
        QCOMPARE(runPlace(row.run, nullptr, false), quiet);
        QCOMPARE(callsText(), QString());
    }

    void hostReusesItsBuffer()
    {
        DriverFixture fixture;
        QList<KEY_ADDRESS> keys;
        keys.append(makeKey(1, "D_W", 10, 2));
        intf_addrMerge(keys);
        DriverFixture::hook() = [] {
            QString words = latin("D_W");
            intf_getData(1, words, 500, 2, scratchBuffer);
        };
        const unsigned char values[4] = {0x11, 0x22, 0x33, 0x44};
        std::memcpy(scratchBuffer, values, sizeof values);
        QString words = latin("D_W");
        intf_setData(1, words, 10, 2, scratchBuffer, 0);
        QCOMPARE(hexOf(driver.pendingWrites.at(0).data, 4), hexOf(values, 4));
        QCOMPARE(panelRead("D_W", 10, 2, 4), hexOf(values, 4));
    }
};

QTEST_APPLESS_MAIN(TestCallbackReentry)
#include "test_callback_reentry.moc"
