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

static void store(int unitBits, int wordBits, bool bitName, int startAddr, int count)
{
    const QByteArray values = QByteArray::fromHex("01010101010101010101010101010101");
    storePanelValues(makeWidths(unitBits, wordBits, bitName), 1, latin("M_W"), startAddr, count,
                     reinterpret_cast<const unsigned char *>(values.constData()));
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

// The exchange itself; retries are 1, so one bad answer gives a job up.
static void answerJob(const QByteArray &answer)
{
    send();
    answerWith(answer);
}

static void panelWritesAndIsTold(const char *regName, int startAddr, const QByteArray &answer)
{
    panelWrite(regName, startAddr, "0101");
    answerJob(answer);
}

static void hostAsksAndIsTold(const QByteArray &answer)
{
    askOnce("D_W", 4);
    answerJob(answer);
}

static const struct
{
    const char *what;
    void (*run)();
} kPlaces[] = {
    {"decoded bytes", [] { decode(8, "112233", 3); }},
    {"decoded words", [] { decode(16, "111122223333", 3); }},
    {"decoded double words", [] { decode(32, "111111112222222233333333", 3); }},
    {"decoded contacts", [] { decode(1, "05", 3); }},
    {"stored bytes", [] { store(8, 8, false, 4, 3); }},
    {"stored words", [] { store(16, 16, false, 4, 3); }},
    {"stored pairs of words", [] { store(32, 16, false, 4, 4); }},
    {"stored words of bytes", [] { store(16, 8, false, 4, 2); }},
    {"stored double words", [] { store(32, 32, false, 4, 4); }},
    {"stored contacts", [] { store(1, 1, false, 4, 3); }},
    {"stored bits of words", [] { store(1, 16, true, 16 * 4 + 14, 4); }},
    {"stored bits of bytes", [] { store(1, 8, true, 8 * 4 + 6, 4); }},
    {"failed bytes", [] { settle(8, 8, false, 0); }},
    {"failed words", [] { settle(16, 16, false, 0); }},
    {"failed words of bytes", [] { settle(16, 8, false, 0); }},
    {"failed double words of bytes", [] { settle(32, 8, false, 0); }},
    {"failed double words", [] { settle(32, 32, false, 0); }},
    {"failed contacts", [] { settle(1, 1, false, 0); }},
    {"failed bits", [] { settle(1, 16, true, 0); }},
    {"settled bits", [] { settle(1, 16, true, 1); }},
    {"settled bits of bytes", [] { settle(1, 8, true, 1); }},
    {"recipe read",
     [] {
         setRecipeItems("1 D_W 4 2 10; 1 D_W 6 1 20");
         driver.shmBase[kRecipeReadByte] = kRecipeRequested;
         takeTurn();
     }},
    {"answer of a cyclic read",
     [] {
         driver.cyclicReads.append(words(4, 2));
         driver.cyclicReads.append(words(8, 1));
         answerJob(readAnswer("11112222"));
     }},
    {"panel write given up", [] { panelWritesAndIsTold("D_W", 4, QByteArray()); }},
    {"panel write of a contact given up", [] { panelWritesAndIsTold("TX", 4, QByteArray()); }},
    {"panel write of a bit taken", [] { panelWritesAndIsTold("M_bit", 64, writeAnswer()); }},
    {"panel write of a bit given up", [] { panelWritesAndIsTold("D_bit", 64, QByteArray()); }},
    // nothing changed: only the end is told
    {"condition read done", [] { hostAsksAndIsTold(readAnswer("0010")); }},
    {"condition read given up", [] { hostAsksAndIsTold(QByteArray()); }},
};
