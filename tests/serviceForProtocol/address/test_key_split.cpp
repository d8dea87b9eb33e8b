#include <climits>
#include <cstring>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "serviceForProtocol/address/key_split.h"
#include "support/key_text.h"
#include "support/rows.h"

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

static const struct
{
    const char *what;
    int startAddr, count, maxLen;
    const char *pieces;
} kKeyIsCutIntoPieces[] = {
    {"with a remainder", 0, 10, 4, "0*4 4*4 8*2"},
    {"without a remainder", 100, 8, 4, "100*4 104*4"},
    {"as long as a piece", 100, 4, 4, "100*4"},
    {"one more than a piece", 100, 5, 4, "100*4 104*1"},
    {"shorter than a piece", 100, 3, 4, "100*3"},
    {"pieces of one", 7, 3, 1, "7*1 8*1 9*1"},
    {"no units", 7, 0, 4, "7*0"},
    {"negative count", 7, -3, 4, "7*-3"},
    {"pieces of nothing", 7, 3, 0, ""},
    {"pieces of less than nothing", 7, 3, -4, ""},
    {"bottom of the limit", 7, -3, INT_MIN, ""},
    {"top of the limit", 7, INT_MAX, INT_MAX, "7*2147483647"},
    {"huge pieces", 0, INT_MAX, 1073741824, "0*1073741824 1073741824*1073741823"},
    {"negative start", -6, 10, 4, "-6*4 -2*4 2*2"},
};

static const struct
{
    const char *what;
    int count, maxLen, bitFlag, bytesPerUnit;
} kValuesFollowTheirPiece[] = {
    {"words", 10, 4, 0, 2},
    {"bits", 10, 4, -1, 1},
    {"a single bit is left", 9, 4, -1, 1},
    {"any other flag means words", 10, 4, 1, 2},
    {"another negative flag, too", 10, 4, -2, 2},
    {"words of the whole area", 512, 60, 0, 2},
    {"bits of the whole area", 1024, 480, -1, 1},
    {"words beyond the area", 1000, 400, 0, 2},
    {"bits beyond the area", 3000, 900, -1, 1},
    {"pieces longer than the area", 1300, 600, 0, 2},
    {"far beyond the area", 100000, 30000, 0, 2},
};

static const Given<int> kValuesStayInOtherModes[] = {
    {"mode 0", 0},
    {"mode 2", 2},
    {"negative mode", -1},
};

class TestKeySplit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyIsCutIntoPieces_data() { addRows(kKeyIsCutIntoPieces); }
    void keyIsCutIntoPieces()
    {
        const auto &row = currentRow(kKeyIsCutIntoPieces);
        for (int mode = 0; mode < 3; ++mode) {
            QList<KEY_ADDRESS> out;
            groupingKey(filledKey(row.startAddr, row.count, 0), row.maxLen, out, mode);
            QCOMPARE(described(out), latin(row.pieces));
        }
    }

    void pieceKeepsTheOtherFields()
    {
        KEY_ADDRESS key = filledKey(32, 9, -1);
        key.keyText = QLatin1String("text");
        key.keyA = 11;
        key.keyB = 22;
        key.stationNo = 5;
        key.addrText = QLatin1String("2.0");
        QList<KEY_ADDRESS> out;
        groupingKey(key, 4, out, 1);

        QCOMPARE(sizeOf(out), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(otherFieldsText(out.at(i)), latin("text 11 22 2.0 -1"));
            QVERIFY(rangeText(out.at(i)).startsWith(latin("5/D_W:")));
        }
        QCOMPARE(key.startAddr, 32);
        QCOMPARE(key.count, 9);
    }

    void valuesFollowTheirPiece_data() { addRows(kValuesFollowTheirPiece); }
    void valuesFollowTheirPiece()
    {
        const auto &row = currentRow(kValuesFollowTheirPiece);
        QList<KEY_ADDRESS> out;
        groupingKey(filledKey(0, row.count, row.bitFlag), row.maxLen, out, 1);
        QCOMPARE(sizeOf(out), (row.count + row.maxLen - 1) / row.maxLen);
        for (int k = 0; k < out.size(); ++k) {
            const int own = qMin<int>(out.at(k).count * row.bytesPerUnit, kValueAreaSize);
            const int offset = k * row.maxLen * row.bytesPerUnit;
            for (int i = 0; i < own; ++i) {
                const int source = offset + i;
                QCOMPARE(int(out.at(k).data[i]),
                         source < kValueAreaSize ? int(valueAt(source)) : 0);
            }
            for (int i = own; i < kValueAreaSize; ++i) {
                QCOMPARE(int(out.at(k).data[i]), int(valueAt(i)));
            }
        }
    }

    void valuesStayInOtherModes_data() { addRows(kValuesStayInOtherModes); }
    void valuesStayInOtherModes()
    {
        const auto &row = currentRow(kValuesStayInOtherModes);
        const KEY_ADDRESS key = filledKey(0, 10, 0);
        QList<KEY_ADDRESS> out;
        groupingKey(key, 4, out, row.given);
        QCOMPARE(sizeOf(out), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(std::memcmp(out.at(i).data, key.data, sizeof(key.data)), 0);
        }
    }

    void shortKeyKeepsItsValues()
    {
        const KEY_ADDRESS key = filledKey(0, 600, 0);
        QList<KEY_ADDRESS> out;
        groupingKey(key, 600, out, 1);

        QCOMPARE(sizeOf(out), 1);
        QCOMPARE(std::memcmp(out.at(0).data, key.data, sizeof(key.data)), 0);
    }

    void piecesAreAppended()
    {
        QList<KEY_ADDRESS> out;
        groupingKey(filledKey(50, 2, 0), 4, out, 1);
        groupingKey(filledKey(0, 5, 0), 4, out, 1);

        QCOMPARE(described(out), latin("50*2 0*4 4*1"));
    }
};

QTEST_APPLESS_MAIN(TestKeySplit)
#include "test_key_split.moc"
