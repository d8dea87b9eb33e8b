#include <climits>

#include <QtTest/QtTest>

#include "serviceForProtocol/exchange/answer_decode.h"
#include "serviceForProtocol/recipe/recipe_deliver.h"
#include "support/area_helpers.h"
#include "support/recipe_helpers.h"

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
    setRecipeItems(items);
    driver.rcpIndex = rcpIndex;
}

static const struct
{
    const char *what;
    QByteArray items;
    int rcpIndex;
    QByteArray answer, buffer;
    const char *calls;
} kWordsOfBlock[] = {
    {"words to offset 10, low byte first", "1 D_W 5 2 10", 0, readAnswer("1234ABCD"),
     "20=34 21=12 22=CD 23=AB", "0 -1 RWI 10, 0 -1 RWI 11"},
    {"each item of a block to its own place", "1 D_W 5 1 10; 1 D_W 6 2 3", 0,
     readAnswer("111122223344"), "6=22 7=22 8=44 9=33 20=11 21=11",
     "0 -1 RWI 10, 0 -1 RWI 3, 0 -1 RWI 4"},
    {"items that overlap get the same words", "1 D_W 5 2 10; 1 D_W 6 1 3", 0,
     readAnswer("11112233"), "6=33 7=22 20=11 21=11 22=33 23=22",
     "0 -1 RWI 10, 0 -1 RWI 11, 0 -1 RWI 3"},
    {"the first of two blocks", "1 D_W 5 1 1; 1 D_W 9 1 2", 0, readAnswer("1234"), "2=34 3=12",
     "0 -1 RWI 1"},
    {"the second of two blocks", "1 D_W 5 1 1; 1 D_W 9 1 2; 1 D_W 10 1 3", 1,
     readAnswer("12345678"), "4=34 5=12 6=78 7=56", "0 -1 RWI 2, 0 -1 RWI 3"},
    {"short answer: what is missing is 0", "1 D_W 5 2 1", 0,
     "\x06"
     "01rSB010812",
     "2=00 3=12 4=00 5=00", "0 -1 RWI 1, 0 -1 RWI 2"},
    {"the second item beyond a short answer", "1 D_W 5 1 1; 1 D_W 6 1 2", 0, QByteArray("\x06", 1),
     "2=00 3=00 4=00 5=00", "0 -1 RWI 1, 0 -1 RWI 2"},
};

static const struct
{
    const char *what;
    int wordBits;
    QByteArray items, data, buffer;
    const char *calls;
} kUnitsOfWidths[] = {
    {"bytes: two characters a unit, one call a word", 8, "1 D_W 5 3 10", "12AB34",
     "20=12 21=AB 22=34", "0 -1 RWI 10, 0 -1 RWI 11"},
    {"bytes: the second item", 8, "1 D_W 5 1 10; 1 D_W 6 2 20", "12AB34", "20=12 40=AB 41=34",
     "0 -1 RWI 10, 0 -1 RWI 20"},
    {"double words: eight characters a unit, low byte first", 32, "1 D_W 5 1 10", "78563412",
     "20=78 21=56 22=34 23=12", "0 -1 RWI 10, 0 -1 RWI 11"},
    {"double words: the second item", 32, "1 D_W 5 1 10; 1 D_W 6 1 0", "7856341221436587",
     "0=21 1=43 2=65 3=87 20=78 21=56 22=34 23=12",
     "0 -1 RWI 10, 0 -1 RWI 11, 0 -1 RWI 0, 0 -1 RWI 1"},
    {"contacts: nothing", 1, "1 TX 5 1 10", "01", "", ""},
};

static const struct
{
    const char *what;
    QByteArray items;
    int rcpIndex;
    bool dropItems; // by a recipe for another device
} kNothingToDeliver[] = {
    {"no recipe", QByteArray(), 0, false},
    {"block behind the last", "1 D_W 5 1 1", 1, false},
    {"negative block", "1 D_W 5 1 1", -1, false},
    {"block beyond any", "1 D_W 5 1 1", INT_MAX, false},
    {"blocks without items", "1 D_W 5 1 1; 1 D_W 9 1 2", 0, true},
    {"last block without items", "1 D_W 5 1 1; 1 D_W 9 1 2", 1, true},
    {"negative offset", "1 D_W 5 1 -1", 0, false},
    {"no words", "1 D_W 5 0 1", 0, false},
    {"negative count", "1 D_W 5 -3 1", 0, false},
    {"most negative count", "1 D_W 5 -2147483648 1", 0, false},
};

class TestRecipeDeliver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsOfBlock_data() { addRows(kWordsOfBlock); }
    void wordsOfBlock()
    {
        const auto &row = currentRow(kWordsOfBlock);
        DriverFixture fixture;
        setRecipe(fixture, row.items, row.rcpIndex);
        deliverRecipeBlock(makeWidths(16, 16), row.answer, kDataPos);
        QCOMPARE(bufferText(fixture.recipe), row.buffer);
        QCOMPARE(callsText(), latin(row.calls));
        QVERIFY(driver.dataArea.isEmpty());
    }

    void unitsOfWidths_data() { addRows(kUnitsOfWidths); }
    void unitsOfWidths()
    {
        const auto &row = currentRow(kUnitsOfWidths);
        DriverFixture fixture;
        setRecipe(fixture, row.items, 0);
        deliverRecipeBlock(makeWidths(row.wordBits, row.wordBits), readAnswer(row.data), kDataPos);
        QCOMPARE(bufferText(fixture.recipe), row.buffer);
        QCOMPARE(callsText(), latin(row.calls));
    }

    void nothingToDeliver_data() { addRows(kNothingToDeliver); }
    void nothingToDeliver()
    {
        const auto &row = currentRow(kNothingToDeliver);
        DriverFixture fixture;
        setRecipe(fixture, row.items, row.rcpIndex);
        if (row.dropItems) {
            setRecipeItems("8/1 D_W 1 1 0");
        }
        deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
        QCOMPARE(bufferText(fixture.recipe), QByteArray());
        QCOMPARE(callsText(), QString());
    }

    void longItemNeedsNoLongAnswer()
    {
        DriverFixture fixture;
        setRecipe(fixture, "1 D_W 5 4096 0", 0);
        deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
        QCOMPARE(fixture.recipe.left(2), QByteArray("\x34\x12"));
        QCOMPARE(fixture.recipe.mid(8), QByteArray(8192 - 8, '\0'));
        QCOMPARE(sizeOf(DriverFixture::calls()), 4096);
    }

    void answerReachesTheBufferThroughTheDecoder()
    {
        DriverFixture fixture;
        setRecipe(fixture, "1 D_W 5 2 10", 0);
        driver.sendState = kJobRecipeRead;
        analyzeFrameOfVal(readAnswer("1234ABCD"), 2, kDataPos, makeItem(1, "D_W", 5, 2));
        QCOMPARE(bufferText(fixture.recipe), QByteArray("20=34 21=12 22=CD 23=AB"));
        QCOMPARE(callsText(), latin("0 -1 RWI 10, 0 -1 RWI 11"));
    }

    void withoutCallback()
    {
        DriverFixture fixture;
        setRecipe(fixture, "1 D_W 5 1 1", 0);
        intf_setAddrValueChangeCallBack(nullptr);
        deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
        QCOMPARE(bufferText(fixture.recipe), QByteArray("2=34 3=12"));
        QCOMPARE(callsText(), QString());
    }

    void withoutBuffer()
    {
        DriverFixture fixture;
        setRecipe(fixture, "1 D_W 5 1 1", 0);
        driver.rcpBuffer = nullptr;
        deliverRecipeBlock(makeWidths(16, 16), readAnswer("1234"), kDataPos);
        QCOMPARE(bufferText(fixture.recipe), QByteArray());
    }
};

QTEST_APPLESS_MAIN(TestRecipeDeliver)
#include "test_recipe_deliver.moc"
