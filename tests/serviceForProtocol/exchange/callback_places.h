#pragma once

#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/exchange/write_settle.h"
#include "serviceForProtocol/request/panel_value_store.h"
#include "support/exchange_helpers.h"
#include "support/recipe_helpers.h"

/// Every place at which the driver calls the host, each with what brings it there. They work on
/// station 1; `watchAll` comes first.

// Units 4 to 9 of letters that the places below change, watched in every way.
static void watchAll()
{
    const char *const letters[] = {"D", "M", "M_W", "TX", "CX"};
    for (const char *const letter : letters) {
        for (int unitAddr = 2; unitAddr < 10; ++unitAddr) {
            _DATA_ &record = unitAt(1, letter, unitAddr);
            record.monitorFlags = 0x7F;
            record.bitMonitorFlags = 0x0101;
            record.readValue[0] = 0x10;
        }
    }
}

static VARIABLE words(int startAddr, int count)
{
    return makeItem(1, "M_W", startAddr, count);
}

static void decode(int wordBits, const char *data, int units)
{
    driver.sendState = kJobCyclicRead;
    decodeToDataArea(makeWidths(wordBits, wordBits), readAnswer(data), units, 10, words(4, units));
}

static void decodeBytes()
{
    decode(8, "112233", 3);
}

static void decodeWords()
{
    decode(16, "111122223333", 3);
}

static void decodeDoubleWords()
{
    decode(32, "111111112222222233333333", 3);
}

static void decodeContacts()
{
    decode(1, "05", 3);
}

static void store(int unitBits, int wordBits, bool bitName, int startAddr, int count)
{
    const QByteArray values = QByteArray::fromHex("01010101010101010101010101010101");
    storePanelValues(makeWidths(unitBits, wordBits, bitName), 1, latin("M_W"), startAddr, count,
                     reinterpret_cast<const unsigned char *>(values.constData()));
}

static void storeBytes()
{
    store(8, 8, false, 4, 3);
}

static void storeWords()
{
    store(16, 16, false, 4, 3);
}

static void storePairs()
{
    store(32, 16, false, 4, 4);
}

static void storeWordsOfBytes()
{
    store(16, 8, false, 4, 2);
}

static void storeDoubleWords()
{
    store(32, 32, false, 4, 4);
}

static void storeContacts()
{
    store(1, 1, false, 4, 3);
}

static void storeBitsOfWords()
{
    store(1, 16, true, 16 * 4 + 14, 4);
}

static void storeBitsOfBytes()
{
    store(1, 8, true, 8 * 4 + 6, 4);
}

static void settle(int unitBits, int wordBits, bool bitName, int success)
{
    const char *const letters[] = {"M", "M_W"};
    for (const char *const letter : letters) {
        for (int unitAddr = 2; unitAddr < 10; ++unitAddr) {
            _DATA_ &record = unitAt(1, letter, unitAddr);
            record.writePending = 1;
            record.writeValue[0] = 0x21;
        }
    }
    settleWrite(makeWidths(unitBits, wordBits, bitName), 1, latin("M_W"),
                bitName ? 4 * wordBits + 4 : 4, 3, success);
}

static void failBytes()
{
    settle(8, 8, false, 0);
}

static void failWords()
{
    settle(16, 16, false, 0);
}

static void failWordsOfBytes()
{
    settle(16, 8, false, 0);
}

static void failDoubleWordsOfBytes()
{
    settle(32, 8, false, 0);
}

static void failDoubleWords()
{
    settle(32, 32, false, 0);
}

static void failContacts()
{
    settle(1, 1, false, 0);
}

static void failBits()
{
    settle(1, 16, true, 0);
}

static void takeBits()
{
    settle(1, 16, true, 1);
}

static void takeBitsOfBytes()
{
    settle(1, 8, true, 1);
}

static void readRecipe()
{
    QVector<_RCP_VAR_PRO> items = recipeItems("1 D_W 4 2 10; 1 D_W 6 1 20");
    intf_setRcpAddress(items);
    driver.shmBase[kRecipeReadByte] = kRecipeRequested;
    takeTurn();
}

// The exchange itself; retries are 1, so one bad answer gives a job up.
static void answerJob(const QByteArray &answer)
{
    FRAME_PRO frame = FRAME_PRO();
    intf_getSendFrame(frame);
    answerWith(answer);
}

static void answerCyclicRead()
{
    driver.cyclicReads.append(words(4, 2));
    driver.cyclicReads.append(words(8, 1));
    answerJob(readAnswer("11112222"));
}

static void panelWrite(const char *regName, int startAddr)
{
    QString name = latin(regName);
    unsigned char values[2] = {1, 1};
    intf_setData(1, name, startAddr, 1, values, 0);
}

static void writeAndFail()
{
    panelWrite("D_W", 4);
    answerJob(QByteArray());
}

static void writeContactAndFail()
{
    panelWrite("TX", 4);
    answerJob(QByteArray());
}

static void writeBitAndSettle()
{
    panelWrite("M_bit", 64);
    answerJob(writeAnswer());
}

static void writeBitAndFail()
{
    panelWrite("D_bit", 64);
    answerJob(QByteArray());
}

static void askForWord()
{
    KEY_ADDRESS key = makeKey(1, "D_W", 4, 1);
    intf_addConditionRead(key, 0);
}

static void conditionReadDone()
{
    askForWord();
    answerJob(readAnswer("0010")); // nothing changed: only the end is told
}

static void conditionReadFailed()
{
    askForWord();
    answerJob(QByteArray());
}

struct NamedPlace
{
    const char *name;
    void (*run)();
};

static const NamedPlace kPlaces[] = {
    {"decoded bytes", &decodeBytes},
    {"decoded words", &decodeWords},
    {"decoded double words", &decodeDoubleWords},
    {"decoded contacts", &decodeContacts},
    {"stored bytes", &storeBytes},
    {"stored words", &storeWords},
    {"stored pairs of words", &storePairs},
    {"stored words of bytes", &storeWordsOfBytes},
    {"stored double words", &storeDoubleWords},
    {"stored contacts", &storeContacts},
    {"stored bits of words", &storeBitsOfWords},
    {"stored bits of bytes", &storeBitsOfBytes},
    {"failed bytes", &failBytes},
    {"failed words", &failWords},
    {"failed words of bytes", &failWordsOfBytes},
    {"failed double words of bytes", &failDoubleWordsOfBytes},
    {"failed double words", &failDoubleWords},
    {"failed contacts", &failContacts},
    {"failed bits", &failBits},
    {"settled bits", &takeBits},
    {"settled bits of bytes", &takeBitsOfBytes},
    {"recipe read", &readRecipe},
    {"answer of a cyclic read", &answerCyclicRead},
    {"panel write given up", &writeAndFail},
    {"panel write of a contact given up", &writeContactAndFail},
    {"panel write of a bit taken", &writeBitAndSettle},
    {"panel write of a bit given up", &writeBitAndFail},
    {"condition read done", &conditionReadDone},
    {"condition read given up", &conditionReadFailed},
};
