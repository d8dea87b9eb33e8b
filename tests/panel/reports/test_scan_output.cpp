#include "host/support/test_registers.h"

#include "panel/reports/scan_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestScanOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysHowFarRegistersReach();
    void hasTheSameInJson();
};

namespace {

FoundStation foundStation()
{
    FoundStation found;
    found.station = 7;
    found.noteAnswer(10);
    found.noteAnswer(20.04);
    const auto add = [&](const char *reg, RegisterReach::State state, int highest, bool toLimit) {
        RegisterReach reach;
        reach.reg = testRegister(reg);
        reach.state = state;
        reach.highest = highest;
        reach.toLimit = toLimit;
        found.registers.append(reach);
    };
    add("D_W", RegisterReach::State::Present, 4999, false);
    add("M_W", RegisterReach::State::Present, 255, true);
    add("OCT", RegisterReach::State::Absent, 0, false);
    add("HEX", RegisterReach::State::Unknown, 0, false);
    return found;
}

} // namespace

void TestScanOutput::saysHowFarRegistersReach()
{
    QCOMPARE(foundText(foundStation(), QLatin1String("serial /dev/x,9600,8,NONE,1")),
             QByteArray("station 7 on serial /dev/x,9600,8,NONE,1: 2 answers, mean 15.0 ms, worst "
                        "20.0 ms\n"
                        "  D_W    0 to 4999\n"
                        "  M_W    0 to 255, no higher one was asked for\n"
                        "  OCT    not there\n"
                        "  HEX    not found out\n"));
}

void TestScanOutput::hasTheSameInJson()
{
    const QByteArray line = foundJson(foundStation(), QLatin1String("sim"));
    QCOMPARE(line.count('\n'), 1);
    const QJsonObject json = QJsonDocument::fromJson(line).object();
    QCOMPARE(json.value(QLatin1String("station")).toInt(), 7);
    QCOMPARE(json.value(QLatin1String("mean_ms")).toDouble(), 15.0);
    QCOMPARE(json.value(QLatin1String("worst_ms")).toDouble(), 20.0);
    const QJsonArray registers = json.value(QLatin1String("registers")).toArray();
    QCOMPARE(registers.at(0).toObject(),
             (QJsonObject{{QLatin1String("register"), QLatin1String("D_W")},
                          {QLatin1String("state"), QLatin1String("present")},
                          {QLatin1String("lowest"), QLatin1String("0")},
                          {QLatin1String("highest"), QLatin1String("4999")},
                          {QLatin1String("to_limit"), false}}));
    QCOMPARE(registers.at(2).toObject().value(QLatin1String("state")).toString(),
             QLatin1String("absent"));
    QCOMPARE(registers.at(3).toObject().size(), 2);
}

QTEST_APPLESS_MAIN(TestScanOutput)
#include "test_scan_output.moc"
