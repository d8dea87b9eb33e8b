#include <random>

#include <QtTest/QtTest>

#include "support/host_history.h"

/// The same random history on a driver that remembers and on one that forgets before each step what
/// went over the line: a host must see no difference.

namespace {

/// What a history mostly consists of.
struct Mix
{
    const char *name;
    int blockWords; ///< few: blocks are cut, and may overlap
    int calm;       ///< percent of polls with the answer that was there before
    int restless;   ///< percent of steps that are no polls
    bool forbidden; ///< the host does from within its callback what it must not
};

class HistoryMaker
{
public:
    HistoryMaker(const Mix &mix, unsigned seed)
        : m_mix(mix)
        , m_chance(seed)
    {}

    QByteArray make(int steps)
    {
        QByteArray history = start() + "; " + watch();
        for (int i = 0; i < steps; ++i) {
            history += "; " + (percent(m_mix.restless) ? other() : poll());
        }
        return history;
    }

private:
    int below(int end) { return static_cast<int>(m_chance() % static_cast<unsigned>(end)); }
    bool percent(int share) { return below(100) < share; }

    QByteArray start() { return "start " + QByteArray::number(m_mix.blockWords); }

    QByteArray range(int mostUnits)
    {
        static const char *const starts[] = {"D_W:10*",   "D_W:12*",   "D_W:17*", "D_W:300*",
                                             "M_W:2*",    "TX:3*",     "TX:5*",   "2/D_W:10*",
                                             "M_bit:40*", "D_bit:170*"};
        return starts[below(10)] + QByteArray::number(1 + below(mostUnits));
    }

    QByteArray watch()
    {
        QByteArray step("watch");
        for (int i = 1 + below(5); i > 0; --i) {
            step += ' ' + range(8);
        }
        return step;
    }

    // The numbers are few, so that what was there comes again, and neighbours differ in few words.
    QByteArray value()
    {
        m_value = percent(m_mix.calm) ? m_value : below(3) * 10 + below(10);
        return QByteArray::number(m_value);
    }

    QByteArray poll()
    {
        static const char *const faults[] = {" check", " short", " silent", " lower", " foreign"};
        return "poll " + value() + (percent(8) ? faults[below(5)] : "");
    }

    QByteArray panelStep()
    {
        switch (below(3)) {
        case 0:
            return "write " + range(below(8) == 0 ? 20 : 3) + '=' + QByteArray::number(below(8));
        case 1:
            return "once " + range(6);
        default:
            return "look " + range(8);
        }
    }

    QByteArray forbiddenStep()
    {
        switch (below(5)) {
        case 0:
            return watch();
        case 1:
            return start() + " & " + watch();
        case 2:
            return "send & answer " + value() + " & " + poll();
        default:
            return "answer " + value() + (percent(50) ? " & " + poll() : QByteArray());
        }
    }

    QByteArray other()
    {
        switch (below(16)) {
        case 0:
            return start() + "; " + watch();
        case 1:
            return watch();
        case 2:
            return "send; " + watch();
        case 3:
            return "items " + range(6) + ' ' + range(6);
        case 4:
            return percent(50) ? "ask nothing" : (percent(50) ? "ask read" : "ask write");
        case 5:
        case 6:
        case 7:
            return "within " + (m_mix.forbidden ? forbiddenStep() : panelStep());
        default:
            return panelStep();
        }
    }

    const Mix &m_mix;
    std::mt19937 m_chance;
    int m_value = 0;
};

} // namespace

static const Mix kMixes[] = {
    {"screens of a day", 60, 90, 5, false},           {"busy screens", 60, 60, 40, false},
    {"blocks that overlap", 4, 80, 20, false},        {"blocks of a word", 1, 80, 20, false},
    {"much that differs a little", 8, 20, 20, false}, {"a host out of bounds", 6, 60, 40, true},
};

class TestShortWay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memoryIsNotSeen_data()
    {
        QTest::addColumn<int>("mix");
        QTest::addColumn<int>("seed");

        for (int mix = 0; mix < static_cast<int>(sizeof kMixes / sizeof kMixes[0]); ++mix) {
            for (int seed = 1; seed <= 3; ++seed) {
                QTest::newRow(qPrintable(latin(kMixes[mix].name) + QString::number(seed)))
                    << mix << seed;
            }
        }
    }

    void memoryIsNotSeen()
    {
        QFETCH(int, mix);
        QFETCH(int, seed);
        compareWithForgetful(HistoryMaker(kMixes[mix], static_cast<unsigned>(seed)).make(250));
    }
};

QTEST_APPLESS_MAIN(TestShortWay)
#include "test_short_way.moc"
