#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "ls_master_k_cnet/view_names.h"
#include "support/rows.h"

static const struct
{
    const char *what;
    int suffix;
    const char *tail;
} kNamesOfALetter[] = {
    {"bit", kBitView, "_bit"},
    {"byte", kByteView, "_B"},
    {"word", kWordView, "_W"},
    {"double word", kDoubleView, "_D"},
    {"the letter alone", kPlainView, ""},
};

static const Given<const char *> kOtherLettersAreUnknown[] = {
    {"no register has it", "Q"},
    {"another case", "m"},
    {"a whole name", "M_W"},
    {"empty", nullptr},
};

class TestViewNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfALetter_data() { addRows(kNamesOfALetter); }
    void namesOfALetter()
    {
        const auto &row = currentRow(kNamesOfALetter);
        const QString tail = latin(row.tail);
        const QString letter = latin("M");
        QCOMPARE(makeViewNames(letter).names[row.suffix], letter + tail);
        QCOMPARE(makeViewNames(QString()).names[row.suffix], tail);
        for (const QString &name : REG_LIST) {
            const QString known = registerLetter(name);
            QCOMPARE(knownViewNames(known)->names[row.suffix], known + tail);
        }
    }

    void everyRegisterIsKnown()
    {
        for (const QString &name : REG_LIST) {
            const QString letter = registerLetter(name);
            QVERIFY(knownViewNames(letter) != nullptr);
            QCOMPARE(knownViewNames(letter)->letter, letter);
        }
    }

    // Names are recognised by the place of their letter in memory, whichever register it came from.
    void lettersShareTheirText()
    {
        for (const QString &name : REG_LIST) {
            const QString letter = registerLetter(name);
            QCOMPARE(static_cast<const void *>(knownViewNames(letter)->letter.constData()),
                     static_cast<const void *>(letter.constData()));
        }
        QCOMPARE(static_cast<const void *>(registerLetter(latin("M_W")).constData()),
                 static_cast<const void *>(registerLetter(latin("M_bit")).constData()));
    }

    void otherLettersAreUnknown_data() { addRows(kOtherLettersAreUnknown); }
    void otherLettersAreUnknown()
    {
        const auto &row = currentRow(kOtherLettersAreUnknown);
        QVERIFY(knownViewNames(latin(row.given)) == nullptr);
    }
};

QTEST_APPLESS_MAIN(TestViewNames)
#include "test_view_names.moc"
