#include "gateway/main/config_file.h"

#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <atomic>

using namespace cnet::gateway;

/** A configuration with its tag files, and all mistakes of all files. */
class TestConfigFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void readsTheTagsAsWell();
    void saysTheMistakesOfAllFiles();
    void saysAMistakeOfASharedFileOnce();
    void saysWhatCannotBeRead();
    void readsOnAThreadOfItsOwn();
    void readsOnceMoreWhenItIsAskedMeanwhile();

private:
    void store(const char *name, const QByteArray &content) const
    {
        QFile file(m_folder->filePath(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    /** @return with the folder's name left out */
    QStringList mistakes() const
    {
        QStringList complaints;
        loadConfig(m_folder->filePath(QLatin1String("gateway.toml")), complaints);
        return complaints.replaceInStrings(m_folder->path() + QLatin1Char('/'), QString());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestConfigFile::readsTheTagsAsWell()
{
    store("a.csv", "name,register,address\nspeed,D_W,7\n");
    store("gateway.toml", "[line.press]\nlink = \"simulated\"\ntags = \"a.csv\"\n");
    QStringList complaints;
    const auto config = loadConfig(m_folder->filePath(QLatin1String("gateway.toml")), complaints);
    QCOMPARE(complaints, QStringList());
    QVERIFY(config && config->lines.first().tags);
    QCOMPARE(config->lines.first().tags->names(), QStringList({QLatin1String("speed")}));
}

void TestConfigFile::saysTheMistakesOfAllFiles()
{
    store("a.csv", "name,register,address\nspeed,D_W,10000\n");
    store("b.csv", "name,register,address\nlevel,D_W,7\n");
    store("gateway.toml", "statte = \"x\"\n"
                          "[line.press]\nlink = \"simulated\"\ntags = \"a.csv\"\n"
                          "[line.oven]\nlink = \"simulated\"\ntags = \"none.csv\"\n"
                          "[line.saw]\nlink = \"simulated\"\ntags = \"b.csv\"\nstation = 99\n"
                          "[line.mill]\nlink = \"simulated\"\n"
                          "[writes.saw]\nallow = [\"leve\"]\n");
    const QStringList said = mistakes();
    const QStringList expected{
        QLatin1String("gateway.toml:1:1: statte: there is no such key; did you mean state?"),
        QLatin1String("gateway.toml:7:8: line.oven.tags: cannot read none.csv: "),
        QLatin1String("gateway.toml:11:11: line.saw.station: expected a whole number"),
        QLatin1String("gateway.toml:12:1: line.mill: there is no tags; for example"),
        QLatin1String("gateway.toml:15:10: writes.saw.allow: no tag fits 'leve'; did you mean "),
        QLatin1String("a.csv:2:11: address: ")};
    QCOMPARE(int(said.size()), int(expected.size()));
    for (int i = 0; i < said.size(); ++i) {
        QVERIFY2(said.at(i).startsWith(expected.at(i)), qPrintable(said.join(QLatin1Char('\n'))));
    }
}

void TestConfigFile::saysAMistakeOfASharedFileOnce()
{
    store("a.csv", "name,register,address\nspeed,D_W,10000\n");
    store("gateway.toml", "[line.press]\nlink = \"simulated\"\ntags = \"a.csv\"\n"
                          "[line.oven]\nlink = \"simulated\"\ntags = \"a.csv\"\n");
    QCOMPARE(int(mistakes().size()), 1);
}

void TestConfigFile::saysWhatCannotBeRead()
{
    QCOMPARE(mistakes(),
             QStringList({QLatin1String("cannot read gateway.toml: No such file or directory")}));
    store("gateway.toml", QByteArray(5000000, '\n'));
    QCOMPARE(mistakes(), QStringList({QLatin1String("cannot read gateway.toml: it is no text "
                                                    "file")}));
    store("gateway.toml", "[line.press\n");
    QCOMPARE(int(mistakes().size()), 1);
    QVERIFY(mistakes().first().startsWith(QLatin1String("gateway.toml:1:12: ")));
}

void TestConfigFile::readsOnAThreadOfItsOwn()
{
    Qt::HANDLE thread = nullptr;
    ConfigReading reading([&thread](QStringList &complaints) {
        thread = QThread::currentThreadId();
        complaints.append(QLatin1String("wrong"));
        return std::nullopt;
    });
    Qt::HANDLE heard = nullptr;
    connect(&reading, &ConfigReading::finished, this, [&](const auto &config, const auto &wrong) {
        heard = QThread::currentThreadId();
        QVERIFY(!config);
        QCOMPARE(wrong, QStringList({QLatin1String("wrong")}));
    });
    reading.start();
    QTRY_VERIFY_WITH_TIMEOUT(heard != nullptr, 10000);
    QVERIFY(thread != nullptr && thread != QThread::currentThreadId());
    QCOMPARE(heard, QThread::currentThreadId());
}

void TestConfigFile::readsOnceMoreWhenItIsAskedMeanwhile()
{
    std::atomic<int> begun{0};
    std::atomic<bool> mayEnd{false};
    ConfigReading reading([&](QStringList & /*complaints*/) {
        ++begun;
        while (!mayEnd) {
            QThread::msleep(1);
        }
        return std::optional<GatewayConfig>(GatewayConfig());
    });
    int finished = 0;
    connect(&reading, &ConfigReading::finished, this, [&finished] { ++finished; });
    reading.start();
    QTRY_COMPARE(begun.load(), 1);
    reading.start();
    reading.start();
    mayEnd = true;
    QTRY_COMPARE(finished, 2);
    QCOMPARE(begun.load(), 2);
    reading.start();
    QTRY_COMPARE(finished, 3);
}

QTEST_GUILESS_MAIN(TestConfigFile)
#include "test_config_file.moc"
