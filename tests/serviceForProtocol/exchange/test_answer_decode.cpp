#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/answer_decode.h"
#include "support/area_helpers.h"

static const int kDataPos = 10;

// The read values of the area in order of first use: "letter address=bytes", four bytes a unit.
static QString valuesText()
{
    QStringList texts;
    for (const _DATA_ &record : driver.dataArea) {
        texts.append(record.regPrefix + QString::number(record.unitAddr) + QLatin1Char('=') +
                     latin(hexOf(record.readValue, 4).constData()));
    }
    return texts.join(QLatin1String(" "));
}

static const struct
{
    const char *what;
    int unitBits, wordBits;
    QByteArray answer;
    int unitCount;
    const char *values;
} kValuesOfWidths[] = {
    {"a word, high byte first on the wire", 16, 16, readAnswer("00FF"), 1, "M5=FF000000"},
    {"words", 16, 16, readAnswer("1234ABCD"), 2, "M5=34120000 M6=CDAB0000"},
    {"lower-case digits", 16, 16, readAnswer("abcd"), 1, "M5=CDAB0000"},
    {"bits are read as words", 1, 16, readAnswer("8001"), 1, "M5=01800000"},
    {"bytes", 8, 8, readAnswer("12AB"), 2, "M5=12000000 M6=AB000000"},
    {"words of bytes", 16, 8, readAnswer("12AB"), 2, "M5=12000000 M6=AB000000"},
    {"double words, low byte first", 32, 32, readAnswer("7856341201000080"), 2,
     "M5=78563412 M6=01000080"},
    {"contacts: eight to a byte, from its lowest bit", 1, 1, readAnswer("8502"), 10,
     "M5=01000000 M6=00000000 M7=01000000 M8=00000000 M9=00000000 M10=00000000 "
     "M11=00000000 M12=01000000 M13=00000000 M14=01000000"},
    {"a contact", 1, 1, readAnswer("01"), 1, "M5=01000000"},

    {"short answer: what is missing is 0", 16, 16,
     "\x06"
     "01rSB010412A",
     2, "M5=A0120000 M6=00000000"},
    {"answer that ends before its data", 16, 16, QByteArray("\x06", 1), 1, "M5=00000000"},
    {"no answer at all", 32, 32, QByteArray(), 1, "M5=00000000"},
    {"no units", 16, 16, readAnswer("1234"), 0, ""},
    {"negative units", 16, 16, readAnswer("1234"), -1, ""},
    {"most negative units", 1, 1, readAnswer("01"), INT_MIN, ""},
    {"any other width decodes nothing", 16, 24, readAnswer("123456"), 1, ""},
    {"no width decodes nothing", 16, 0, readAnswer("1234"), 1, ""},
};

// What lies in memory before or behind an answer is none of it.
static const struct
{
    const char *what;
    int wordBits;
    QByteArray memory;
    int first; // of the answer in memory
    int length, dataPos, unitCount;
    const char *values;
} kOnlyTheAnswerIsDecoded[] = {
    {"a word half there", 16, "1234ABCD", 0, 6, 0, 2, "M5=34120000 M6=00AB0000"},
    {"a word not there", 16, "FFFFFFFF", 0, 3, 4, 1, "M5=00000000"},
    {"a word from before the answer", 16, "F123", 1, 3, -1, 1, "M5=23010000"},
    {"a contact not there", 1, "FF", 0, 0, 0, 1, "M5=00000000"},
    {"a ninth contact not there", 1, "00FF", 0, 2, 0, 9,
     "M5=00000000 M6=00000000 M7=00000000 M8=00000000 M9=00000000 M10=00000000 "
     "M11=00000000 M12=00000000 M13=00000000"},
    {"a contact whose byte is half there", 1, "0F", 0, 1, 0, 1, "M5=00000000"},
};

static const struct
{
    const char *what;
    int wordBits;
    QByteArray answer; // to units 5 and 6, which hold 01
    const char *calls;
} kChangedUnitsAreReported[] = {
    {"words, the second is the same", 16, readAnswer("00810001"), "7 1 M_bit 87, 7 1 M_W 5"},
    {"words, both differ", 16, readAnswer("00020000"),
     "7 1 M_bit 80, 7 1 M_bit 81, 7 1 M_W 5, 7 1 M_bit 96, 7 1 M_W 6"},
    {"words, none differs", 16, readAnswer("00010001"), ""},
    {"bytes", 8, readAnswer("0181"), "7 1 M_bit 55, 7 1 M_B 6"},
    {"double words", 32, readAnswer("0100000003000000"), "7 1 M_bit 193, 7 1 M 6"},
    {"contacts have no bits", 1, readAnswer("01"), "7 1 M 6"},
};

static const struct
{
    const char *what;
    int wordBits;
    QByteArray data;
    bool queued;
    int pending, pendingAfter;
    const char *calls;
} kPendingWriteEndsWithTheQueue[] = {
    {"word changed, queue empty", 16, "0002", false, 1, 0, "7 1 M_W 5"},
    {"word changed, a write queued", 16, "0002", true, 1, 1, "7 1 M_W 5"},
    {"word the same, queue empty", 16, "0001", false, 1, 1, ""},
    {"word the same, a write queued", 16, "0001", true, 1, 1, ""},
    {"byte changed, queue empty", 8, "02", false, 1, 0, "7 1 M_B 5"},
    {"byte changed, a write queued", 8, "02", true, 1, 1, "7 1 M_B 5"},
    {"double word changed, queue empty", 32, "02000000", false, 1, 0, "7 1 M 5"},
    {"double word changed, a write queued", 32, "02000000", true, 1, 1, "7 1 M 5"},
    {"contact changed, queue empty", 1, "00", false, 1, 0, "7 1 M 5"},
    {"contact changed, a write queued: ended all the same", 1, "00", true, 1, 0, "7 1 M 5"},
    {"contact the same", 1, "01", false, 1, 1, ""},
    {"a mark other than 1 ends at once", 16, "0002", true, 2, 0, "7 1 M_W 5"},
};

static const struct
{
    const char *what;
    int sendState;
    const char *regName;
    const char *values;
} kDecodingFollowsTheJob[] = {
    {"cyclic read", 4, "D_W", "D3=34120000"},
    {"condition read", 3, "D_W", "D3=34120000"},
    {"cyclic read of a bit name", 4, "M_bit", "M3=34120000"},
    {"bit write: no values", 2, "M_bit", ""},
    {"data-register bit write: no values", 2, "D_bit", ""},
    {"word write: values", 2, "D_W", "D3=34120000"},
    {"recipe read: no values", 6, "D_W", ""},
    {"recipe read of bits: no values", 6, "M_bit", ""},
    {"recipe write of bits: values", 5, "M_bit", "M3=34120000"},
    {"contact", 4, "TX", "TX3=00000000"},
};

static const Case<const char *, const char *> kUnknownRegisters[] = {
    {"unknown name: words, as the spare row says", "Q_W", "Q3=34120000"},
    {"wrong case", "d_w", "d3=34120000"},
    {"no name", "", "3=34120000"},
};

static QByteArray seen;

class TestAnswerDecode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesOfWidths_data() { addRows(kValuesOfWidths); }
    void valuesOfWidths()
    {
        const auto &row = currentRow(kValuesOfWidths);
        DriverFixture fixture;
        decodeToDataArea(makeWidths(row.unitBits, row.wordBits), row.answer, row.unitCount,
                         kDataPos, makeItem(1, "M_W", 5, row.unitCount));
        QCOMPARE(valuesText(), latin(row.values));
    }

    void onlyTheAnswerIsDecoded_data() { addRows(kOnlyTheAnswerIsDecoded); }
    void onlyTheAnswerIsDecoded()
    {
        const auto &row = currentRow(kOnlyTheAnswerIsDecoded);
        DriverFixture fixture;
        const QByteArray answer =
            QByteArray::fromRawData(row.memory.constData() + row.first, row.length);
        decodeToDataArea(makeWidths(row.wordBits, row.wordBits), answer, row.unitCount, row.dataPos,
                         makeItem(1, "M_W", 5, row.unitCount));
        QCOMPARE(valuesText(), latin(row.values));
    }

    void changedUnitsAreReported_data() { addRows(kChangedUnitsAreReported); }
    void changedUnitsAreReported()
    {
        const auto &row = currentRow(kChangedUnitsAreReported);
        DriverFixture fixture;
        for (int unitAddr = 5; unitAddr < 7; ++unitAddr) {
            _DATA_ &record = unitAt(1, "M", unitAddr);
            record.readValue[0] = 1;
            record.monitorFlags = 1;
            record.bitMonitorFlags = -1;
        }
        decodeToDataArea(makeWidths(row.wordBits, row.wordBits), row.answer, 2, kDataPos,
                         makeItem(1, "M_W", 5, 2));
        QCOMPARE(callsText(), latin(row.calls));
    }

    void sameAnswerTwiceIsReportedOnce()
    {
        DriverFixture fixture;
        unitAt(1, "D", 100).monitorFlags = 1;
        const VARIABLE item = makeItem(1, "D_W", 100, 1);
        driver.sendState = kJobCyclicRead;
        analyzeFrameOfVal(readAnswer("00FF"), 1, kDataPos, item);
        analyzeFrameOfVal(readAnswer("00FF"), 1, kDataPos, item);
        QCOMPARE(callsText(), latin("7 1 D_W 100"));
        QCOMPARE(valuesText(), latin("D100=FF000000"));
    }

    void pendingWriteEndsWithTheQueue_data() { addRows(kPendingWriteEndsWithTheQueue); }
    void pendingWriteEndsWithTheQueue()
    {
        const auto &row = currentRow(kPendingWriteEndsWithTheQueue);
        DriverFixture fixture;
        _DATA_ &record = unitAt(1, "M", 5);
        record.readValue[0] = 1;
        setBytes(record.writeValue, "77777777");
        record.writePending = static_cast<quint8>(row.pending);
        record.monitorFlags = 1;
        if (row.queued) {
            driver.pendingWrites.append(makeItem(1, "D_W", 900, 1));
        }
        decodeToDataArea(makeWidths(row.wordBits, row.wordBits), readAnswer(row.data), 1, kDataPos,
                         makeItem(1, "M_W", 5, 1));
        QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), row.pendingAfter);
        QCOMPARE(hexOf(driver.dataArea.at(0).writeValue, 4), QByteArray("77777777"));
        QCOMPARE(callsText(), latin(row.calls));
    }

    void decodingFollowsTheJob_data() { addRows(kDecodingFollowsTheJob); }
    void decodingFollowsTheJob()
    {
        const auto &row = currentRow(kDecodingFollowsTheJob);
        DriverFixture fixture;
        driver.sendState = row.sendState;
        analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, row.regName, 3, 1));
        QCOMPARE(valuesText(), latin(row.values));
        QCOMPARE(callsText(), QString());
    }

    void unknownRegisters_data() { addRows(kUnknownRegisters); }
    void unknownRegisters()
    {
        const auto &row = currentRow(kUnknownRegisters);
        DriverFixture fixture;
        driver.sendState = kJobCyclicRead;
        analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, row.given, 3, 1));
        QCOMPARE(valuesText(), latin(row.expected));
    }

    void hostSeesTheNewValue()
    {
        DriverFixture fixture;
        seen.clear();
        DriverFixture::hook() = [] { seen += panelRead("D_W", 100, 1, 2); };
        _DATA_ &record = unitAt(1, "D", 100);
        record.monitorFlags = 1;
        record.writePending = 1;
        driver.sendState = kJobCyclicRead;
        analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, "D_W", 100, 1));
        QCOMPARE(seen, QByteArray("3412"));
    }
};

QTEST_APPLESS_MAIN(TestAnswerDecode)
#include "test_answer_decode.moc"
