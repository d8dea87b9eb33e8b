#include "gateway/support/written_line.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** How often a line may be written to, how long a request waits, and other rules meanwhile. */
class TestWriteLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesTooManyOfAValue();
    void refusesTooManyOfTheLine();
    void refusesWhatWaitedTooLong();
    void refusesWhatCameTooLate();
    void takesOtherRules();
};

void TestWriteLimits::refusesTooManyOfAValue()
{
    WriteRules rules = writeRules();
    rules.value = {12, 2};
    WrittenLine line(rules);
    line.open();
    QCOMPARE(line.askAndWait("1", "zones[0]", "1", 500), texts({"1 taken [1.0]"}));
    QCOMPARE(line.askAndWait("2", "zones[0]", "2", 500), texts({"2 taken [2.0]"}));
    line.ask("3", "zones[0]", "3");
    QCOMPARE(line.take(),
             texts({"3 refused: too often: zones[0] may be written 12 times a minute"}));
    QCOMPARE(line.askAndWait("4", "zones[1]", "4", 4100), texts({"4 taken [4.0]"}));
    QCOMPARE(line.askAndWait("5", "zones[0]", "5"), texts({"5 taken [5.0]"}));
    // What is refused for another reason costs nothing.
    for (int i = 0; i < 10; ++i) {
        line.ask("6", "speed", "1000");
    }
    line.take();
    QCOMPARE(line.askAndWait("7", "speed", "1"), texts({"7 taken [1.0]"}));
}

void TestWriteLimits::refusesTooManyOfTheLine()
{
    WriteRules rules = writeRules();
    rules.line = {60, 2};
    WrittenLine line(rules);
    line.open();
    line.ask("1", "zones[0]", "1");
    line.ask("2", "zones[1]", "2");
    line.ask("3", "zones[2]", "3");
    QCOMPARE(line.take(),
             texts({"3 refused: too often: the line may be written 60 times a minute"}));
    line.plant.run(1000);
    QCOMPARE(line.take().size(), 2);
    QCOMPARE(line.askAndWait("4", "zones[2]", "4"), texts({"4 taken [4.0]"}));
}

void TestWriteLimits::refusesWhatWaitedTooLong()
{
    WriteRules rules = writeRules();
    rules.waitMs = 200;
    WrittenLine line(rules);
    line.open();
    // The first is sent and not answered for longer than the others may wait.
    line.plant.line->swallows = isWrite;
    line.ask("1", "speed", "1");
    line.plant.run(50);
    line.ask("2", "count", "2");
    line.plant.run(100);
    line.ask("3", "big", "3");
    line.plant.run(20);
    QCOMPARE(line.take(), QStringList());
    line.plant.run(100);
    QCOMPARE(line.take(), texts({"2 refused: it could not be sent within 200ms"}));
    line.plant.run(100);
    QCOMPARE(line.take(), texts({"3 refused: it could not be sent within 200ms"}));
    line.plant.line->swallows = nullptr;
    line.plant.run(20000);
    QCOMPARE(line.take().size(), 1);
    QCOMPARE(line.plant.word(11), 0);
    QCOMPARE(line.plant.word(40), 0);
}

void TestWriteLimits::refusesWhatCameTooLate()
{
    WrittenLine line;
    line.open();
    line.plant.run(20000);
    line.writer->ask(requestOf("1", "speed", "1"), line.plant.clock.nowMs() - 10000);
    QCOMPARE(line.take(), texts({"1 refused: it could not be sent within 10s"}));
    line.plant.run(1000);
    QCOMPARE(line.takeWrites(), QStringList());
}

void TestWriteLimits::takesOtherRules()
{
    WrittenLine line;
    line.open();
    line.ask("1", "speed", "50");
    line.ask("2", "count", "5");
    line.ask("3", "big", "6");
    const WriteRules rules = writeRules({ruleOf("big")});
    line.writer->setRules(rules, line.allowed(rules));
    QCOMPARE(line.take(), texts({"2 refused: count may not be written from outside",
                                 "1 refused: speed may not be written from outside"}));
    line.plant.run(3000);
    QCOMPARE(line.take(), texts({"3 taken [6]"}));
    QCOMPARE(line.askAndWait("4", "speed", "1"),
             texts({"4 refused: speed may not be written from outside"}));
}

QTEST_GUILESS_MAIN(TestWriteLimits)
#include "test_write_limits.moc"
