#include <climits>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "serviceForProtocol/address/address_series.h"
#include "support/driver_fixture.h"

class TestAddressSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seriesIsMade_data();
    void seriesIsMade();
    void unknownRegisterMakesNone();
    void textFollowsTheFormat_data();
    void textFollowsTheFormat();
    void stepFollowsTheInterval_data();
    void stepFollowsTheInterval();
    void endlessSeriesEnds();
};

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

void TestAddressSeries::seriesIsMade_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<QString>("texts");

    // clang-format off
    QTest::newRow("clamped at the top") << "D_W" << 9990 << 5 << 3 << 2 << "9990 9993 9996 9999 9999" << "9990 9993 9996 9999 9999";
    QTest::newRow("ends at the top") << "D_W" << 9990 << 4 << 3 << 1 << "9990 9993 9996 9999" << "9990 9993 9996 9999";
    QTest::newRow("clamped from the start") << "K_W" << 32 << 2 << 1 << 2 << "31 31" << "31 31";
    QTest::newRow("one copy") << "M_W" << 7 << 1 << 5 << 1 << "7" << "7";
    QTest::newRow("no copies") << "D_W" << 0 << 0 << 1 << 1 << "" << "";
    QTest::newRow("negative count") << "D_W" << 0 << -5 << 1 << 1 << "" << "";
    QTest::newRow("bottom of the count") << "D_W" << 99999 << INT_MIN << 1 << 1 << "" << "";
    QTest::newRow("interval of a word") << "D_W" << 10 << 3 << -1 << 1 << "10 11 12" << "10 11 12";
    QTest::newRow("interval of a double word") << "D_W" << 10 << 3 << -2 << 1 << "10 12 14" << "10 12 14";
    QTest::newRow("interval of 0") << "D_W" << 10 << 3 << 0 << 1 << "10 11 12" << "10 11 12";
    QTest::newRow("interval of -3") << "D_W" << 10 << 3 << -3 << 1 << "10 11 12" << "10 11 12";
    QTest::newRow("bottom of the interval") << "D_W" << 10 << 2 << INT_MIN << 1 << "10 11" << "10 11";
    QTest::newRow("top of the interval") << "D_W" << 10 << 3 << INT_MAX << 2 << "10 9999 9999" << "10 9999 9999";
    QTest::newRow("bits") << "M_bit" << 14 << 3 << 1 << 1 << "14 15 16" << "0.14 0.15 1.0";
    QTest::newRow("bits, word by word") << "M_bit" << 5 << 3 << 16 << 1 << "5 21 37" << "0.5 1.5 2.5";
    QTest::newRow("bits, clamped") << "P_bit" << 4094 << 3 << 1 << 2 << "4094 4095 4095" << "255.14 255.15 255.15";
    QTest::newRow("bits, interval of a word") << "M_bit" << 14 << 3 << -1 << 1 << "14 15 16" << "0.14 0.15 1.0";
    QTest::newRow("bits, interval of a double word") << "D_bit" << 159998 << 3 << -2 << 2 << "159998 159999 159999" << "9999.14 9999.15 9999.15";
    QTest::newRow("contacts") << "TX" << 254 << 3 << 1 << 2 << "254 255 255" << "254 255 255";
    QTest::newRow("contacts, interval of a word") << "TX" << 1 << 2 << -1 << 1 << "1 2" << "1 2";
    QTest::newRow("contacts, interval of a double word") << "CX" << 1 << 2 << -2 << 1 << "1 2" << "1 2";
    QTest::newRow("negative start is written unsigned") << "D_W" << -2 << 3 << 1 << 1 << "-2 -1 0" << "4294967294 4294967295 0";
    QTest::newRow("negative start of bits") << "M_bit" << -17 << 2 << 16 << 1 << "-17 -1" << "-1.-1 0.-1";
    QTest::newRow("top of the start") << "D_W" << INT_MAX << 2 << INT_MAX << 2 << "9999 9999" << "9999 9999";
    // clang-format on
}

void TestAddressSeries::seriesIsMade()
{
    QFETCH(QString, name);
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, interval);

    QVector<QString> texts(1, QString::fromLatin1("before"));
    QVector<int> numbers(1, 77);
    QTEST(intf_multiCopy(name, startAddr, count, interval, texts, numbers), "result");
    QCOMPARE(texts.first(), QString::fromLatin1("before"));
    QCOMPARE(numbers.first(), 77);
    texts.remove(0);
    numbers.remove(0);
    QTEST(joined(numbers), "numbers");
    QTEST(joined(texts), "texts");
}

void TestAddressSeries::unknownRegisterMakesNone()
{
    QString name = QString::fromLatin1("Q_W");
    QVector<QString> texts;
    QVector<int> numbers;

    QCOMPARE(intf_multiCopy(name, 0, 5, 1, texts, numbers), 0);
    QCOMPARE(name, QString::fromLatin1("Q_W"));
    QVERIFY(texts.isEmpty());
    QVERIFY(numbers.isEmpty());
    QCOMPARE(intf_multiCopy(name, 0, 0, 1, texts, numbers), 0);
}

void TestAddressSeries::textFollowsTheFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("texts"); // three copies, highest address 1000 as "top"

    // clang-format off
    QTest::newRow("decimal") << "D_W" << "DDDD" << 8 << 1 << 1 << "8 9 10";
    QTest::newRow("hexadecimal in lower case") << "D_W" << "HHHH" << 9 << 1 << 1 << "9 a b";
    QTest::newRow("octal") << "D_W" << "OOOO" << 7 << 1 << 1 << "7 10 11";
    QTest::newRow("one letter") << "D_W" << "H" << 31 << 1 << 1 << "1f 20 21";
    QTest::newRow("clamped text") << "D_W" << "HHHH" << 999 << 1 << 2 << "3e7 3e8 top";
    QTest::newRow("word.bit") << "M_bit" << "DDD.dd" << 15 << 1 << 1 << "0.15 1.0 1.1";
    QTest::newRow("word.bit without a text ends the series") << "D_W" << "DDD.dd" << 15 << 1 << 2 << "";
    QTest::newRow("the end comes before a clamp") << "D_W" << "DDD.dd" << 999 << 500 << 2 << "";
    QTest::newRow("clamped copies need no text") << "D_W" << "DDD.dd" << 1001 << 1 << 2 << "top top top";
    QTest::newRow("unknown name, interval of a word") << "Q_W" << "DDDD" << 5 << -1 << 1 << "5 6 7";
    QTest::newRow("unknown name, interval of a double word") << "Q_W" << "DDDD" << 5 << -2 << 1 << "5 6 7";
    QTest::newRow("unknown name, interval in units") << "Q_W" << "DDDD" << 5 << 4 << 1 << "5 9 13";
    // clang-format on
}

void TestAddressSeries::textFollowsTheFormat()
{
    QFETCH(QString, name);
    QFETCH(QString, format);
    QFETCH(int, startAddr);
    QFETCH(int, interval);

    QVector<QString> texts;
    QVector<int> numbers;
    QTEST(multiCp(name, format, startAddr, 3, interval, texts, numbers, 1000,
                  QString::fromLatin1("top")),
          "result");
    QTEST(joined(texts), "texts");
    QCOMPARE(static_cast<int>(numbers.size()), static_cast<int>(texts.size()));
}

void TestAddressSeries::stepFollowsTheInterval_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("unitBits");
    QTest::addColumn<int>("wordBits");
    QTest::addColumn<int>("step");

    QTest::newRow("word in 8 bits") << -1 << 8 << 8 << 2;
    QTest::newRow("word in 16 bits") << -1 << 16 << 16 << 1;
    QTest::newRow("word in 32 bits") << -1 << 32 << 32 << 1;
    QTest::newRow("double word in 8 bits") << -2 << 8 << 8 << 4;
    QTest::newRow("double word in 16 bits") << -2 << 16 << 16 << 2;
    QTest::newRow("double word in 32 bits") << -2 << 32 << 32 << 1;
    QTest::newRow("word in bits of a word") << -1 << 1 << 16 << 1;
    QTest::newRow("double word in bits of a word") << -2 << 1 << 16 << 1;
    QTest::newRow("word in contacts") << -1 << 1 << 1 << 1;
    QTest::newRow("double word in contacts") << -2 << 1 << 1 << 1;
    QTest::newRow("word, unknown width") << -1 << 16 << 0 << 1;
    QTest::newRow("double word, unknown width") << -2 << 16 << 0 << 1;
    QTest::newRow("units") << 5 << 16 << 16 << 5;
    QTest::newRow("units of 8 bits") << 5 << 8 << 8 << 5;
    QTest::newRow("bits") << 16 << 1 << 16 << 16;
    QTest::newRow("0") << 0 << 16 << 16 << 1;
    QTest::newRow("-3") << -3 << 8 << 8 << 1;
    QTest::newRow("bottom of the numbers") << INT_MIN << 8 << 8 << 1;
    QTest::newRow("top of the numbers") << INT_MAX << 16 << 16 << INT_MAX;
}

void TestAddressSeries::stepFollowsTheInterval()
{
    QFETCH(int, interval);
    QFETCH(int, unitBits);
    QFETCH(int, wordBits);

    QTEST(seriesStep(interval, unitBits, wordBits), "step");
}

// A host's slip must not take all memory of the panel.
void TestAddressSeries::endlessSeriesEnds()
{
    QString name = QString::fromLatin1("D_W");
    QVector<QString> texts;
    QVector<int> numbers;

    QCOMPARE(intf_multiCopy(name, 9999, INT_MAX, 1, texts, numbers), 2);
    QCOMPARE(static_cast<int>(numbers.size()), 1000000);
    QCOMPARE(static_cast<int>(texts.size()), 1000000);
    numbers.clear();
    texts.clear();
    QCOMPARE(intf_multiCopy(name, 9999, kMaxCopies, 1, texts, numbers), 2);
    QCOMPARE(static_cast<int>(numbers.size()), 1000000);
}

QTEST_APPLESS_MAIN(TestAddressSeries)
#include "test_address_series.moc"
