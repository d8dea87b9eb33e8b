#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/answer_decode.h"
#include "support/area_helpers.h"

class TestAnswerDecode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesOfWidths_data();
    void valuesOfWidths();
    void onlyTheAnswerIsDecoded_data();
    void onlyTheAnswerIsDecoded();
    void changedUnitsAreReported_data();
    void changedUnitsAreReported();
    void sameAnswerTwiceIsReportedOnce();
    void pendingWriteEndsWithTheQueue_data();
    void pendingWriteEndsWithTheQueue();
    void decodingFollowsTheJob_data();
    void decodingFollowsTheJob();
    void unknownRegisters_data();
    void unknownRegisters();
    void hostSeesTheNewValue();
};

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

void TestAnswerDecode::valuesOfWidths_data()
{
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("unitCount");
    QTest::addColumn<QString>("values");

    QTest::newRow("a word, high byte first on the wire")
        << 16 << 16 << readAnswer("00FF") << 1 << latin("M5=FF000000");
    QTest::newRow("words") << 16 << 16 << readAnswer("1234ABCD") << 2
                           << latin("M5=34120000 M6=CDAB0000");
    QTest::newRow("lower-case digits")
        << 16 << 16 << readAnswer("abcd") << 1 << latin("M5=CDAB0000");
    QTest::newRow("bits are read as words")
        << 1 << 16 << readAnswer("8001") << 1 << latin("M5=01800000");
    QTest::newRow("bytes") << 8 << 8 << readAnswer("12AB") << 2 << latin("M5=12000000 M6=AB000000");
    QTest::newRow("words of bytes")
        << 16 << 8 << readAnswer("12AB") << 2 << latin("M5=12000000 M6=AB000000");
    QTest::newRow("double words, low byte first")
        << 32 << 32 << readAnswer("7856341201000080") << 2 << latin("M5=78563412 M6=01000080");
    QTest::newRow("contacts: eight to a byte, from its lowest bit")
        << 1 << 1 << readAnswer("8502") << 10
        << latin("M5=01000000 M6=00000000 M7=01000000 M8=00000000 M9=00000000 M10=00000000 "
                 "M11=00000000 M12=01000000 M13=00000000 M14=01000000");
    QTest::newRow("a contact") << 1 << 1 << readAnswer("01") << 1 << latin("M5=01000000");

    QTest::newRow("short answer: what is missing is 0") << 16 << 16
                                                        << QByteArray("\x06"
                                                                      "01rSB010412A")
                                                        << 2 << latin("M5=A0120000 M6=00000000");
    QTest::newRow("answer that ends before its data")
        << 16 << 16 << QByteArray("\x06", 1) << 1 << latin("M5=00000000");
    QTest::newRow("no answer at all") << 32 << 32 << QByteArray() << 1 << latin("M5=00000000");
    QTest::newRow("no units") << 16 << 16 << readAnswer("1234") << 0 << QString();
    QTest::newRow("negative units") << 16 << 16 << readAnswer("1234") << -1 << QString();
    QTest::newRow("most negative units") << 1 << 1 << readAnswer("01") << INT_MIN << QString();
    QTest::newRow("any other width decodes nothing")
        << 16 << 24 << readAnswer("123456") << 1 << QString();
    QTest::newRow("no width decodes nothing") << 16 << 0 << readAnswer("1234") << 1 << QString();
}

void TestAnswerDecode::valuesOfWidths()
{
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);
    QFETCH(QByteArray, answer);
    QFETCH(int, unitCount);
    QFETCH(QString, values);

    DriverFixture fixture;
    decodeToDataArea(makeWidths(unitBits, wordBits), answer, unitCount, kDataPos,
                     makeItem(1, "M_W", 5, unitCount));
    QCOMPARE(valuesText(), values);
}

// What lies in memory before or behind an answer is none of it.
void TestAnswerDecode::onlyTheAnswerIsDecoded_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QByteArray>("memory");
    QTest::addColumn<int>("first"); // of the answer in memory
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("dataPos");
    QTest::addColumn<int>("unitCount");
    QTest::addColumn<QString>("values");

    QTest::newRow("a word half there")
        << 16 << QByteArray("1234ABCD") << 0 << 6 << 0 << 2 << latin("M5=34120000 M6=00AB0000");
    QTest::newRow("a word not there")
        << 16 << QByteArray("FFFFFFFF") << 0 << 3 << 4 << 1 << latin("M5=00000000");
    QTest::newRow("a word from before the answer")
        << 16 << QByteArray("F123") << 1 << 3 << -1 << 1 << latin("M5=23010000");
    QTest::newRow("a contact not there")
        << 1 << QByteArray("FF") << 0 << 0 << 0 << 1 << latin("M5=00000000");
    QTest::newRow("a ninth contact not there")
        << 1 << QByteArray("00FF") << 0 << 2 << 0 << 9
        << latin("M5=00000000 M6=00000000 M7=00000000 M8=00000000 M9=00000000 M10=00000000 "
                 "M11=00000000 M12=00000000 M13=00000000");
    QTest::newRow("a contact whose byte is half there")
        << 1 << QByteArray("0F") << 0 << 1 << 0 << 1 << latin("M5=00000000");
}

void TestAnswerDecode::onlyTheAnswerIsDecoded()
{
    QFETCH(int, wordBits);
    QFETCH(QByteArray, memory);
    QFETCH(int, first);
    QFETCH(int, length);
    QFETCH(int, dataPos);
    QFETCH(int, unitCount);
    QFETCH(QString, values);

    DriverFixture fixture;
    const QByteArray answer = QByteArray::fromRawData(memory.constData() + first, length);
    decodeToDataArea(makeWidths(wordBits, wordBits), answer, unitCount, dataPos,
                     makeItem(1, "M_W", 5, unitCount));
    QCOMPARE(valuesText(), values);
}

void TestAnswerDecode::changedUnitsAreReported_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QByteArray>("answer"); // to units 5 and 6, which hold 01
    QTest::addColumn<QString>("calls");

    QTest::newRow("words, the second is the same")
        << 16 << readAnswer("00810001") << latin("7 1 M_bit 87, 7 1 M_W 5");
    QTest::newRow("words, both differ")
        << 16 << readAnswer("00020000")
        << latin("7 1 M_bit 80, 7 1 M_bit 81, 7 1 M_W 5, 7 1 M_bit 96, 7 1 M_W 6");
    QTest::newRow("words, none differs") << 16 << readAnswer("00010001") << QString();
    QTest::newRow("bytes") << 8 << readAnswer("0181") << latin("7 1 M_bit 55, 7 1 M_B 6");
    QTest::newRow("double words") << 32 << readAnswer("0100000003000000")
                                  << latin("7 1 M_bit 193, 7 1 M 6");
    QTest::newRow("contacts have no bits") << 1 << readAnswer("01") << latin("7 1 M 6");
}

void TestAnswerDecode::changedUnitsAreReported()
{
    QFETCH(int, wordBits);
    QFETCH(QByteArray, answer);
    QFETCH(QString, calls);

    DriverFixture fixture;
    for (int unitAddr = 5; unitAddr < 7; ++unitAddr) {
        _DATA_ &record = unitAt(1, "M", unitAddr);
        record.readValue[0] = 1;
        record.monitorFlags = 1;
        record.bitMonitorFlags = -1;
    }
    decodeToDataArea(makeWidths(wordBits, wordBits), answer, 2, kDataPos, makeItem(1, "M_W", 5, 2));
    QCOMPARE(callsText(), calls);
}

void TestAnswerDecode::sameAnswerTwiceIsReportedOnce()
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

void TestAnswerDecode::pendingWriteEndsWithTheQueue_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("queued");
    QTest::addColumn<int>("pending");
    QTest::addColumn<int>("pendingAfter");
    QTest::addColumn<QString>("calls");

    QTest::newRow("word changed, queue empty")
        << 16 << QByteArray("0002") << false << 1 << 0 << latin("7 1 M_W 5");
    QTest::newRow("word changed, a write queued")
        << 16 << QByteArray("0002") << true << 1 << 1 << latin("7 1 M_W 5");
    QTest::newRow("word the same, queue empty")
        << 16 << QByteArray("0001") << false << 1 << 1 << QString();
    QTest::newRow("word the same, a write queued")
        << 16 << QByteArray("0001") << true << 1 << 1 << QString();
    QTest::newRow("byte changed, queue empty")
        << 8 << QByteArray("02") << false << 1 << 0 << latin("7 1 M_B 5");
    QTest::newRow("byte changed, a write queued")
        << 8 << QByteArray("02") << true << 1 << 1 << latin("7 1 M_B 5");
    QTest::newRow("double word changed, queue empty")
        << 32 << QByteArray("02000000") << false << 1 << 0 << latin("7 1 M 5");
    QTest::newRow("double word changed, a write queued")
        << 32 << QByteArray("02000000") << true << 1 << 1 << latin("7 1 M 5");
    QTest::newRow("contact changed, queue empty")
        << 1 << QByteArray("00") << false << 1 << 0 << latin("7 1 M 5");
    QTest::newRow("contact changed, a write queued: ended all the same")
        << 1 << QByteArray("00") << true << 1 << 0 << latin("7 1 M 5");
    QTest::newRow("contact the same") << 1 << QByteArray("01") << false << 1 << 1 << QString();
    QTest::newRow("a mark other than 1 ends at once")
        << 16 << QByteArray("0002") << true << 2 << 0 << latin("7 1 M_W 5");
}

void TestAnswerDecode::pendingWriteEndsWithTheQueue()
{
    QFETCH(int, wordBits);
    QFETCH(QByteArray, data);
    QFETCH(bool, queued);
    QFETCH(int, pending);
    QFETCH(int, pendingAfter);
    QFETCH(QString, calls);

    DriverFixture fixture;
    _DATA_ &record = unitAt(1, "M", 5);
    record.readValue[0] = 1;
    setBytes(record.writeValue, "77777777");
    record.writePending = static_cast<quint8>(pending);
    record.monitorFlags = 1;
    if (queued) {
        driver.pendingWrites.append(makeItem(1, "D_W", 900, 1));
    }
    decodeToDataArea(makeWidths(wordBits, wordBits), readAnswer(data), 1, kDataPos,
                     makeItem(1, "M_W", 5, 1));
    QCOMPARE(static_cast<int>(driver.dataArea.at(0).writePending), pendingAfter);
    QCOMPARE(hexOf(driver.dataArea.at(0).writeValue, 4), QByteArray("77777777"));
    QCOMPARE(callsText(), calls);
}

void TestAnswerDecode::decodingFollowsTheJob_data()
{
    QTest::addColumn<int>("sendState");
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<QString>("values");

    QTest::newRow("cyclic read") << 4 << QByteArray("D_W") << latin("D3=34120000");
    QTest::newRow("condition read") << 3 << QByteArray("D_W") << latin("D3=34120000");
    QTest::newRow("cyclic read of a bit name") << 4 << QByteArray("M_bit") << latin("M3=34120000");
    QTest::newRow("bit write: no values") << 2 << QByteArray("M_bit") << QString();
    QTest::newRow("data-register bit write: no values") << 2 << QByteArray("D_bit") << QString();
    QTest::newRow("word write: values") << 2 << QByteArray("D_W") << latin("D3=34120000");
    QTest::newRow("recipe read: no values") << 6 << QByteArray("D_W") << QString();
    QTest::newRow("recipe read of bits: no values") << 6 << QByteArray("M_bit") << QString();
    QTest::newRow("recipe write of bits: values")
        << 5 << QByteArray("M_bit") << latin("M3=34120000");
    QTest::newRow("contact") << 4 << QByteArray("TX") << latin("TX3=00000000");
}

void TestAnswerDecode::decodingFollowsTheJob()
{
    QFETCH(int, sendState);
    QFETCH(QByteArray, regName);
    QFETCH(QString, values);

    DriverFixture fixture;
    driver.sendState = sendState;
    analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, regName.constData(), 3, 1));
    QCOMPARE(valuesText(), values);
    QCOMPARE(callsText(), QString());
}

void TestAnswerDecode::unknownRegisters_data()
{
    QTest::addColumn<QByteArray>("regName");
    QTest::addColumn<QString>("values");

    QTest::newRow("unknown name: words, as the spare row says")
        << QByteArray("Q_W") << latin("Q3=34120000");
    QTest::newRow("wrong case") << QByteArray("d_w") << latin("d3=34120000");
    QTest::newRow("no name") << QByteArray("") << latin("3=34120000");
}

void TestAnswerDecode::unknownRegisters()
{
    QFETCH(QByteArray, regName);
    QFETCH(QString, values);

    DriverFixture fixture;
    driver.sendState = kJobCyclicRead;
    analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, regName.constData(), 3, 1));
    QCOMPARE(valuesText(), values);
}

static QByteArray &seen()
{
    static QByteArray bytes;
    return bytes;
}

static void readWatchedWord()
{
    unsigned char buffer[2] = {0, 0};
    QString name = latin("D_W");
    intf_getData(1, name, 100, 1, buffer);
    seen() += hexOf(buffer, 2);
}

void TestAnswerDecode::hostSeesTheNewValue()
{
    DriverFixture fixture;
    seen().clear();
    DriverFixture::hook() = &readWatchedWord;
    _DATA_ &record = unitAt(1, "D", 100);
    record.monitorFlags = 1;
    record.writePending = 1;
    driver.sendState = kJobCyclicRead;
    analyzeFrameOfVal(readAnswer("1234"), 1, kDataPos, makeItem(1, "D_W", 100, 1));
    QCOMPARE(seen(), QByteArray("3412"));
}

QTEST_APPLESS_MAIN(TestAnswerDecode)
#include "test_answer_decode.moc"
