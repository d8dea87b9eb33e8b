#include "panel/reports/describe_text.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestDescribeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void says_data();
    void says();
    void hasALineForEachRegister();

private:
    Driver m_driver;
    QStringList m_lines;
};

void TestDescribeText::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    m_lines = describeText(m_driver).split(QLatin1Char('\n'));
}

void TestDescribeText::says_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("name") << "driver          ls_master_k_cnet";
    QTest::newRow("version") << "version         2.0.0.0";
    QTest::newRow("type") << "protocol type   0";
    QTest::newRow("page") << "property page   0_0";
    QTest::newRow("serial line") << "serial default  38400,8,NONE,1";
    QTest::newRow("network") << "network default 192.168.0.100:8000";
    QTest::newRow("word") << "  D_W       word         DDDD      0        9999     read, write";
    QTest::newRow("bit") << "  M_bit     bit          DDD.dd    0        255.15   read, write";
    QTest::newRow("contact") << "  TX        contact      DDD       0        255      read, write";
}

void TestDescribeText::says()
{
    QFETCH(QString, line);
    QVERIFY2(m_lines.contains(line), qPrintable(m_lines.join(QLatin1Char('\n'))));
}

void TestDescribeText::hasALineForEachRegister()
{
    const int title = static_cast<int>(m_lines.indexOf(QLatin1String("registers")));
    QCOMPARE(m_lines.size() - title, 1 + 1 + 16 + 1); // titles, registers, end of the last line
}

QTEST_APPLESS_MAIN(TestDescribeText)
#include "test_describe_text.moc"
