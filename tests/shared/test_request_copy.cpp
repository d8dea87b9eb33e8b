#include <QtTest/QtTest>

#include "shared/request_copy.h"
#include "support/area_helpers.h"

static const QString text = latin("M_bit");

static const struct
{
    const char *what;
    QString to, from;
} kTextBecomesTheOther[] = {
    {"the same", text, text},
    {"equal, elsewhere", latin("M_bit"), text},
    {"another one", latin("D_W"), text},
    {"its beginning, in the same place", QString::fromRawData(text.constData(), 2), text},
    {"from nothing", QString(), text},
    {"to nothing", text, QString()},
    {"to an empty one", text, latin("")},
    {"from an empty one to nothing", latin(""), QString()},
    {"from nothing to an empty one", QString(), latin("")},
};

static VARIABLE numberedItem(int number, char value)
{
    VARIABLE item = makeItem(number + 1, number == 0 ? "D_W" : "M_bit", number + 2, number + 3,
                             QByteArray(1024, value));
    item.opKind = number + 4;
    return item;
}

class TestRequestCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textBecomesTheOther_data() { addRows(kTextBecomesTheOther); }
    void textBecomesTheOther()
    {
        const auto &row = currentRow(kTextBecomesTheOther);
        QString to = row.to;
        shareText(to, row.from);
        QCOMPARE(to, row.from);
        QCOMPARE(to.isNull(), row.from.isNull());
        QVERIFY(to.constData() == row.from.constData() || row.from.isNull());
    }

    void rangeIsCopiedWithoutItsValues()
    {
        VARIABLE to = numberedItem(0, '\x11');
        const VARIABLE from = numberedItem(10, '\x22');
        copyRange(to, from);
        QCOMPARE(itemText(to), itemText(from));
        QCOMPARE(to.opKind, 14);
        QCOMPARE(bytesOf(to.data, 1024), QByteArray(1024, '\x11'));
    }

    void wholeFrameIsCopied()
    {
        const FRAME_PRO from = numberedFrame(1, 0x44, numberedItem(10, '\x22'));
        FRAME_PRO to = numberedFrame(6, 0xEE, numberedItem(0, '\x11'));
        copyFrame(to, from);
        QCOMPARE(bytesOf(to.sendBuf, 1024), QByteArray(1024, '\x44'));
        QCOMPARE(numbersText(to), latin("1 2 3 4 5"));
        QCOMPARE(itemText(to.var), itemText(from.var));
        QCOMPARE(to.var.opKind, 14);
        QCOMPARE(bytesOf(to.var.data, 1024), QByteArray(1024, '\x22'));
    }
};

QTEST_APPLESS_MAIN(TestRequestCopy)
#include "test_request_copy.moc"
