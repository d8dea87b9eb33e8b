#include "plc/setup/memory_file.h"
#include "support/full_disk.h"
#include "support/rows.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace plc;

static const Case<const char *, const char *> kSaved[] = {
    // values as they are set, and as they are saved
    {"nothing", "", ""},
    {"zero", "D_W:5=0", ""},
    {"word", "1/D_W:5=7", "1/D_W:0=0,0,0,0,0,7\n"},
    {"both ends of a device", "1/D_W:0=1|1/D_W:9999=2",
     "1/D_W:0=1\n1/D_W:9984=0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,2\n"},
    {"bit", "1/M_bit:1.15=1", "1/M_W:0=0,32768\n"},
    {"contact and word of a timer", "1/TX:255=1|1/T_W:0=9",
     "1/T_W:0=9\n1/TX:240=0,0,0,0,0,0,0,0,"
     "0,0,0,0,0,0,0,1\n"},
    {"special relay", "1/F_W:1=1", "1/F_W:0=0,1\n"},
    {"two stations", "C_W:0=3", "1/C_W:0=3\n2/C_W:0=3\n"},
};

static const Case<const char *, const char *> kWrong[] = {
    {"no setting", "D_W:1", "m:1: \"D_W:1\": expected [STATION/]REGISTER"},
    {"all of them", "# x\n9/D_W:1=1\nD_W:1=1\n\nD_W:1=x", "m:2: no station 9|m:5: \"D_W:1=x\""},
    {"beyond a device", "2/D_W:5000=1", "m:1: D_W:5000 does not exist in station 2"},
};

class TestMemoryFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saves_data() { addRows(kSaved); }
    void saves()
    {
        const auto &row = currentRow(kSaved);
        Bus bus = twoStations();
        QCOMPARE(loadMemory(latin(row.given).split(QLatin1Char('|')), latin("m"), bus),
                 QStringList());
        QByteArray text = memoryText(bus);
        QVERIFY(text.startsWith("# "));
        QCOMPARE(text.mid(text.indexOf('\n') + 1), QByteArray(row.expected));
        Bus again = twoStations();
        const QString copy = QString::fromLatin1(text).replace(QLatin1Char('\n'), latin("\r\n"));
        QCOMPARE(loadMemory(copy.split(QLatin1Char('\n')), latin("m"), again), QStringList());
        QCOMPARE(memoryText(again), text);
    }

    void mistakes_data() { addRows(kWrong); }
    void mistakes()
    {
        const auto &row = currentRow(kWrong);
        Bus bus = twoStations();
        const QStringList told =
            loadMemory(latin(row.given).split(QLatin1Char('\n')), latin("m"), bus);
        const QStringList expected = latin(row.expected).split(QLatin1Char('|'));
        QCOMPARE(told.size(), expected.size());
        for (int i = 0; i < told.size(); ++i) {
            QVERIFY2(told.at(i).startsWith(expected.at(i)), qPrintable(told.at(i)));
        }
    }

    void aFileIsReplacedAsAWhole()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(latin("memory"));
        Bus bus = twoStations();
        QVERIFY(!saveMemory(path, bus));
        bus.find(1)->station.memory().setWord('D', 0, 5);
        QVERIFY(!saveMemory(path, bus));
        const auto lines = readLines(path);
        QCOMPARE(std::get<QStringList>(lines).at(1), latin("1/D_W:0=5"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
        const auto error = saveMemory(folder.filePath(latin("no/memory")), bus);
        QVERIFY(error && error->message.contains(latin("cannot save the memory to ")));
    }

    void aFullDiskLeavesTheOldOne()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(latin("memory"));
        Bus bus = twoStations();
        QVERIFY(!saveMemory(path, bus));
        const auto before = readLines(path);
        for (int i = 0; i < 100; ++i) {
            bus.find(1)->station.memory().setWord('D', 2 * i, 5);
        }
        {
            const cnet::FullDisk full(100);
            QVERIFY(saveMemory(path, bus));
        }
        QCOMPARE(std::get<QStringList>(readLines(path)), std::get<QStringList>(before));
    }

    void readsWhatIsThere()
    {
        const QTemporaryDir folder;
        QVERIFY(std::holds_alternative<TextError>(readLines(folder.filePath(latin("none")))));
        QVERIFY(std::holds_alternative<TextError>(readLines(folder.path())));
        QVERIFY(std::holds_alternative<TextError>(readLines(latin("/dev/zero"))));
    }

private:
    static Bus twoStations()
    {
        Bus bus;
        bus.add(1);
        bus.add(2, Model::K120s);
        return bus;
    }
};

QTEST_APPLESS_MAIN(TestMemoryFile)
#include "test_memory_file.moc"
