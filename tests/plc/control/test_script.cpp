#include "plc/control/script.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Case<const char *, qint64> kDurations[] = {
    {"0s", "0s", 0},
    {"200ms", "200ms", 200},
    {"1.5s", "1.5s", 1500},
    {"2m", "2m", 120000},
    {"1000h", "1000h", 3600000000LL},
    {"no unit", "5", -1},
    {"no number", "s", -1},
    {"unknown unit", "5d", -1},
    {"negative", "-5s", -1},
    {"too long", "1000.1h", -1},
    {"two points", "1.2.3s", -1},
    {"exponent", "1e3s", -1},
    {"nothing", "", -1},
    {"not a number", "nans", -1},
};

static const Case<const char *, const char *> kOrders[] = {
    // when each line runs, by its number, within a second
    {"at the start", "set D_W:1=1\nset D_W:1=2", "0:1 0:2"},
    {"at", "at 500ms faults\nat 100ms faults", "100:2 500:1"},
    {"after", "at 100ms faults\nafter 50ms faults\nafter 50ms faults", "100:1 150:2 200:3"},
    {"together with the line above", "at 100ms faults\nfaults", "100:1 100:2"},
    {"every", "at 200ms faults\nevery 300ms faults\nafter 100ms faults", "200:1 300:3 500:2 800:2"},
    {"remarks", "\n# nothing\n  at 1ms  faults \r\n", "1:3"},
};

static const Case<const char *, const char *> kMistakes[] = {
    {"time", "at five faults", "s:1: \"five\": expected a time"},
    {"time without a command", "\nat 5s", "s:2: expected a command behind the time"},
    {"too often", "every 9ms faults", "s:1: \"9ms\": expected 10ms or more"},
    {"command", "at 5s sing", "s:1: \"sing\": expected one of"},
    {"place", "set 7/D_W:1=1", "s:1: no station 7"},
    {"all of them", "sing\nfaults\nset D_W:1=x\nat x y", "s:1: |s:3: |s:4: "},
};

class TestScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_bus = Bus();
        m_bus.add(1);
        m_target.bus = &m_bus;
    }

    void durations_data() { addRows(kDurations); }
    void durations()
    {
        const auto &row = currentRow(kDurations);
        QCOMPARE(parseDuration(latin(row.given)).value_or(-1), row.expected);
    }

    void orders_data() { addRows(kOrders); }
    void orders()
    {
        const auto &row = currentRow(kOrders);
        ScriptSchedule schedule(parsed(row.given));
        QStringList found;
        for (auto next = schedule.nextMs(); next && *next < 1000; next = schedule.nextMs()) {
            QVERIFY(!schedule.takeDue(*next - 1));
            found << QString::fromLatin1("%1:%2").arg(*next).arg(schedule.takeDue(*next)->number);
        }
        QCOMPARE(found.join(QLatin1Char(' ')), latin(row.expected));
    }

    void missedRepetitionsAreLeftOut()
    {
        ScriptSchedule schedule(parsed("every 100ms faults"));
        QVERIFY(schedule.takeDue(250));
        QVERIFY(!schedule.takeDue(250));
        QCOMPARE(schedule.nextMs().value_or(-1), qint64(300));
    }

    void mistakes_data() { addRows(kMistakes); }
    void mistakes()
    {
        const auto &row = currentRow(kMistakes);
        Mistakes mistakes(latin("s"));
        parseScript(latin(row.given).split(QLatin1Char('\n')), m_target, mistakes);
        const QStringList expected = latin(row.expected).split(QLatin1Char('|'));
        const QStringList told = mistakes.told();
        QCOMPARE(told.size(), expected.size());
        for (int i = 0; i < told.size(); ++i) {
            QVERIFY2(told.at(i).startsWith(expected.at(i)), qPrintable(told.at(i)));
        }
    }

    void endlessMistakesAreCounted()
    {
        Mistakes mistakes(latin("s"));
        parseScript(latin("sing\n").repeated(1000).split(QLatin1Char('\n')), m_target, mistakes);
        QCOMPARE(mistakes.told().size(), kMostMistakes + 1);
        QCOMPARE(mistakes.told().last(), latin("s: 1000 mistakes in all"));
    }

    void readingDoesNothing()
    {
        bool quit = false;
        m_target.quit = [&quit] { quit = true; };
        m_target.save = [&quit] {
            quit = true;
            return std::nullopt;
        };
        QCOMPARE(parsed("set D_W:1=7\nfault silence\nramp D_W:5\nsave\nquit").size(),
                 std::size_t(5));
        m_target = ControlTarget();
        QVERIFY(!quit);
        const Unit &unit = *m_bus.find(1);
        QCOMPARE(*unit.station.memory().word('D', 1), quint16(0));
        QVERIFY(unit.faults.all().empty() && unit.motions.empty());
    }

private:
    std::vector<ScriptLine> parsed(const char *text)
    {
        Mistakes mistakes(latin("s"));
        auto lines = parseScript(latin(text).split(QLatin1Char('\n')), m_target, mistakes);
        return mistakes.told().isEmpty() ? lines : std::vector<ScriptLine>();
    }

    Bus m_bus;
    ControlTarget m_target;
};

QTEST_APPLESS_MAIN(TestScript)
#include "test_script.moc"
