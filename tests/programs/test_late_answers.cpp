#include "program.h"

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>
#include <vector>

/**
 * cnet-panel at a PLC whose answers come after their time-out: no value is ever shown at another
 * address than its own. The PLCs are all watched at the same time, for that takes its time.
 */
class TestLateAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyValueAtItsOwnAddress_data();
    void everyValueAtItsOwnAddress();
    void findsOutHowLongToWait_data();
    void findsOutHowLongToWait();

private:
    struct Plant
    {
        PlcProgram plc;
        Program panel;
    };

    bool start(Plant &plant, const QString &kind, const QString &faults, const QString &options);

    QTemporaryDir m_directory;
    std::vector<std::unique_ptr<Plant>> m_plants;
};

namespace {

const char *const kKinds[] = {"tcp", "pty"};

// With a time-out of 200 ms.
struct Fault
{
    const char *text;
    bool brings;    // values come at all
    bool needsMore; // none comes in time
};
const Fault kFaults[] = {{"delay=1800@10%", true, false},
                         {"delay=50..1200@30%", true, false},
                         {"delay=700..900", false, true},
                         {"delay=1600", false, true}};

const QMap<QString, int> kValues{{QLatin1String("100"), 111},
                                 {QLatin1String("300"), 333},
                                 {QLatin1String("500"), 555},
                                 {QLatin1String("700"), 777}};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// The first line that shows a value where it does not belong; nothing: there is none.
QByteArray wrongValue(const QList<QByteArray> &lines)
{
    for (const QByteArray &line : lines) {
        const QJsonObject object = jsonLines({line}).first();
        const int right = kValues.value(object.value(QLatin1String("address")).toString(), -1);
        QJsonArray values = object.value(QLatin1String("values")).toArray();
        if (object.contains(QLatin1String("value"))) {
            values.append(object.value(QLatin1String("value")));
        }
        for (const auto &value : values) {
            if (!value.isNull() && value.toInt(-1) != right) {
                return line;
            }
        }
    }
    return {};
}

int goodItems(const QList<QByteArray> &lines)
{
    QMap<QString, bool> good;
    for (const QJsonObject &line : jsonLines(lines)) {
        if (line.contains(QLatin1String("good"))) {
            good[line.value(QLatin1String("address")).toString()] =
                line.value(QLatin1String("good")).toBool();
        }
    }
    return static_cast<int>(good.values().count(true));
}

} // namespace

bool TestLateAnswers::start(Plant &plant, const QString &kind, const QString &fault,
                            const QString &options)
{
    const bool isTcp = kind == QLatin1String("tcp");
    const QString path = m_directory.filePath(QString::number(m_plants.size()));
    const QStringList place =
        isTcp ? words("--tcp 127.0.0.1:0") : QStringList{QLatin1String("--pty"), path};
    return plant.plc.serve(place, words("--set D_W:100=111 --set D_W:300=333 --set D_W:500=555 "
                                        "--set D_W:700=777 --fault") +
                                      QStringList{fault}) &&
           plant.panel.start(
               QLatin1String(CNET_PANEL),
               words("monitor --format json D_W:100 D_W:300 D_W:500 D_W:700") +
                   options.split(QLatin1Char(' '), Qt::SkipEmptyParts) +
                   QStringList{QLatin1String("--link"),
                               QLatin1String(isTcp ? "tcp:" : "serial:") + plant.plc.place()});
}

void TestLateAnswers::initTestCase()
{
    for (const char *kind : kKinds) {
        for (const Fault &fault : kFaults) {
            m_plants.push_back(std::make_unique<Plant>());
            QVERIFY(start(*m_plants.back(), QLatin1String(kind), QLatin1String(fault.text),
                          QLatin1String("--timeout 200 --for 12")));
        }
    }
    for (const char *kind : kKinds) {
        m_plants.push_back(std::make_unique<Plant>());
        QVERIFY(start(*m_plants.back(), QLatin1String(kind), QLatin1String("delay=1600"), {}));
    }
}

void TestLateAnswers::everyValueAtItsOwnAddress_data()
{
    QTest::addColumn<int>("plant");
    QTest::addColumn<bool>("brings");
    QTest::addColumn<bool>("needsMore");
    int plant = 0;
    for (const char *kind : kKinds) {
        for (const Fault &fault : kFaults) {
            QTest::addRow("%s, %s", kind, fault.text) << plant++ << fault.brings << fault.needsMore;
        }
    }
}

// Whoever gave a time-out that is too short is told which would do.
void TestLateAnswers::everyValueAtItsOwnAddress()
{
    QFETCH(int, plant);
    QFETCH(bool, brings);
    QFETCH(bool, needsMore);
    Program &panel = m_plants.at(static_cast<size_t>(plant))->panel;
    QVERIFY(panel.exitCode() >= 0);
    QCOMPARE(wrongValue(panel.lines()), QByteArray());
    QVERIFY2(!brings || panel.lines().join().contains("\"event\":\"change\""),
             panel.errors().constData());
    const QRegularExpression needed(QLatin1String(
        "station 1 answers after (\\d+) ms, the time-out is 200 ms: (\\d+) ms would do"));
    const auto said = needed.match(QString::fromLocal8Bit(panel.errors()));
    QVERIFY2(!needsMore || said.hasMatch(), panel.errors().constData());
    QVERIFY(!said.hasMatch() || said.captured(2).toInt() > said.captured(1).toInt());
}

void TestLateAnswers::findsOutHowLongToWait_data()
{
    QTest::addColumn<int>("plant");
    int plant = static_cast<int>(std::size(kKinds) * std::size(kFaults));
    for (const char *kind : kKinds) {
        QTest::newRow(kind) << plant++;
    }
}

void TestLateAnswers::findsOutHowLongToWait()
{
    QFETCH(int, plant);
    Program &panel = m_plants.at(static_cast<size_t>(plant))->panel;
    QVERIFY2(!panel
                  .waitForLine([&](const QByteArray &) {
                      return goodItems(panel.lines()) == kValues.size();
                  })
                  .isEmpty(),
             panel.lines().join('\n').constData());
    panel.signal(SIGINT);
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(wrongValue(panel.lines()), QByteArray());
}

QTEST_GUILESS_MAIN(TestLateAnswers)
#include "test_late_answers.moc"
