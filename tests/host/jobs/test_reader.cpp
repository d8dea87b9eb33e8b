#include "host/support/sim_panel.h"
#include "host/support/test_registers.h"

#include "host/jobs/reader.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::Item)

class TestReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void reads_data();
    void reads();
    void failsAndGoesOn_data();
    void failsAndGoesOn();
    void readsAgain();
    void givesUp();
    void readsNothingCyclicAfterItsEnd();

private:
    void read(const QVector<Item> &items);
    QString text() const;

    DriverLibrary m_driver;
    std::unique_ptr<SimPanel> m_panel;
    std::unique_ptr<Reader> m_reader;
};

void TestReader::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
}

void TestReader::init()
{
    m_panel = std::make_unique<SimPanel>(m_driver.functions());
    m_reader = std::make_unique<Reader>(m_panel->driver, m_panel->exchange, 60);
    plc::Memory &memory = m_panel->memory();
    for (int i = 0; i < 100; ++i) {
        memory.setWord('D', i, static_cast<quint16>(i + 1));
    }
    memory.setBit('M', 3, 15, true);
    memory.setBit('M', 4, 1, true);
    memory.setContact('T', 8, true);
    m_panel->memory(2).setWord('D', 0, 0x1234);
}

void TestReader::cleanup()
{
    m_reader.reset();
    m_panel.reset();
}

void TestReader::read(const QVector<Item> &items)
{
    QSignalSpy done(m_reader.get(), &Reader::done);
    m_reader->start(items);
    m_panel->open();
    QTRY_COMPARE(done.size(), 1);
}

// "1,2,-": the values of all items, a dash for what is not known.
QString TestReader::text() const
{
    QStringList items;
    for (const ReadResult &result : m_reader->results()) {
        QStringList values;
        for (int i = 0; i < result.values.size(); ++i) {
            values.append(result.known.at(i) ? QString::number(result.values.at(i))
                                             : QLatin1String("-"));
        }
        items.append(values.join(QLatin1Char(',')));
    }
    return items.join(QLatin1Char(' '));
}

void TestReader::reads_data()
{
    QTest::addColumn<QVector<Item>>("items");
    QTest::addColumn<QString>("values");
    QTest::addColumn<QString>("frames");
    QTest::newRow("words") << QVector<Item>{testItem("D_W", 5, 3)} << "6,7,8"
                           << "01rSB08%DW0000503";
    QTest::newRow("words of which all are 0") << QVector<Item>{testItem("D_W", 500, 2)} << "0,0"
                                              << "01rSB08%DW0050002";
    QTest::newRow("bits of two words") << QVector<Item>{testItem("M_bit", 63, 3)} << "1,0,1"
                                       << "01rSB08%MW0000302";
    QTest::newRow("bits of a data register") << QVector<Item>{testItem("D_bit", 2 * 16, 2)} << "1,1"
                                             << "01rSB08%DW0000201";
    QTest::newRow("each contact") << QVector<Item>{testItem("TX", 7, 2)} << "0,1"
                                  << "01rSS0107%TX0007 01rSS0107%TX0008";
    QTest::newRow("two stations, words and bits in turn")
        << QVector<Item>{testItem("D_W", 0, 1), testItem("M_bit", 63, 1), testItem("D_W", 0, 1, 2)}
        << "1 1 4660"
        << "01rSB08%DW0000001 01rSB08%MW0000301 02rSB08%DW0000001";
    QTest::newRow("the same twice")
        << QVector<Item>{testItem("D_W", 0, 1), testItem("D_W", 0, 1)} << "1 1"
        << "01rSB08%DW0000001 01rSB08%DW0000001";
}

void TestReader::reads()
{
    QFETCH(QVector<Item>, items);
    read(items);
    QTEST(text(), "values");
    for (const ReadResult &result : m_reader->results()) {
        QVERIFY2(result.isGood(), qPrintable(result.failure));
    }
    QTEST(m_panel->frames.join(QLatin1Char(' ')), "frames");
}

void TestReader::failsAndGoesOn_data()
{
    QTest::addColumn<QVector<Item>>("items");
    QTest::addColumn<QString>("values");
    QTest::addColumn<QString>("failure"); // of the first item
    QTest::addColumn<int>("frames");
    const Item word = testItem("D_W", 0, 1);
    QTest::newRow("refused words") << QVector<Item>{testItem("D_W", 9999, 2), word} << "-,- 1"
                                   << "refused: 1132" << 3 + 1;
    QTest::newRow("refused bits") << QVector<Item>{testItem("M_bit", 4095, 2), word} << "-,- 1"
                                  << "refused: 1132" << 3 + 1;
    QTest::newRow("silent words are asked for once")
        << QVector<Item>{testItem("D_W", 0, 61, 2), testItem("D_W", 0, 1, 2), word}
        << QString(QLatin1String("-,")).repeated(60) + QLatin1String("- - 1") << "no answer"
        << 3 + 1;
    QTest::newRow("silent contacts are asked for once")
        << QVector<Item>{testItem("TX", 0, 3, 2), word} << "-,-,- 1"
        << "no answer" << 3 + 1;
}

void TestReader::failsAndGoesOn()
{
    QFETCH(QVector<Item>, items);
    QFETCH(QString, failure);
    m_panel->faults(2).add({plc::FaultKind::Silence, 0, 0, -1, 100});
    read(items);
    QTEST(text(), "values");
    QVERIFY2(m_reader->results().first().failure.startsWith(failure),
             qPrintable(m_reader->results().first().failure));
    QVERIFY(m_reader->results().last().isGood());
    QTEST(static_cast<int>(m_panel->frames.size()), "frames");
}

void TestReader::readsAgain()
{
    read({testItem("D_W", 5, 1)});
    m_panel->memory().setWord('D', 5, 77);
    QSignalSpy done(m_reader.get(), &Reader::done);
    m_reader->start({testItem("D_W", 5, 1)});
    QTRY_COMPARE(done.size(), 1);
    QCOMPARE(text(), QLatin1String("77"));
}

void TestReader::givesUp()
{
    m_reader->start({testItem("D_W", 5, 1), testItem("TX", 5, 1)});
    m_reader->giveUp(QLatin1String("enough"));
    QCOMPARE(text(), QLatin1String("- -"));
    for (const ReadResult &result : m_reader->results()) {
        QCOMPARE(result.failure, QLatin1String("enough"));
    }
}

void TestReader::readsNothingCyclicAfterItsEnd()
{
    read({testItem("M_bit", 5, 1)});
    QSignalSpy idle(&m_panel->exchange, &Exchange::idle);
    const auto frames = m_panel->frames.size();
    QTRY_VERIFY(idle.size() >= 2);
    QCOMPARE(m_panel->frames.size(), frames);
}

QTEST_GUILESS_MAIN(TestReader)
#include "test_reader.moc"
