#include "plc/setup/point_text.h"
#include "plc/support/message_of.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const PointKind word = PointKind::Word;
static const PointKind bit = PointKind::Bit;
static const PointKind contact = PointKind::Contact;

static const struct
{
    const char *what;
    char device;
    PointKind kind;
    int address;
} kPoints[] = {
    // clang-format off
    {"D_W:9999", 'D', word, 9999},
    {"C_W:0", 'C', word, 0},
    {"T_W:255", 'T', word, 255},
    {"K_W:1", 'K', word, 1},
    {"P_W:1", 'P', word, 1},
    {"F_W:1", 'F', word, 1},
    {"L_W:1", 'L', word, 1},
    {"M_W:003", 'M', word, 3},
    {"P_bit:0.0", 'P', bit, 0},
    {"K_bit:1.15", 'K', bit, 31},
    {"M_bit:3.5", 'M', bit, 53},
    {"M_bit:003.05", 'M', bit, 53},
    {"L_bit:1.1", 'L', bit, 17},
    {"F_bit:255.15", 'F', bit, 4095},
    {"D_bit:100.2", 'D', bit, 1602},
    {"TX:7", 'T', contact, 7},
    {"CX:255", 'C', contact, 255},
    // clang-format on
};

static const struct
{
    const char *what;
    int station, address, count;
    const char *text; ///< as it is written again
} kRanges[] = {
    {"D_W:100", -1, 100, 1, "D_W:100"},
    {"D_W:100-119", -1, 100, 20, "D_W:100-119"},
    {"D_W:100*20", -1, 100, 20, "D_W:100-119"},
    {"2/D_W:100-100", 2, 100, 1, "2/D_W:100"},
    {"31/M_bit:1.0-2.15", 31, 16, 32, "31/M_bit:1.0-2.15"},
    {"M_bit:1.15*2", -1, 31, 2, "M_bit:1.15-2.0"},
    {"0/TX:7*2", 0, 7, 2, "0/TX:7-8"},
};

static const Given<const char *> kWrongRanges[] = {
    // what is in the message
    {"", "expected REGISTER:ADDRESS"},
    {"-5", "expected REGISTER:ADDRESS"},
    {"D_W:", "expected a decimal address"},
    {"D_W:-5", "expected a decimal address"},
    {"99/D_W:1", "expected a station from 0 to 31"},
    {"x/D_W:1", "expected a station from 0 to 31"},
    {"/D_W:1", "expected a station from 0 to 31"},
    {"D_W:5-4", "expected FIRST-LAST"},
    {"D_W:5-", "expected FIRST-LAST"},
    {"D_W:5-6-7", "expected FIRST-LAST"},
    {"D_W:5*0", "or FIRST*COUNT"},
    {"D_W:5*", "or FIRST*COUNT"},
    {"D_W:5*2*2", "or FIRST*COUNT"},
    {"D_W:5*100001", "or FIRST*COUNT"},
    {"M_bit:5.1-6", "expected FIRST-LAST"},
};

class TestPointText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void points_data() { addRows(kPoints); }
    void points()
    {
        const auto &row = currentRow(kPoints);
        const Parsed<Point> parsed = parsePoint(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const Point point = std::get<Point>(parsed);
        QCOMPARE(point.device, row.device);
        QVERIFY(point.kind == row.kind);
        QCOMPARE(point.address, row.address);
        const Parsed<Point> again = parsePoint(pointText(point));
        QCOMPARE(std::get<Point>(again).address, row.address);
        QVERIFY(std::get<Point>(again).kind == row.kind);
    }

    void wrongPoints_data()
    {
        QTest::addColumn<QString>("expected");
        for (const char *text :
             {"", "D_W", "DW:1", "d_w:1", "Z_W:1", "T_bit:1.1", "PX:1", "D_X:1", ":1"}) {
            QTest::newRow(text) << latin("expected REGISTER:ADDRESS");
        }
        for (const char *text :
             {"D_W:", "D_W:-1", "D_W:1.5", "D_W:0x10", "D_W: 1", "TX:1.1", "D_W:99999999999"}) {
            QTest::newRow(text) << latin("expected a decimal address");
        }
        for (const char *text : {"M_bit:53", "M_bit:3.16", "M_bit:3.", "M_bit:.5", "M_bit:3.5.1",
                                 "M_bit:3.A", "M_bit:2000000000.1"}) {
            QTest::newRow(text) << latin("expected an address WORD.BIT");
        }
    }

    void wrongPoints()
    {
        QFETCH(QString, expected);
        const QString text = latin(QTest::currentDataTag());
        const QString message = messageOf(parsePoint(text));
        QVERIFY2(message.contains(expected), qPrintable(message));
        QVERIFY(message.contains(text));
    }

    void ranges_data() { addRows(kRanges); }
    void ranges()
    {
        const auto &row = currentRow(kRanges);
        const Parsed<Range> parsed = parseRange(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const Range range = std::get<Range>(parsed);
        QCOMPARE(range.station, row.station);
        QCOMPARE(range.first.address, row.address);
        QCOMPARE(range.count, row.count);
        QCOMPARE(rangeText(range), latin(row.text));
    }

    void wrongRanges_data() { addRows(kWrongRanges); }
    void wrongRanges()
    {
        const auto &row = currentRow(kWrongRanges);
        const QString message = messageOf(parseRange(latin(row.what)));
        QVERIFY2(message.contains(latin(row.given)), qPrintable(message));
    }
};

QTEST_APPLESS_MAIN(TestPointText)
#include "test_point_text.moc"
