#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "ls_master_k_cnet/view_names.h"

class TestViewNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOfALetter_data();
    void namesOfALetter();
    void everyRegisterIsKnown();
    void lettersShareTheirText();
    void otherLettersAreUnknown_data();
    void otherLettersAreUnknown();
};

static void addViews()
{
    QTest::addColumn<int>("suffix");
    QTest::addColumn<QString>("tail");

    QTest::newRow("bit") << int(kBitView) << QString::fromLatin1("_bit");
    QTest::newRow("byte") << int(kByteView) << QString::fromLatin1("_B");
    QTest::newRow("word") << int(kWordView) << QString::fromLatin1("_W");
    QTest::newRow("double word") << int(kDoubleView) << QString::fromLatin1("_D");
    QTest::newRow("the letter alone") << int(kPlainView) << QString();
}

void TestViewNames::namesOfALetter_data()
{
    addViews();
}

void TestViewNames::namesOfALetter()
{
    QFETCH(int, suffix);
    QFETCH(QString, tail);

    const QString letter = QString::fromLatin1("M");
    QCOMPARE(makeViewNames(letter).names[suffix], letter + tail);
    QCOMPARE(makeViewNames(QString()).names[suffix], tail);
    for (const QString &name : REG_LIST) {
        const QString known = registerLetter(name);
        QCOMPARE(knownViewNames(known)->names[suffix], known + tail);
    }
}

void TestViewNames::everyRegisterIsKnown()
{
    for (const QString &name : REG_LIST) {
        const QString letter = registerLetter(name);
        QVERIFY(knownViewNames(letter) != nullptr);
        QCOMPARE(knownViewNames(letter)->letter, letter);
    }
}

// Names are recognised by the place of their letter in memory, whichever register it came from.
void TestViewNames::lettersShareTheirText()
{
    for (const QString &name : REG_LIST) {
        const QString letter = registerLetter(name);
        QCOMPARE(static_cast<const void *>(knownViewNames(letter)->letter.constData()),
                 static_cast<const void *>(letter.constData()));
    }
    QCOMPARE(static_cast<const void *>(registerLetter(QString::fromLatin1("M_W")).constData()),
             static_cast<const void *>(registerLetter(QString::fromLatin1("M_bit")).constData()));
}

void TestViewNames::otherLettersAreUnknown_data()
{
    QTest::addColumn<QString>("letter");

    QTest::newRow("no register has it") << QString::fromLatin1("Q");
    QTest::newRow("another case") << QString::fromLatin1("m");
    QTest::newRow("a whole name") << QString::fromLatin1("M_W");
    QTest::newRow("empty") << QString();
}

void TestViewNames::otherLettersAreUnknown()
{
    QFETCH(QString, letter);

    QVERIFY(knownViewNames(letter) == nullptr);
}

QTEST_APPLESS_MAIN(TestViewNames)
#include "test_view_names.moc"
