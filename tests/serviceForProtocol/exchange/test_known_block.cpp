#include <QtTest/QtTest>

#include "serviceForProtocol/cache/expected_blocks.h"
#include "serviceForProtocol/exchange/known_block.h"
#include "support/host_history.h"

// Each history ends with the block's read due, and the answer "1" is tried.
static const QByteArray words("watch D_W:10*5; ");
static const QByteArray bits("watch M_bit:48*3; ");
static const QByteArray contacts("watch TX:4*3; ");
static const Case<QByteArray, bool> kLastAnswerOnceMore[] = {
    {"never asked", words, false},
    {"once", words + "poll 1", true},
    {"twice", words + "poll 1; poll 1", true},
    {"another one last", words + "poll 1; poll 2", false},
    {"back again", words + "poll 1; poll 2; poll 1", true},
    {"contacts", contacts + "poll 1", true},
    {"contacts, another one last", contacts + "poll 1; poll 2", false},

    {"word written", words + "poll 1; write D_W:11*1=5; poll 0", false},
    {"word written, then read", words + "poll 1; write D_W:11*1=5; poll 0; poll 1", true},
    {"word written, then read otherwise",
     words + "poll 1; write D_W:11*1=5; poll 0; poll 3; poll 1", true},
    {"word written at the second try", words + "poll 1; write D_W:11*1=5; poll 0 check; poll 0",
     false},
    {"write given up",
     words + "poll 1; write D_W:11*1=5; poll 0 check; poll 0 short; poll 0 silent", true},
    {"write of the cache only", "start 60 cache-only; " + words + "poll 1; write D_W:11*1=5", true},
    {"bit written", bits + "poll 1; write M_bit:49*1=1; poll 0", false},
    {"bit given up", bits + "poll 1; write M_bit:49*1=1; poll 0 check; poll 0 check; poll 0 check",
     true},
    {"bits written through their word", bits + "poll 1; write M_bit:48*3=5; poll 7; poll 0", false},
    {"bit of a data register", words + "poll 1; write D_bit:163*1=1; poll 7; poll 0", false},
    {"contact written", contacts + "poll 1; write TX:4*1=1; poll 0", false},
    {"written from within the callback",
     words + "within write D_W:12*1=5; poll 2; poll 0; poll 1; poll 1", true},
    {"written from within the callback, and settled",
     words + "within write D_W:12*1=5; poll 1; poll 0", false},

    {"one-off read that changes a unit", words + "poll 1; once D_W:13*1; poll 3", false},
    {"one-off read that changes none", words + "poll 1; once D_W:10*5; poll 1", true},
    {"one-off read that changes the place of a bit", bits + "poll 1; once M_W:3*1; poll 13", false},
    {"one-off read of a contact", contacts + "poll 1; once TX:5*1; poll 1", false},
    {"one-off read given up",
     words + "poll 1; once D_W:13*1; poll 3 check; poll 3 check; poll 3 check", true},

    {"another block changes", words + "watch D_W:10*5 D_W:500*2; poll 1; poll 1; poll 1; poll 2",
     true},
    {"overlapping block", "start 4; watch D_W:10*4 D_W:12*4; poll 1; poll 1; poll 1; poll 2",
     false},
    {"overlapping block says the same",
     "start 4; watch D_W:10*4 D_W:12*4; poll 1; poll 1; poll 1; poll 1", false},

    {"blocks anew", words + "poll 1; " + words, false},
    {"blocks anew, then read", words + "poll 1; " + words + "poll 1", true},
    {"other blocks", words + "poll 1; watch D_W:10*4", false},
    {"blocks anew, the old read in flight", words + "poll 1; send; " + words + "answer 1", false},
    {"blocks anew, the old read in flight changes units",
     words + "poll 1; send; " + words + "answer 2", false},
    {"blocks anew, the old read in flight twice",
     words + "poll 1; send; " + words + "answer 1 check; answer 1", false},
    {"start anew", words + "poll 1; start 60; " + words, false},
    {"start anew with a read in flight", words + "poll 1; send; start 60; " + words + "answer 1",
     false},

    {"recipe read", words + "poll 1; items D_W:10*2; ask read; poll 5", true},
    {"recipe write", words + "poll 1; items D_W:10*2; ask write; poll 0", true},
    {"recipe bits read as words",
     words + "poll 1; items D_bit:10*2; ask write; poll 33; poll 0; poll 1; poll 1", true},
    {"recipe bits that change a unit",
     words + "poll 1; items D_bit:10*2; ask write; poll 30; poll 0", false},

    {"bad answer between", words + "poll 1; poll 2 check; poll 1 short", true},
    {"given up between", words + "poll 1; poll 2 check; poll 1 short; poll 1 silent", true},
    {"lower case", words + "poll 1; poll 1 lower", false},
    {"lower case, then upper", words + "poll 1; poll 1 lower; poll 1", true},
    {"another station's number", words + "poll 1; poll 1 foreign", false},

    {"the same answer from within the callback", words + "poll 1; within answer 1; poll 2; poll 1",
     true},
    {"an answer from within the callback", words + "poll 1; within answer 3; poll 2", false},
    {"this answer from within the callback of another", words + "within answer 1; poll 2", false},
    {"an answer from within, then a second one",
     words + "poll 1; within answer 3 & send & answer 1; poll 2", false},
    {"a write and its answer from within",
     words + "poll 1; within answer 2 & write D_W:14*1=5 & poll 0; poll 11", false},
    {"blocks anew from within", words + "poll 1; within " + words.left(14) + "; poll 2", false},
    {"blocks anew from within this answer", words + "within " + words.left(14) + "; poll 1", false},
    {"blocks anew and answered from within",
     words + "poll 1; within " + words.left(14) + "& answer 4 & poll 1; poll 2", false},
    {"start anew from within", words + "poll 1; within start 60 & " + words.left(14) + "; poll 2",
     false},

    {"contacts anew and answered from within",
     contacts + "poll 0; within " + contacts.left(12) + " & answer 0 & poll 1; poll 7", false},
    {"start anew from within, and blocks later",
     words + "poll 1; within start 60; poll 2; " + words, false},

    {"longest block", "start 300; watch D_W:0*255; poll 1", true},
    {"block of more words than a request can name", "start 300; watch D_W:0*256; poll 1", false},
};

static const Given<QByteArray> kRequestIsRepeated[] = {
    {"nothing", ""},
    {"long write", "write D_W:100*250=7; poll 0; "},
    {"write of values", "write D_W:10*5=7; poll 0; "},
    {"bit", "write M_bit:5*1=1; poll 0; "},
    {"read and write of a word", "write D_bit:5*9=3; poll 1; poll 0; "},
    {"pair cut short", "write D_bit:5*9=3; poll 1 check; poll 1 check; poll 1 check; "},
    {"one-off read", "once D_W:5*9; poll 1; "},
    {"contact", "once TX:5*1; poll 1; "},
    {"recipe write", "items D_W:0*200; ask write; poll 0; "},
    {"recipe read", "items D_W:0*200; ask read; poll 0; "},
    {"repeated read", "ask read; poll 1; poll 1; ask nothing; "},
    {"repeated read, values written before it",
     "write D_W:10*5=7; poll 0; poll 1; ask read; poll 1; ask nothing; "},
    {"look", "look D_W:10*5; "},
};

static const Given<int> kAbsurdBlockHarmsNoOther[] = {
    {"an answer of negative length", 0x30000000},
    {"an answer whose length wraps to a short one", 0x40000001},
    {"most", 0x7FFFFFFF},
    {"none", 0},
    {"fewer than none", -0x30000000},
};

class TestKnownBlock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastAnswerOnceMore_data() { addRows(kLastAnswerOnceMore); }
    void lastAnswerOnceMore()
    {
        const auto &row = currentRow(kLastAnswerOnceMore);
        {
            HostHistory host(HostHistory::kAsItIs);
            host.run(row.given + "; send");
            const QByteArray answer = host.answerOf(1);
            QCOMPARE(driver.sendState, static_cast<int>(kJobCyclicRead));
            QCOMPARE(isLastAnswer(answer), row.expected);
            for (int i = 0; i < sizeOf(answer); ++i) {
                QByteArray other = answer;
                other[i] = static_cast<char>(other.at(i) ^ 1);
                QVERIFY(!isLastAnswer(other));
                QVERIFY(!isLastAnswer(answer.left(i)));
            }
            QVERIFY(!isLastAnswer(answer + '0'));
        }
        compareWithForgetful(row.given + "; poll 1; poll 1; poll 1; poll 2; poll 1; poll 12");
    }

    // The frames behind each other are compared byte for byte, with what a driver builds that
    // remembers none.
    void requestIsRepeated_data() { addRows(kRequestIsRepeated); }
    void requestIsRepeated()
    {
        const auto &row = currentRow(kRequestIsRepeated);
        const QByteArray round = row.given + "poll 1; poll 1; " + row.given + "poll 1; ";
        compareWithForgetful(
            "start 300; watch D_W:10*5 M_W:3*2 2/TX:7*1; poll 1; poll 1; poll 1; " + round + round +
            "send; send");
    }

    void descriptionIsOfThisAnswer()
    {
        compareWithForgetful("watch D_W:10*5 M_W:3*2; poll 1; poll 1 short; poll 1 silent; poll 1; "
                             "poll 1 short; poll 1; poll 2 check; poll 1; poll 1");
        HostHistory host(HostHistory::kAsItIs);
        host.run("watch D_W:10*5 M_W:3*2; send");
        QString text;
        describeRequest(QByteArray(33, '0'), text);
        QCOMPARE(text, latin("1#D_W10(5)(33)"));
        describeRequest(QByteArray(32, '0'), text);
        QCOMPARE(text, latin("1#D_W10(5)(32)"));
        describeRequest(QByteArray(33, '0'), text);
        QCOMPARE(text, latin("1#D_W10(5)(33)"));
        host.run("answer 1; send");
        describeRequest(QByteArray(33, '0'), text);
        QCOMPARE(text, latin("1#M_W3(2)(33)"));
        describeRequest(QByteArray(21, '0'), text);
        QCOMPARE(text, latin("1#M_W3(2)(21)"));
    }

    void onlyWordsThatDifferAreLookedAt()
    {
        // The last digit decides which words have another value: 10 and 11 here.
        compareWithForgetful("watch D_W:10*5 D_bit:160*16; poll 11; poll 10; poll 10; poll 11; "
                             "once D_W:12*1; poll 2; poll 10; write D_W:12*1=5; poll 0; poll 11; "
                             "poll 10 lower; poll 11 foreign; poll 10");
    }

    void absurdBlockHarmsNoOther_data() { addRows(kAbsurdBlockHarmsNoOther); }
    void absurdBlockHarmsNoOther()
    {
        const auto &row = currentRow(kAbsurdBlockHarmsNoOther);
        HostHistory host(HostHistory::kAsItIs);
        QVector<MergeKey> blocks;
        blocks.append(mergeKeyOf(makeKey(1, "D_W", 0, row.given), 0));
        blocks.append(mergeKeyOf(makeKey(1, "M_W", 0, 5), 1));
        expectBlocks(blocks);
        QCOMPARE(driver.blockMemories.blocks.at(0).standsAlone, false);
        QCOMPARE(driver.blockMemories.blocks.at(1).standsAlone, true);
        QCOMPARE(driver.blockMemories.blocks.at(1).answerPlace, 0);
        QCOMPARE(sizeOf(driver.blockMemories.answers), 33);
    }

    void manyBlocksInTurn()
    {
        QByteArray history(
            "start 2; watch D_W:0*2 D_W:10*2 D_W:20*1 M_W:5*2 TX:3*1 CX:3*1 2/D_W:0*2; ");
        for (int round = 0; round < 4; ++round) {
            for (int block = 0; block < 7; ++block) {
                history += "poll " + QByteArray::number(block % 2 == round / 3 ? 1 : block) + "; ";
            }
        }
        compareWithForgetful(history);
    }
};

QTEST_APPLESS_MAIN(TestKnownBlock)
#include "test_known_block.moc"
