#include "host/support/sim_panel.h"
#include "host/support/test_registers.h"

#include "host/jobs/writer.h"

#include <QtTest>

#include <memory>

using namespace cnet;

class TestWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cutsIntoPieces_data();
    void cutsIntoPieces();
    void writes_data();
    void writes();
    void longestWriteFitsThePlc();
    void fails_data();
    void fails();
    void holdsBackFromASilentStation();
    void keepsOneWriteUnderway();
    void takesMoreWhenToldOfTheEnd();
    void leavesForeignRequestsAlone();

private:
    int add(const char *reg, int start, const QVector<quint16> &values, int station = 1);

    DriverLibrary m_driver;
    std::unique_ptr<SimPanel> m_panel;
    std::unique_ptr<Writer> m_writer;
    QStringList m_settled; ///< "1 failure" in the order of the reports
};

void TestWriter::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
}

void TestWriter::init()
{
    m_panel = std::make_unique<SimPanel>(m_driver.functions());
    m_writer = std::make_unique<Writer>(m_panel->driver, m_panel->exchange, 60);
    m_settled.clear();
    connect(m_writer.get(), &Writer::settled, this, [this](int number, const QString &failure) {
        m_settled.append(QString::fromLatin1("%1 %2").arg(number).arg(failure).trimmed());
    });
}

void TestWriter::cleanup()
{
    m_writer.reset();
    m_panel.reset();
}

int TestWriter::add(const char *reg, int start, const QVector<quint16> &values, int station)
{
    return m_writer->add({testItem(reg, start, static_cast<int>(values.size()), station), values});
}

void TestWriter::cutsIntoPieces_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("blockWords");
    QTest::addColumn<QString>("pieces");
    QTest::newRow("58 words fit a frame of 256 bytes") << "D_W" << 58 << 60 << "0+58";
    QTest::newRow("59 do not") << "D_W" << 59 << 60 << "0+58 58+1";
    QTest::newRow("nor with longer blocks") << "D_W" << 100 << 255 << "0+58 58+42";
    QTest::newRow("shorter blocks") << "D_W" << 5 << 2 << "0+2 2+2 4+1";
    QTest::newRow("blocks of nothing") << "D_W" << 2 << 0 << "0+1 1+1";
    QTest::newRow("each bit") << "M_bit" << 3 << 60 << "0+1 1+1 2+1";
    QTest::newRow("each contact") << "TX" << 2 << 60 << "0+1 1+1";
}

void TestWriter::cutsIntoPieces()
{
    QFETCH(QString, reg);
    QFETCH(int, count);
    QFETCH(int, blockWords);
    QStringList pieces;
    for (const ItemBlock &piece :
         writeBlocksOf(testItem(reg.toLatin1().constData(), 3, count), blockWords)) {
        pieces.append(QString::fromLatin1("%1+%2").arg(piece.offset).arg(piece.count));
    }
    QTEST(pieces.join(QLatin1Char(' ')), "pieces");
}

void TestWriter::writes_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("start");
    QTest::addColumn<QVector<quint16>>("values");
    QTest::addColumn<QString>("frames");
    QTest::newRow("words") << "D_W" << 100 << QVector<quint16>{0x1234, 0xFFFF}
                           << "01wSB08%DW00100021234FFFF";
    QTest::newRow("a bit") << "M_bit" << 3 * 16 + 10 << QVector<quint16>{1}
                           << "01wSS0109%MX00003A01";
    QTest::newRow("bits one by one") << "M_bit" << 3 * 16 + 15 << QVector<quint16>{1, 0}
                                     << "01wSS0109%MX00003F01 01wSS0109%MX00004000";
    QTest::newRow("contacts one by one")
        << "TX" << 9 << QVector<quint16>{1, 1} << "01wSS0109%TX00000901 01wSS0109%TX00001001";
    QTest::newRow("a bit within its word") << "D_bit" << 7 * 16 + 2 << QVector<quint16>{1}
                                           << "01rSB08%DW0000701 01wSB08%DW00007018005";
}

void TestWriter::writes()
{
    QFETCH(QString, reg);
    QFETCH(int, start);
    QFETCH(QVector<quint16>, values);
    m_panel->memory().setWord('D', 7, 0x8001);
    add(reg.toLatin1().constData(), start, values);
    QVERIFY(!m_writer->isIdle());
    m_panel->open();
    QTRY_COMPARE(m_settled, QStringList{QLatin1String("1")});
    QVERIFY(m_writer->isIdle());
    QTEST(m_panel->frames.join(QLatin1Char(' ')), "frames");
}

void TestWriter::longestWriteFitsThePlc()
{
    add("D_W", 0, QVector<quint16>(59, 7));
    m_panel->open();
    QTRY_COMPARE(m_settled, QStringList{QLatin1String("1")});
    const int stripped = 4; // ENQ, EOT and two characters of the block check
    QCOMPARE(static_cast<int>(m_panel->frames.first().size()) + stripped, 21 + 4 * 58);
    QCOMPARE(m_panel->memory().word('D', 58).value_or(0), quint16(7));
}

void TestWriter::fails_data()
{
    QTest::addColumn<int>("fault");
    QTest::addColumn<QString>("reg");
    QTest::addColumn<QString>("failure");
    QTest::addColumn<int>("frames");
    using plc::FaultKind;
    const auto row = [](const char *name, FaultKind fault, const char *reg, const char *failure,
                        int frames) {
        QTest::newRow(name) << static_cast<int>(fault) << QString::fromLatin1(reg)
                            << QString::fromLatin1(failure) << frames;
    };
    row("refused", FaultKind::Refuse, "D_W", "refused: 1132", 3);
    row("silence", FaultKind::Silence, "D_W", "no answer", 3);
    row("answers that cannot be used", FaultKind::WrongCheck, "D_W", "no usable answer", 3);
    row("the reading before a bit is refused", FaultKind::Refuse, "D_bit", "refused: 1132", 3);
}

void TestWriter::fails()
{
    QFETCH(int, fault);
    QFETCH(QString, reg);
    QFETCH(QString, failure);
    QFETCH(int, frames);
    plc::Fault strikes = plc::usualFault(static_cast<plc::FaultKind>(fault));
    strikes.times = 3;
    m_panel->faults().add(strikes);
    add(reg.toLatin1().constData(), 0, {1});
    m_panel->open();
    QTRY_COMPARE(m_settled.size(), 1);
    QVERIFY2(m_settled.first().startsWith(QLatin1String("1 ") + failure),
             qPrintable(m_settled.first()));
    QCOMPARE(static_cast<int>(m_panel->frames.size()), frames);
    // The next one is tried as if nothing had been.
    add(reg.toLatin1().constData(), 0, {1});
    QTRY_COMPARE(m_settled.size(), 2);
    QCOMPARE(m_settled.last(), QLatin1String("2"));
}

void TestWriter::holdsBackFromASilentStation()
{
    m_panel->faults(2).add({plc::FaultKind::Silence, 0, 0, -1, 100});
    add("TX", 0, {1, 1, 1}, 2);
    add("D_W", 0, {5});
    add("D_W", 0, {5}, 2);
    m_panel->open();
    QTRY_VERIFY(m_writer->isIdle());
    QCOMPARE(m_settled, (QStringList{QLatin1String("1 no answer"),
                                     QLatin1String("3 not sent, the station does not answer"),
                                     QLatin1String("2")}));
    QCOMPARE(static_cast<int>(m_panel->frames.size()), 3 + 1);
}

// Two writes to one place reach the PLC both, in order, and neither replaces the other.
void TestWriter::keepsOneWriteUnderway()
{
    for (quint16 value = 1; value <= 20; ++value) {
        add("D_W", 9, {value});
    }
    m_panel->open();
    QTRY_COMPARE(m_settled.size(), 20);
    QStringList expected;
    for (int value = 1; value <= 20; ++value) {
        expected.append(QLatin1String("01wSB08%DW0000901") +
                        QString::number(value, 16).toUpper().rightJustified(4, QLatin1Char('0')));
    }
    QCOMPARE(m_panel->frames, expected);
    QCOMPARE(m_panel->memory().word('D', 9).value_or(0), quint16(20));
}

void TestWriter::takesMoreWhenToldOfTheEnd()
{
    int left = 3;
    connect(m_writer.get(), &Writer::settled, this, [&] {
        if (--left > 0) {
            add("D_W", left, {1});
        }
    });
    add("D_W", 0, {1});
    m_panel->open();
    QTRY_COMPARE(m_settled.size(), 3);
    QVERIFY(m_writer->isIdle());
}

void TestWriter::leavesForeignRequestsAlone()
{
    QString name = QLatin1String("D_W");
    unsigned char value[] = {1, 0};
    m_driver.functions().setData(1, name, 3, 1, value, 7);
    add("D_W", 4, {1});
    m_panel->open();
    QTRY_COMPARE(m_settled.size(), 1);
    QCOMPARE(static_cast<int>(m_panel->frames.size()), 2);
}

QTEST_GUILESS_MAIN(TestWriter)
#include "test_writer.moc"
