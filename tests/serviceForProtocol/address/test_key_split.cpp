#include <climits>
#include <cstring>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "serviceForProtocol/address/key_split.h"
#include "support/driver_fixture.h"

class TestKeySplit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyIsCutIntoPieces_data();
    void keyIsCutIntoPieces();
    void pieceKeepsTheOtherFields();
    void valuesFollowTheirPiece_data();
    void valuesFollowTheirPiece();
    void valuesStayInOtherModes_data();
    void valuesStayInOtherModes();
    void shortKeyKeepsItsValues();
    void piecesAreAppended();
};

// Value byte i is i % 251 + 1, so that no byte is 0 and neighbours of any distance differ.
static unsigned char valueAt(int i)
{
    return static_cast<unsigned char>(i % 251 + 1);
}

static KEY_ADDRESS filledKey(int startAddr, int count, int bitFlag)
{
    KEY_ADDRESS key = makeKey(1, "D_W", startAddr, count, bitFlag);
    for (int i = 0; i < kValueAreaSize; ++i) {
        key.data[i] = valueAt(i);
    }
    return key;
}

static QString described(const QList<KEY_ADDRESS> &pieces)
{
    QStringList texts;
    for (const KEY_ADDRESS &piece : pieces) {
        texts.append(QString::number(piece.startAddr) + QLatin1Char('*') +
                     QString::number(piece.count));
    }
    return texts.join(QLatin1String(" "));
}

void TestKeySplit::keyIsCutIntoPieces_data()
{
    QTest::addColumn<int>("startAddr");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("maxLen");
    QTest::addColumn<QString>("pieces");

    // clang-format off
    QTest::newRow("with a remainder") << 0 << 10 << 4 << "0*4 4*4 8*2";
    QTest::newRow("without a remainder") << 100 << 8 << 4 << "100*4 104*4";
    QTest::newRow("as long as a piece") << 100 << 4 << 4 << "100*4";
    QTest::newRow("one more than a piece") << 100 << 5 << 4 << "100*4 104*1";
    QTest::newRow("shorter than a piece") << 100 << 3 << 4 << "100*3";
    QTest::newRow("pieces of one") << 7 << 3 << 1 << "7*1 8*1 9*1";
    QTest::newRow("no units") << 7 << 0 << 4 << "7*0";
    QTest::newRow("negative count") << 7 << -3 << 4 << "7*-3";
    QTest::newRow("pieces of nothing") << 7 << 3 << 0 << "";
    QTest::newRow("pieces of less than nothing") << 7 << 3 << -4 << "";
    QTest::newRow("bottom of the limit") << 7 << -3 << INT_MIN << "";
    QTest::newRow("top of the limit") << 7 << INT_MAX << INT_MAX << "7*2147483647";
    QTest::newRow("huge pieces") << 0 << INT_MAX << 1073741824 << "0*1073741824 1073741824*1073741823";
    QTest::newRow("negative start") << -6 << 10 << 4 << "-6*4 -2*4 2*2";
    // clang-format on
}

void TestKeySplit::keyIsCutIntoPieces()
{
    QFETCH(int, startAddr);
    QFETCH(int, count);
    QFETCH(int, maxLen);

    for (int mode = 0; mode < 3; ++mode) {
        QList<KEY_ADDRESS> out;
        groupingKey(filledKey(startAddr, count, 0), maxLen, out, mode);
        QTEST(described(out), "pieces");
    }
}

static QString otherFields(const KEY_ADDRESS &key)
{
    return QString::fromLatin1("%1 %2 %3 %4 %5 %6 %7")
        .arg(key.keyText, QString::number(key.keyA), QString::number(key.keyB),
             QString::number(key.stationNo), key.regName, key.addrText,
             QString::number(key.bitFlag));
}

void TestKeySplit::pieceKeepsTheOtherFields()
{
    KEY_ADDRESS key = filledKey(32, 9, -1);
    key.keyText = QLatin1String("text");
    key.keyA = 11;
    key.keyB = 22;
    key.stationNo = 5;
    key.addrText = QLatin1String("2.0");
    QList<KEY_ADDRESS> out;
    groupingKey(key, 4, out, 1);

    QCOMPARE(static_cast<int>(out.size()), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(otherFields(out.at(i)), QString::fromLatin1("text 11 22 5 D_W 2.0 -1"));
    }
    QCOMPARE(key.startAddr, 32);
    QCOMPARE(key.count, 9);
}

void TestKeySplit::valuesFollowTheirPiece_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("maxLen");
    QTest::addColumn<int>("bitFlag");
    QTest::addColumn<int>("bytesPerUnit");

    QTest::newRow("words") << 10 << 4 << 0 << 2;
    QTest::newRow("bits") << 10 << 4 << -1 << 1;
    QTest::newRow("a single bit is left") << 9 << 4 << -1 << 1;
    QTest::newRow("any other flag means words") << 10 << 4 << 1 << 2;
    QTest::newRow("another negative flag, too") << 10 << 4 << -2 << 2;
    QTest::newRow("words of the whole area") << 512 << 60 << 0 << 2;
    QTest::newRow("bits of the whole area") << 1024 << 480 << -1 << 1;
    QTest::newRow("words beyond the area") << 1000 << 400 << 0 << 2;
    QTest::newRow("bits beyond the area") << 3000 << 900 << -1 << 1;
    QTest::newRow("pieces longer than the area") << 1300 << 600 << 0 << 2;
    QTest::newRow("far beyond the area") << 100000 << 30000 << 0 << 2;
}

void TestKeySplit::valuesFollowTheirPiece()
{
    QFETCH(int, count);
    QFETCH(int, maxLen);
    QFETCH(int, bitFlag);
    QFETCH(int, bytesPerUnit);

    QList<KEY_ADDRESS> out;
    groupingKey(filledKey(0, count, bitFlag), maxLen, out, 1);
    QCOMPARE(static_cast<int>(out.size()), (count + maxLen - 1) / maxLen);
    for (int k = 0; k < out.size(); ++k) {
        const int own = qMin<int>(out.at(k).count * bytesPerUnit, kValueAreaSize);
        const int offset = k * maxLen * bytesPerUnit;
        for (int i = 0; i < own; ++i) {
            const int source = offset + i;
            QCOMPARE(int(out.at(k).data[i]), source < kValueAreaSize ? int(valueAt(source)) : 0);
        }
        for (int i = own; i < kValueAreaSize; ++i) {
            QCOMPARE(int(out.at(k).data[i]), int(valueAt(i)));
        }
    }
}

void TestKeySplit::valuesStayInOtherModes_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("mode 0") << 0;
    QTest::newRow("mode 2") << 2;
    QTest::newRow("negative mode") << -1;
}

void TestKeySplit::valuesStayInOtherModes()
{
    QFETCH(int, mode);

    const KEY_ADDRESS key = filledKey(0, 10, 0);
    QList<KEY_ADDRESS> out;
    groupingKey(key, 4, out, mode);
    QCOMPARE(static_cast<int>(out.size()), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(std::memcmp(out.at(i).data, key.data, sizeof(key.data)), 0);
    }
}

void TestKeySplit::shortKeyKeepsItsValues()
{
    const KEY_ADDRESS key = filledKey(0, 600, 0);
    QList<KEY_ADDRESS> out;
    groupingKey(key, 600, out, 1);

    QCOMPARE(static_cast<int>(out.size()), 1);
    QCOMPARE(std::memcmp(out.at(0).data, key.data, sizeof(key.data)), 0);
}

void TestKeySplit::piecesAreAppended()
{
    QList<KEY_ADDRESS> out;
    groupingKey(filledKey(50, 2, 0), 4, out, 1);
    groupingKey(filledKey(0, 5, 0), 4, out, 1);

    QCOMPARE(described(out), QString::fromLatin1("50*2 0*4 4*1"));
}

QTEST_APPLESS_MAIN(TestKeySplit)
#include "test_key_split.moc"
