#include "gateway/service/log_limit.h"
#include "host/support/virtual_clock.h"

#include <QStringList>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** What comes and goes without end does not fill the log, and nothing is hidden silently. */
class TestLogLimit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_said.clear(); }
    void letsEventsPass();
    void leavesFloodsOut();
    void keepsSubjectsApart();
    void becomesPatientAgain();

private:
    Say keep()
    {
        return Say([this](Weight weight, const QString &line) {
            m_said.append((weight == Weight::Warning ? QLatin1String("!") : QLatin1String("")) +
                          line);
        });
    }

    VirtualClock m_clock;
    QStringList m_said;
};

namespace {

const QString kAway = QLatin1String("line press: away");

} // namespace

void TestLogLimit::letsEventsPass()
{
    LogLimit limit(m_clock, keep());
    const Say say = limit.say();
    say(QLatin1String("runs"));
    say.warn(kAway);
    limit.sayLeftOut();
    QCOMPARE(m_said, QStringList({QLatin1String("runs"), QLatin1Char('!') + kAway}));
}

void TestLogLimit::leavesFloodsOut()
{
    LogLimit limit(m_clock, keep());
    for (int i = 0; i < 10 * LogLimit::kAtOnce; ++i) {
        limit.take(Weight::Warning, kAway);
    }
    QCOMPARE(int(m_said.size()), LogLimit::kAtOnce);
    limit.sayLeftOut();
    QCOMPARE(int(m_said.size()), LogLimit::kAtOnce);
    m_clock.runFor(LogLimit::kOneEachMs);
    limit.sayLeftOut();
    QCOMPARE(m_said.last(), QString::fromLatin1("!line press: lines left out here, since there "
                                                "were too many: %1")
                                .arg(9 * LogLimit::kAtOnce));
    limit.take(Weight::Warning, kAway);
    limit.take(Weight::Warning, kAway);
    QCOMPARE(int(m_said.size()), LogLimit::kAtOnce + 2);
    // An hour of one event a second: at most what passes at once, and a pair of lines each time.
    m_said.clear();
    for (int i = 0; i < 3600; ++i) {
        m_clock.runFor(1000);
        limit.take(Weight::Warning, kAway);
        limit.sayLeftOut();
    }
    QVERIFY(m_said.size() <= 2 * 3600000 / LogLimit::kOneEachMs);
    QVERIFY(m_said.size() >= 3600000 / LogLimit::kOneEachMs);
}

void TestLogLimit::keepsSubjectsApart()
{
    LogLimit limit(m_clock, keep());
    for (int i = 0; i < 2 * LogLimit::kAtOnce; ++i) {
        limit.take(Weight::Warning, kAway);
    }
    limit.take(Weight::Notice, QLatin1String("ledger: works again"));
    QCOMPARE(m_said.last(), QLatin1String("ledger: works again"));
}

void TestLogLimit::becomesPatientAgain()
{
    LogLimit limit(m_clock, keep());
    for (int round = 0; round < 2; ++round) {
        m_said.clear();
        for (int i = 0; i < LogLimit::kAtOnce; ++i) {
            limit.take(Weight::Warning, kAway);
        }
        QCOMPARE(int(m_said.size()), LogLimit::kAtOnce);
        m_clock.runFor(LogLimit::kAtOnce * LogLimit::kOneEachMs);
    }
}

QTEST_APPLESS_MAIN(TestLogLimit)
#include "test_log_limit.moc"
