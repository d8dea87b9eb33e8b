#include <climits>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_series.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static QString joined(const QVector<int> &numbers)
{
    QStringList texts;
    for (const int number : numbers) {
        texts.append(QString::number(number));
    }
    return texts.join(QLatin1String(" "));
}

static QString joined(const QVector<QString> &texts)
{
    QStringList list;
    for (const QString &text : texts) {
        list.append(text);
    }
    return list.join(QLatin1String(" "));
}

static const struct
{
    const char *what, *name;
    int startAddr, count, interval, result;
    const char *numbers, *texts;
} kSeriesIsMade[] = {
    // clang-format off
    {"clamped at the top", "D_W", 9990, 5, 3, 2, "9990 9993 9996 9999 9999", "9990 9993 9996 9999 9999"},
    {"ends at the top", "D_W", 9990, 4, 3, 1, "9990 9993 9996 9999", "9990 9993 9996 9999"},
    {"clamped from the start", "K_W", 32, 2, 1, 2, "31 31", "31 31"},
    {"one copy", "M_W", 7, 1, 5, 1, "7", "7"},
    {"no copies", "D_W", 0, 0, 1, 1, "", ""},
    {"negative count", "D_W", 0, -5, 1, 1, "", ""},
    {"bottom of the count", "D_W", 99999, INT_MIN, 1, 1, "", ""},
    {"interval of a word", "D_W", 10, 3, -1, 1, "10 11 12", "10 11 12"},
    {"interval of a double word", "D_W", 10, 3, -2, 1, "10 12 14", "10 12 14"},
    {"interval of 0", "D_W", 10, 3, 0, 1, "10 11 12", "10 11 12"},
    {"interval of -3", "D_W", 10, 3, -3, 1, "10 11 12", "10 11 12"},
    {"bottom of the interval", "D_W", 10, 2, INT_MIN, 1, "10 11", "10 11"},
    {"top of the interval", "D_W", 10, 3, INT_MAX, 2, "10 9999 9999", "10 9999 9999"},
    {"bits", "M_bit", 14, 3, 1, 1, "14 15 16", "0.14 0.15 1.0"},
    {"bits, word by word", "M_bit", 5, 3, 16, 1, "5 21 37", "0.5 1.5 2.5"},
    {"bits, clamped", "P_bit", 4094, 3, 1, 2, "4094 4095 4095", "255.14 255.15 255.15"},
    {"bits, interval of a word", "M_bit", 14, 3, -1, 1, "14 15 16", "0.14 0.15 1.0"},
    {"bits, interval of a double word", "D_bit", 159998, 3, -2, 2, "159998 159999 159999", "9999.14 9999.15 9999.15"},
    {"contacts", "TX", 254, 3, 1, 2, "254 255 255", "254 255 255"},
    {"contacts, interval of a word", "TX", 1, 2, -1, 1, "1 2", "1 2"},
    {"contacts, interval of a double word", "CX", 1, 2, -2, 1, "1 2", "1 2"},
    {"negative start is written unsigned", "D_W", -2, 3, 1, 1, "-2 -1 0", "4294967294 4294967295 0"},
    {"negative start of bits", "M_bit", -17, 2, 16, 1, "-17 -1", "-1.-1 0.-1"},
    {"top of the start", "D_W", INT_MAX, 2, INT_MAX, 2, "9999 9999", "9999 9999"},
    // clang-format on
};

static const struct
{
    const char *what, *name, *format;
    int startAddr, interval, result;
    const char *texts; // three copies, highest address 1000 as "top"
} kTextFollowsTheFormat[] = {
    {"decimal", "D_W", "DDDD", 8, 1, 1, "8 9 10"},
    {"hexadecimal in lower case", "D_W", "HHHH", 9, 1, 1, "9 a b"},
    {"octal", "D_W", "OOOO", 7, 1, 1, "7 10 11"},
    {"one letter", "D_W", "H", 31, 1, 1, "1f 20 21"},
    {"clamped text", "D_W", "HHHH", 999, 1, 2, "3e7 3e8 top"},
    {"word.bit", "M_bit", "DDD.dd", 15, 1, 1, "0.15 1.0 1.1"},
    {"word.bit without a text ends the series", "D_W", "DDD.dd", 15, 1, 2, ""},
    {"the end comes before a clamp", "D_W", "DDD.dd", 999, 500, 2, ""},
    {"clamped copies need no text", "D_W", "DDD.dd", 1001, 1, 2, "top top top"},
    {"unknown name, interval of a word", "Q_W", "DDDD", 5, -1, 1, "5 6 7"},
    {"unknown name, interval of a double word", "Q_W", "DDDD", 5, -2, 1, "5 6 7"},
    {"unknown name, interval in units", "Q_W", "DDDD", 5, 4, 1, "5 9 13"},
};

static const struct
{
    const char *what;
    int interval, unitBits, wordBits, step;
} kStepFollowsTheInterval[] = {
    {"word in 8 bits", -1, 8, 8, 2},
    {"word in 16 bits", -1, 16, 16, 1},
    {"word in 32 bits", -1, 32, 32, 1},
    {"double word in 8 bits", -2, 8, 8, 4},
    {"double word in 16 bits", -2, 16, 16, 2},
    {"double word in 32 bits", -2, 32, 32, 1},
    {"word in bits of a word", -1, 1, 16, 1},
    {"double word in bits of a word", -2, 1, 16, 1},
    {"word in contacts", -1, 1, 1, 1},
    {"double word in contacts", -2, 1, 1, 1},
    {"word, unknown width", -1, 16, 0, 1},
    {"double word, unknown width", -2, 16, 0, 1},
    {"units", 5, 16, 16, 5},
    {"units of 8 bits", 5, 8, 8, 5},
    {"bits", 16, 1, 16, 16},
    {"0", 0, 16, 16, 1},
    {"-3", -3, 8, 8, 1},
    {"bottom of the numbers", INT_MIN, 8, 8, 1},
    {"top of the numbers", INT_MAX, 16, 16, INT_MAX},
};

class TestAddressSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seriesIsMade_data() { addRows(kSeriesIsMade); }
    void seriesIsMade()
    {
        const auto &row = currentRow(kSeriesIsMade);
        QString name = latin(row.name);
        QVector<QString> texts(1, latin("before"));
        QVector<int> numbers(1, 77);
        QCOMPARE(intf_multiCopy(name, row.startAddr, row.count, row.interval, texts, numbers),
                 row.result);
        QCOMPARE(texts.first(), latin("before"));
        QCOMPARE(numbers.first(), 77);
        texts.remove(0);
        numbers.remove(0);
        QCOMPARE(joined(numbers), latin(row.numbers));
        QCOMPARE(joined(texts), latin(row.texts));
    }

    void unknownRegisterMakesNone()
    {
        QString name = latin("Q_W");
        QVector<QString> texts;
        QVector<int> numbers;

        QCOMPARE(intf_multiCopy(name, 0, 5, 1, texts, numbers), 0);
        QCOMPARE(name, latin("Q_W"));
        QVERIFY(texts.isEmpty());
        QVERIFY(numbers.isEmpty());
        QCOMPARE(intf_multiCopy(name, 0, 0, 1, texts, numbers), 0);
    }

    void textFollowsTheFormat_data() { addRows(kTextFollowsTheFormat); }
    void textFollowsTheFormat()
    {
        const auto &row = currentRow(kTextFollowsTheFormat);
        QVector<QString> texts;
        QVector<int> numbers;
        QCOMPARE(multiCp(latin(row.name), latin(row.format), row.startAddr, 3, row.interval, texts,
                         numbers, 1000, latin("top")),
                 row.result);
        QCOMPARE(joined(texts), latin(row.texts));
        QCOMPARE(sizeOf(numbers), sizeOf(texts));
    }

    void stepFollowsTheInterval_data() { addRows(kStepFollowsTheInterval); }
    void stepFollowsTheInterval()
    {
        const auto &row = currentRow(kStepFollowsTheInterval);
        QCOMPARE(seriesStep(row.interval, row.unitBits, row.wordBits), row.step);
    }

    // A host's slip must not take all memory of the panel.
    void endlessSeriesEnds()
    {
        QString name = latin("D_W");
        QVector<QString> texts;
        QVector<int> numbers;

        QCOMPARE(intf_multiCopy(name, 9999, INT_MAX, 1, texts, numbers), 2);
        QCOMPARE(sizeOf(numbers), 1000000);
        QCOMPARE(sizeOf(texts), 1000000);
        numbers.clear();
        texts.clear();
        QCOMPARE(intf_multiCopy(name, 9999, kMaxCopies, 1, texts, numbers), 2);
        QCOMPARE(sizeOf(numbers), 1000000);
    }
};

QTEST_APPLESS_MAIN(TestAddressSeries)
#include "test_address_series.moc"
