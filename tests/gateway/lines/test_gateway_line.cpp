#include "gateway/lines/gateway_line.h"
#include "gateway/support/changes.h"
#include "gateway/support/virtual_gateway_line.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** A line in virtual time: what of its failures is told, and when. */
class TestGatewayLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tellsTheSameOfValuesAndTheirLine();
    void isBadOnePollAfterAFailure_data();
    void isBadOnePollAfterAFailure();
    void saysWhyTheLineIsDown();
    void saysThatTheGatewayEnded();

private:
    VirtualLine &link() const { return *m_lines->links.value(QLatin1String("press")); }
    QString take() const
    {
        QStringList texts;
        for (const Change &change : std::exchange(m_lines->changes, {})) {
            texts.append(textOf(change) +
                         (change.cause.isEmpty() ? QString() : QLatin1String(": ") + change.cause));
        }
        return texts.join(QLatin1String("; "));
    }

    std::unique_ptr<VirtualGatewayLines> m_lines;
    std::unique_ptr<GatewayLine> m_line;
};

namespace {

const int kIntervalMs = 200;
const int kTimeoutMs = 100;
const int kAttempts = 2;

} // namespace

void TestGatewayLine::init()
{
    m_line.reset();
    m_lines = std::make_unique<VirtualGatewayLines>();
    m_lines->store("tags.csv", "name,register,address,station\na,D_W,5,1\nb,D_W,6000,1\n");
    LineConfig config = m_lines->config("press", "tags.csv");
    config.session.intervalMs = kIntervalMs;
    config.session.timeoutMs = kTimeoutMs;
    config.session.attempts = kAttempts;
    m_line = std::make_unique<GatewayLine>(
        config, m_lines->makeLink(config), m_lines->clock,
        [this](const Change &change) { m_lines->note(change); },
        [this](const LineStatus &status) { m_lines->note(status); },
        [this](const QString &text) { m_lines->said.append(text); });
    QCOMPARE(m_line->prepare(), QStringList());
    m_line->open();
}

void TestGatewayLine::tellsTheSameOfValuesAndTheirLine()
{
    QCOMPARE(int(m_lines->statuses.size()), 2); // the line and its station, before anything is read
    m_lines->run(1000);
    QCOMPARE(take(), QLatin1String("a=0; b=0"));
    QCOMPARE(int(m_lines->statuses.size()), 4);
    QVERIFY(m_lines->statuses.last().state == LineStatus::State::Good);
    QCOMPARE(m_lines->statuses.last().station.value_or(-1), 1);
}

void TestGatewayLine::isBadOnePollAfterAFailure_data()
{
    QTest::addColumn<QString>("told");
    QTest::newRow("lost") << "a=0(line down): unplugged; b=0(line down): unplugged";
    QTest::newRow("silent") << "a=0(no answer): no answer; b=0(no answer): no answer";
    QTest::newRow("damaged")
        << "a=0(no answer): no usable answer; b=0(no answer): no usable answer";
    QTest::newRow("refused") << "b=0(refused): refused: 1132, no such device, or address outside "
                                "the device";
}

void TestGatewayLine::isBadOnePollAfterAFailure()
{
    QFETCH(QString, told);
    m_lines->run(1000);
    take();
    const QByteArray failure = QTest::currentDataTag();
    if (failure == "lost") {
        link().opensFine = false;
        link().breakDown();
    } else if (failure == "silent") {
        link().manners.lost = 100;
    } else if (failure == "damaged") {
        link().manners.damaged = 100;
    } else {
        link().bus.add(1, plc::Model::K120s);
    }
    // The next round, and all that is tried before an answer is given up.
    m_lines->run(kIntervalMs + 2 * kAttempts * kTimeoutMs);
    QCOMPARE(take(), told);
}

void TestGatewayLine::saysWhyTheLineIsDown()
{
    link().opensFine = false;
    m_lines->run(60000);
    QCOMPARE(take(), QLatin1String("a=-(line down): no such device; b=-(line down): no such "
                                   "device"));
    QCOMPARE(m_lines->statuses.last().cause, QLatin1String("the line is down: no such device"));
}

void TestGatewayLine::saysThatTheGatewayEnded()
{
    m_lines->run(1000);
    take();
    m_lines->statuses.clear();
    m_line->close(QLatin1String("the gateway ended"));
    QCOMPARE(take(), QLatin1String("a=0(line down): the gateway ended; "
                                   "b=0(line down): the gateway ended"));
    QCOMPARE(int(m_lines->statuses.size()), 2);
    for (const LineStatus &status : qAsConst(m_lines->statuses)) {
        QCOMPARE(status.cause, QLatin1String("the gateway ended"));
    }
}

QTEST_GUILESS_MAIN(TestGatewayLine)
#include "test_gateway_line.moc"
