#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/recipe/recipe_deliver.h"
#include "support/area_helpers.h"
#include "support/recipe_helpers.h"

class TestRecipeDeliver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsOfBlock_data();
    void wordsOfBlock();
    void unitsOfWidths_data();
    void unitsOfWidths();
    void nothingToDeliver_data();
    void nothingToDeliver();
    void longItemNeedsNoLongAnswer();
    void answerReachesTheBufferThroughTheDecoder();
    void withoutCallback();
    void withoutBuffer();
};

static const int kDataPos = 10;

// The bytes of the recipe buffer that were written: "index=byte", where it is not EE.
static QByteArray bufferText(const QByteArray &buffer)
{
    QByteArray text;
    for (int i = 0; i < buffer.size(); ++i) {
        if (buffer.at(i) != '\xEE') {
            text += QByteArray(text.isEmpty() ? "" : " ") + QByteArray::number(i) + '=' +
                    buffer.mid(i, 1).toHex().toUpper();
        }
    }
    return text;
}

static void setRecipe(DriverFixture &fixture, const QByteArray &items, int rcpIndex)
{
    fixture.recipe.fill('\xEE');
    driver.rcpBuffer = DriverFixture::bytes(fixture.recipe);
    QVector<_RCP_VAR_PRO> list = recipeItems(items);
    intf_setRcpAddress(list);
    driver.rcpIndex = rcpIndex;
}

void TestRecipeDeliver::wordsOfBlock_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<int>("rcpIndex");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QString>("calls");

    QTest::newRow("words to offset 10, low byte first")
        << QByteArray("1 D_W 5 2 10") << 0 << readAnswer("1234ABCD")
        << QByteArray("20=34 21=12 22=CD 23=AB") << latin("0 -1 RWI 10, 0 -1 RWI 11");
    QTest::newRow("each item of a block to its own place")
        << QByteArray("1 D_W 5 1 10; 1 D_W 6 2 3") << 0 << readAnswer("111122223344")
        << QByteArray("6=22 7=22 8=44 9=33 20=11 21=11")
        << latin("0 -1 RWI 10, 0 -1 RWI 3, 0 -1 RWI 4");
    QTest::newRow("items that overlap get the same words")
        << QByteArray("1 D_W 5 2 10; 1 D_W 6 1 3") << 0 << readAnswer("11112233")
        << QByteArray("6=33 7=22 20=11 21=11 22=33 23=22")
        << latin("0 -1 RWI 10, 0 -1 RWI 11, 0 -1 RWI 3");
    QTest::newRow("the first of two blocks")
        << QByteArray("1 D_W 5 1 1; 1 D_W 9 1 2") << 0 << readAnswer("1234")
        << QByteArray("2=34 3=12") << latin("0 -1 RWI 1");
    QTest::newRow("the second of two blocks")
        << QByteArray("1 D_W 5 1 1; 1 D_W 9 1 2; 1 D_W 10 1 3") << 1 << readAnswer("12345678")
        << QByteArray("4=34 5=12 6=78 7=56") << latin("0 -1 RWI 2, 0 -1 RWI 3");
    QTest::newRow("short answer: what is missing is 0")
        << QByteArray("1 D_W 5 2 1") << 0
        << QByteArray("\x06"
                      "01rSB010812")
        << QByteArray("2=00 3=12 4=00 5=00") << latin("0 -1 RWI 1, 0 -1 RWI 2");
    QTest::newRow("the second item beyond a short answer")
        << QByteArray("1 D_W 5 1 1; 1 D_W 6 1 2") << 0 << QByteArray("\x06", 1)
        << QByteArray("2=00 3=00 4=00 5=00") << latin("0 -1 RWI 1, 0 -1 RWI 2");
}

void TestRecipeDeliver::wordsOfBlock()
{
    QFETCH(QByteArray, items);
    QFETCH(int, rcpIndex);
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, buffer);
    QFETCH(QString, calls);

    DriverFixture fixture;
    setRecipe(fixture, items, rcpIndex);
    deliverRecipeBlock(makeWidths(16, 16), answer, kDataPos);
    QCOMPARE(bufferText(fixture.recipe), buffer);
    QCOMPARE(callsText(), calls);
    QVERIFY(driver.dataArea.isEmpty());
}

void TestRecipeDeliver::unitsOfWidths_data()
{
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QString>("calls");

    QTest::newRow("bytes: two characters a unit, one call a word")
        << 8 << QByteArray("1 D_W 5 3 10") << QByteArray("12AB34")
        << QByteArray("20=12 21=AB 22=34") << latin("0 -1 RWI 10, 0 -1 RWI 11");
    QTest::newRow("bytes: the second item")
        << 8 << QByteArray("1 D_W 5 1 10; 1 D_W 6 2 20") << QByteArray("12AB34")
        << QByteArray("20=12 40=AB 41=34") << latin("0 -1 RWI 10, 0 -1 RWI 20");
    QTest::newRow("double words: eight characters a unit, low byte first")
        << 32 << QByteArray("1 D_W 5 1 10") << QByteArray("78563412")
        << QByteArray("20=78 21=56 22=34 23=12") << latin("0 -1 RWI 10, 0 -1 RWI 11");
    QTest::newRow("double words: the second item")
        << 32 << QByteArray("1 D_W 5 1 10; 1 D_W 6 1 0") << QByteArray("7856341221436587")
        << QByteArray("0=21 1=43 2=65 3=87 20=78 21=56 22=34 23=12")
        << latin("0 -1 RWI 10, 0 -1 RWI 11, 0 -1 RWI 0, 0 -1 RWI 1");
    QTest::newRow("contacts: nothing")
        << 1 << QByteArray("1 TX 5 1 10") << QByteArray("01") << QByteArray() << QString();
}

void TestRecipeDeliver::unitsOfWidths()
{
    QFETCH(int, wordBits);
    QFETCH(QByteArray, items);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, buffer);
    QFETCH(QString, calls);

    DriverFixture fixture;
    setRecipe(fixture, items, 0);
    deliverRecipeBlock(makeWidths(wordBits, wordBits), readAnswer(data), kDataPos);
    QCOMPARE(bufferText(fixture.recipe), buffer);
    QCOMPARE(callsText(), calls);
}

void TestRecipeDeliver::nothingToDeliver_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<int>("rcpIndex");
    QTest::addColumn<bool>("dropItems"); // by a recipe for another device

    QTest::newRow("no recipe") << QByteArray() << 0 << false;
    QTest::newRow("block behind the last") << QByteArray("1 D_W 5 1 1") << 1 << false;
    QTest::newRow("negative block") << QByteArray("1 D_W 5 1 1") << -1 << false;
    QTest::newRow("block beyond any") << QByteArray("1 D_W 5 1 1") << INT_MAX << false;
    QTest::newRow("blocks without items") << QByteArray("1 D_W 5 1 1; 1 D_W 9 1 2") << 0 << true;
    QTest::newRow("last block without items")
        << QByteArray("1 D_W 5 1 1; 1 D_W 9 1 2") << 1 << true;
    QTest::newRow("negative offset") << QByteArray("1 D_W 5 1 -1") << 0 << false;
    QTest::newRow("no words") << QByteArray("1 D_W 5 0 1") << 0 << false;
    QTest::newRow("negative count") << QByteArray("1 D_W 5 -3 1") << 0 << false;
    QTest::newRow("most negative count") << QByteArray("1 D_W 5 -2147483648 1") << 0 << false;
}

void TestRecipeDeliver::nothingToDeliver()
{
    QFETCH(QByteArray, items);
    QFETCH(int, rcpIndex);
    QFETCH(bool, dropItems);

    DriverFixture fixture;
    setRecipe(fixture, items, rcpIndex);
    if (dropItems) {
        QVector<_RCP_VAR_PRO> others = recipeItems("8/1 D_W 1 1 0");
        intf_setRcpAddress(others);
    }
    deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
    QCOMPARE(bufferText(fixture.recipe), QByteArray());
    QCOMPARE(callsText(), QString());
}

void TestRecipeDeliver::longItemNeedsNoLongAnswer()
{
    DriverFixture fixture;
    setRecipe(fixture, "1 D_W 5 4096 0", 0);
    deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
    QCOMPARE(fixture.recipe.left(2), QByteArray("\x34\x12"));
    QCOMPARE(fixture.recipe.mid(8), QByteArray(8192 - 8, '\0'));
    QCOMPARE(sizeOf(DriverFixture::calls()), 4096);
}

void TestRecipeDeliver::answerReachesTheBufferThroughTheDecoder()
{
    DriverFixture fixture;
    setRecipe(fixture, "1 D_W 5 2 10", 0);
    driver.sendState = kJobRecipeRead;
    analyzeFrameOfVal(readAnswer("1234ABCD"), 2, kDataPos, makeItem(1, "D_W", 5, 2));
    QCOMPARE(bufferText(fixture.recipe), QByteArray("20=34 21=12 22=CD 23=AB"));
    QCOMPARE(callsText(), latin("0 -1 RWI 10, 0 -1 RWI 11"));
}

void TestRecipeDeliver::withoutCallback()
{
    DriverFixture fixture;
    setRecipe(fixture, "1 D_W 5 1 1", 0);
    intf_setAddrValueChangeCallBack(nullptr);
    deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
    QCOMPARE(bufferText(fixture.recipe), QByteArray("2=34 3=12"));
    QCOMPARE(callsText(), QString());
}

void TestRecipeDeliver::withoutBuffer()
{
    DriverFixture fixture;
    setRecipe(fixture, "1 D_W 5 1 1", 0);
    driver.rcpBuffer = nullptr;
    deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
    QCOMPARE(bufferText(fixture.recipe), QByteArray());
}

QTEST_APPLESS_MAIN(TestRecipeDeliver)
#include "test_recipe_deliver.moc"
