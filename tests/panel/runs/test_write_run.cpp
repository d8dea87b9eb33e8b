#include "host/support/test_registers.h"

#include "panel/system/exit_code.h"
#include "panel/runs/write_run.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

Q_DECLARE_METATYPE(cnet::panel::Assignment)

class TestWriteRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void saysWhatCameOfIt_data();
    void saysWhatCameOfIt();
    void runs_data();
    void runs();

private:
    DriverLibrary m_driver;
};

void TestWriteRun::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
}

void TestWriteRun::saysWhatCameOfIt_data()
{
    QTest::addColumn<bool>("settled");
    QTest::addColumn<QString>("failure");
    QTest::addColumn<QString>("readFailure"); // "-": not read again
    QTest::addColumn<QString>("text");
    QTest::newRow("written") << true << ""
                             << "-"
                             << "1/D_W:5*2=1,2: written";
    QTest::newRow("not settled") << false << ""
                                 << "-"
                                 << "1/D_W:5*2=1,2: not settled, the PLC may have taken it or not";
    QTest::newRow("failed and read again")
        << true << "no answer"
        << ""
        << "1/D_W:5*2=1,2: not written (no answer); it holds 7 0x0007, 8 0x0008";
    QTest::newRow("failed and cannot be read")
        << true << "no answer"
        << "refused"
        << "1/D_W:5*2=1,2: not written (no answer); what it holds is not known (refused)";
    QTest::newRow("failed and not read")
        << true << "no answer"
        << "-"
        << "1/D_W:5*2=1,2: not written (no answer); what it holds is not known (not read again)";
}

void TestWriteRun::saysWhatCameOfIt()
{
    QFETCH(bool, settled);
    QFETCH(QString, failure);
    QFETCH(QString, readFailure);
    WriteResult result;
    result.assignment = {testItem("D_W", 5, 2), {1, 2}};
    result.settled = settled;
    result.failure = failure;
    if (readFailure != QLatin1String("-")) {
        result.now = ReadResult{testItem("D_W", 5, 2), {7, 8}, {true, true}, readFailure};
    }
    QTEST(result.text(), "text");
}

void TestWriteRun::runs_data()
{
    QTest::addColumn<QVector<Assignment>>("assignments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("texts");
    const Assignment word{testItem("D_W", 5000, 1), {7}};
    const Assignment bit{testItem("M_bit", 100 * 16, 2), {1, 1}};
    const Assignment beyond{testItem("M_W", 256, 1), {7}};
    QTest::newRow("taken") << QVector<Assignment>{word, bit} << static_cast<int>(kFine)
                           << "1/D_W:5000=7: written; 1/M_bit:100.0*2=1,1: written";
    QTest::newRow("refused, and cannot be read either")
        << QVector<Assignment>{beyond, word} << static_cast<int>(kDeviceFailed)
        << "1/M_W:256=7: not written (refused: 1132, no such device, or address outside the "
           "device); what it holds is not known (refused: 1132, no such device, or address outside "
           "the device); 1/D_W:5000=7: written";
}

void TestWriteRun::runs()
{
    QFETCH(QVector<Assignment>, assignments);
    LinkSettings link;
    link.link.line.baud = 4000000;
    Messages messages;
    messages.setSink([](const QString &) {});
    QVector<WriteResult> results;
    QTEST(runWrites(m_driver.functions(), link, assignments, messages, results), "exitCode");
    QStringList texts;
    for (const WriteResult &result : std::as_const(results)) {
        texts.append(result.text());
    }
    QTEST(texts.join(QLatin1String("; ")), "texts");
}

QTEST_GUILESS_MAIN(TestWriteRun)
#include "test_write_run.moc"
