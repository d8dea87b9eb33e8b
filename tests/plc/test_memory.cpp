#include "plc/memory.h"

#include <QtTest>

using namespace plc;

class TestMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes_data();
    void sizes();
    void wordsKeepTheirValue();
    void outside_data();
    void outside();
    void bitsArePartsOfWords();
    void contactsAreNoPartsOfWords();
    void pointsReachTheSame_data();
    void pointsReachTheSame();
};

void TestMemory::sizes_data()
{
    QTest::addColumn<char>("device");
    QTest::addColumn<int>("full");
    QTest::addColumn<int>("k120s");
    QTest::addColumn<int>("contacts");
    QTest::newRow("P") << 'P' << 256 << 64 << 0;
    QTest::newRow("M") << 'M' << 256 << 192 << 0;
    QTest::newRow("K") << 'K' << 256 << 32 << 0;
    QTest::newRow("L") << 'L' << 256 << 64 << 0;
    QTest::newRow("F") << 'F' << 256 << 64 << 0;
    QTest::newRow("T") << 'T' << 256 << 256 << 256;
    QTest::newRow("C") << 'C' << 256 << 256 << 256;
    QTest::newRow("D") << 'D' << 10000 << 5000 << 0;
    QTest::newRow("no device S") << 'S' << 0 << 0 << 0;
    QTest::newRow("lower case is none") << 'd' << 0 << 0 << 0;
}

void TestMemory::sizes()
{
    QFETCH(char, device);
    QFETCH(int, full);
    QFETCH(int, k120s);
    for (const Model model : {Model::Full, Model::K120s}) {
        Memory memory(model);
        const int words = model == Model::Full ? full : k120s;
        QCOMPARE(memory.wordCount(device), words);
        QTEST(memory.contactCount(device), "contacts");
        QCOMPARE(memory.word(device, words - 1).has_value(), words > 0);
        QCOMPARE(memory.setWord(device, words - 1, 1), words > 0);
        QCOMPARE(memory.word(device, words).has_value(), false);
        QCOMPARE(memory.setWord(device, words, 1), false);
    }
}

void TestMemory::wordsKeepTheirValue()
{
    Memory memory;
    QCOMPARE(*memory.word('D', 9999), quint16(0));
    QVERIFY(memory.setWord('D', 9999, 0xBEEF));
    QVERIFY(memory.setWord('M', 9, 0x1234));
    QCOMPARE(*memory.word('D', 9999), quint16(0xBEEF));
    QCOMPARE(*memory.word('M', 9), quint16(0x1234));
    QCOMPARE(*memory.word('K', 9), quint16(0));
}

void TestMemory::outside_data()
{
    QTest::addColumn<char>("device");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("address");
    QTest::newRow("negative word") << 'D' << int(PointKind::Word) << -1;
    QTest::newRow("negative bit") << 'M' << int(PointKind::Bit) << -1;
    QTest::newRow("bit beyond") << 'M' << int(PointKind::Bit) << 256 * 16;
    QTest::newRow("negative contact") << 'T' << int(PointKind::Contact) << -1;
    QTest::newRow("contact beyond") << 'T' << int(PointKind::Contact) << 256;
    QTest::newRow("contact of a relay") << 'M' << int(PointKind::Contact) << 0;
    QTest::newRow("device unknown") << 'Z' << int(PointKind::Word) << 0;
    QTest::newRow("far beyond") << 'D' << int(PointKind::Word) << 0x7FFFFFFF;
}

void TestMemory::outside()
{
    QFETCH(char, device);
    QFETCH(int, kind);
    QFETCH(int, address);
    Memory memory;
    const Point point{device, static_cast<PointKind>(kind), address};
    QCOMPARE(memory.value(point).has_value(), false);
    QCOMPARE(memory.setValue(point, 1), false);
}

void TestMemory::bitsArePartsOfWords()
{
    Memory memory;
    QVERIFY(memory.setWord('M', 3, 0x8001));
    QCOMPARE(*memory.bit('M', 3, 0), true);
    QCOMPARE(*memory.bit('M', 3, 1), false);
    QCOMPARE(*memory.bit('M', 3, 15), true);
    QVERIFY(memory.setBit('M', 3, 5, true));
    QVERIFY(memory.setBit('M', 3, 15, false));
    QCOMPARE(*memory.word('M', 3), quint16(0x0021));
    QCOMPARE(memory.bit('M', 3, 16).has_value(), false);
    QCOMPARE(memory.bit('M', 3, -1).has_value(), false);
    QCOMPARE(memory.setBit('M', 3, 16, true), false);
    QCOMPARE(memory.setBit('M', 256, 0, true), false);
}

void TestMemory::contactsAreNoPartsOfWords()
{
    Memory memory;
    QVERIFY(memory.setContact('T', 7, true));
    QCOMPARE(*memory.contact('T', 7), true);
    QCOMPARE(*memory.contact('C', 7), false);
    QCOMPARE(*memory.word('T', 7), quint16(0));
    QVERIFY(memory.setWord('C', 7, 0xFFFF));
    QCOMPARE(*memory.contact('C', 7), false);
}

void TestMemory::pointsReachTheSame_data()
{
    QTest::addColumn<char>("device");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("address");
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("read");
    QTest::newRow("word") << 'D' << int(PointKind::Word) << 100 << 0xBEEF << 0xBEEF;
    QTest::newRow("bit 3.5") << 'M' << int(PointKind::Bit) << 53 << 1 << 1;
    QTest::newRow("bit: all but 0 is 1") << 'M' << int(PointKind::Bit) << 53 << 0x100 << 1;
    QTest::newRow("contact") << 'C' << int(PointKind::Contact) << 255 << 2 << 1;
}

void TestMemory::pointsReachTheSame()
{
    QFETCH(char, device);
    QFETCH(int, kind);
    QFETCH(int, address);
    QFETCH(int, written);
    QFETCH(int, read);
    Memory memory;
    const Point point{device, static_cast<PointKind>(kind), address};
    QVERIFY(memory.setValue(point, static_cast<quint16>(written)));
    QCOMPARE(int(*memory.value(point)), read);
    if (point.kind == PointKind::Word) {
        QCOMPARE(int(*memory.word(device, address)), read);
    } else if (point.kind == PointKind::Bit) {
        QCOMPARE(*memory.bit(device, 3, 5), true);
    } else {
        QCOMPARE(*memory.contact(device, address), true);
    }
    QVERIFY(memory.setValue(point, 0));
    QCOMPARE(int(*memory.value(point)), 0);
}

QTEST_APPLESS_MAIN(TestMemory)
#include "test_memory.moc"
