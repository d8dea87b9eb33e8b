#include "view/connect/connect_page.h"
#include "view/support/child_called.h"
#include "view/support/unnamed_fields.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace cnet;
using namespace cnet::view;

/** Where one chooses what to talk to. */
class TestConnectPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void connectsToTheSimulator();
    void wantsAHost();
    void keepsTheFields();
    void connectsToARecentOne();
    void tests();
    void everyFieldHasAName();

private:
    QPushButton *button(const char *text) const { return childCalled<QPushButton>(*m_page, text); }
    QLabel *label(const char *name) const
    {
        for (QLabel *label : m_page->findChildren<QLabel *>()) {
            if (label->accessibleName() == QLatin1String(name)) {
                return label;
            }
        }
        return nullptr;
    }

    std::unique_ptr<Line> m_line;
    std::unique_ptr<ConnectPage> m_page;
};

void TestConnectPage::init()
{
    m_page.reset();
    m_line = std::make_unique<Line>();
    QCOMPARE(m_line->prepare(), QString());
    m_page = std::make_unique<ConnectPage>(*m_line);
    m_page->show();
}

void TestConnectPage::connectsToTheSimulator()
{
    QVERIFY(!button("Disconnect")->isEnabled());
    QTest::mouseClick(button("Connect"), Qt::LeftButton);
    QVERIFY(m_line->simulator() != nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(label("State of the connection")->text(),
                              QLatin1String("State: connected (simulated press line)"), 60000);
    QTest::mouseClick(button("Disconnect"), Qt::LeftButton);
    QVERIFY(m_line->session() == nullptr);
    QCOMPARE(label("State of the connection")->text(), QLatin1String("State: not connected"));
}

void TestConnectPage::wantsAHost()
{
    auto *kind = m_page->findChild<QComboBox *>();
    QVERIFY(kind != nullptr && button("Connect")->isEnabled());
    kind->setCurrentIndex(1);
    QVERIFY(!button("Connect")->isEnabled());
    QVERIFY(
        label("What is wrong with the fields")->text().contains(QLatin1String("where the PLC")));
    auto *host = m_page->findChild<QLineEdit *>();
    QVERIFY(host != nullptr && host->isVisible());
    QTest::keyClicks(host, QLatin1String("plc.local"));
    QVERIFY(button("Connect")->isEnabled());
    QVERIFY(!label("What is wrong with the fields")->isVisible());
    QTest::keyClick(host, Qt::Key_Return);
    QCOMPARE(m_line->connection().address.host, QLatin1String("plc.local"));
    QVERIFY(m_line->session() != nullptr);
    m_line->close();
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    host->clear();
    m_page->connectNow();
    QCOMPARE(troubled.count(), 1);
    QVERIFY(m_line->session() == nullptr);
}

void TestConnectPage::keepsTheFields()
{
    Connection connection;
    connection.kind = Connection::Kind::Serial;
    connection.address.kind = LinkAddress::Kind::Serial;
    connection.address.device = QLatin1String("/dev/ttyUSB7");
    connection.address.line.baud = 14400; // one that is not listed
    connection.address.line.parity = Parity::Even;
    connection.address.line.dataBits = 7;
    connection.address.line.stopBits = 2;
    connection.station = 9;
    m_page->restore(connection.saved());
    const auto kept = Connection::restored(m_page->saved());
    QVERIFY(kept);
    QCOMPARE(kept->text(), connection.text());
    QVERIFY(*kept == connection);
    m_page->restore(QJsonObject{{QLatin1String("link"), QLatin1String("rubbish")}});
    QCOMPARE(Connection::restored(m_page->saved())->text(), connection.text());
}

void TestConnectPage::connectsToARecentOne()
{
    Connection connection;
    connection.kind = Connection::Kind::Tcp;
    connection.address.host = QLatin1String("127.0.0.1");
    connection.address.port = 1;
    QSignalSpy connecting(m_page.get(), &ConnectPage::connecting);
    m_page->setRecent({connection});
    auto *list = m_page->findChild<QListWidget *>();
    QCOMPARE(list->count(), 2);
    list->setCurrentRow(1);
    Q_EMIT list->itemActivated(list->item(1));
    QCOMPARE(m_line->connection().text(), QLatin1String("tcp:127.0.0.1:1"));
    QCOMPARE(connecting.count(), 1);
    Q_EMIT list->itemActivated(list->item(0));
    QVERIFY(m_line->simulator() != nullptr);
}

void TestConnectPage::tests()
{
    QTest::mouseClick(button("Test"), Qt::LeftButton);
    QVERIFY(button("Stop test") != nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(
        label("What the test found")->text().contains(QLatin1String("station 1 (")), 60000);
    QTest::mouseClick(button("Stop test"), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(button("Test") != nullptr, 60000);
    QVERIFY(
        label("What the test found")->text().startsWith(QLatin1String("Answered: station 1 (")));
    QVERIFY(m_line->session() == nullptr); // nothing was connected for it
}

void TestConnectPage::everyFieldHasAName()
{
    int count = 0;
    QCOMPARE(unnamedFields(*m_page, count).join(QLatin1String("; ")), QString());
    QVERIFY(count > 10);
}

QTEST_MAIN(TestConnectPage)
#include "test_connect_page.moc"
