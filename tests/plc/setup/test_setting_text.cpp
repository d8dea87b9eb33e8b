#include "plc/setup/setting_text.h"
#include "plc/support/message_of.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

using Values = QList<int>;

static const struct
{
    const char *what;
    int station, address;
    Values values;
} kSettings[] = {
    {"M_W:3=0x1234", -1, 3, (Values() << 0x1234)},
    {"2/M_W:3=5", 2, 3, (Values() << 5)},
    {"31/D_W:0=-1", 31, 0, (Values() << 0xFFFF)},
    {"D_W:10=1,0XfF,-32768,65535", -1, 10, (Values() << 1 << 255 << 32768 << 65535)},
    {"M_bit:3.5=1", -1, 53, (Values() << 1)},
    {"0/TX:7=1,0", 0, 7, (Values() << 1 << 0)},
};

class TestSettingText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settings_data() { addRows(kSettings); }
    void settings()
    {
        const auto &row = currentRow(kSettings);
        const Parsed<Setting> parsed = parseSetting(latin(row.what));
        QCOMPARE(messageOf(parsed), QString());
        const Setting setting = std::get<Setting>(parsed);
        QCOMPARE(setting.station, row.station);
        QCOMPARE(setting.first.address, row.address);
        Values found;
        for (const quint16 value : setting.values) {
            found << value;
        }
        QCOMPARE(found, row.values);
    }

    void wrongSettings_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("M_W:3") << latin("expected [STATION/]REGISTER:ADDRESS=VALUE");
        QTest::newRow("32/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("x/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("/M_W:3=1") << latin("expected a station from 0 to 31");
        QTest::newRow("MW:3=1") << latin("expected REGISTER:ADDRESS");
        for (const char *text :
             {"M_W:3=", "M_W:3=1,", "M_W:3=,1", "M_W:3=65536", "M_W:3=-32769", "M_W:3=0x10000",
              "M_W:3=FF", "M_W:3=0x", "M_W:3=1=2", "M_W:3=99999999999"}) {
            QTest::newRow(text) << latin("expected values from -32768 to 65535");
        }
        QTest::newRow("D_W:3-4=1") << latin("expected one address");
        for (const char *text : {"M_bit:3.5=2", "TX:7=-1", "CX:7=on"}) {
            QTest::newRow(text) << latin("expected values 0 or 1");
        }
    }

    void wrongSettings()
    {
        QFETCH(QString, expected);
        const QString message = messageOf(parseSetting(latin(QTest::currentDataTag())));
        QVERIFY2(message.contains(expected), qPrintable(message));
    }
};

QTEST_APPLESS_MAIN(TestSettingText)
#include "test_setting_text.moc"
