// The library as panels start, stop and replace it: loaded, unloaded and loaded again in one
// process, and loaded twice for two lines.

#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "support/rows.h"

namespace {

// The function of the loaded file, with the type that the header gives it.
#define CALL(name) find<decltype(&(name))>(#name)

// One loaded file.
class Library
{
public:
    explicit Library(const QString &fileName)
        : m_handle(dlopen(QFile::encodeName(fileName).constData(), RTLD_NOW | RTLD_LOCAL))
    {}
    ~Library() { unload(); }

    bool isLoaded() const { return m_handle != nullptr; }

    void unload()
    {
        if (m_handle != nullptr) {
            dlclose(m_handle);
        }
        m_handle = nullptr;
    }

    template <typename Function>
    Function find(const char *name) const
    {
        Function function = nullptr;
        void *const symbol = dlsym(m_handle, name);
        std::memcpy(&function, &symbol, sizeof function);
        return function;
    }

    void start(const char *props) const
    {
        int status = -1;
        CALL(intf_initProperty)(nullptr, 0, nullptr, &status, props, nullptr);
    }

    void write(int address, int value) const
    {
        unsigned char data[2] = {static_cast<unsigned char>(value & 0xFF),
                                 static_cast<unsigned char>(value >> 8)};
        QString reg = latin("D_W");
        CALL(intf_setData)(1, reg, address, 1, data, 0);
    }

    int value(int address) const
    {
        unsigned char data[2] = {9, 9};
        QString reg = latin("D_W");
        CALL(intf_getData)(1, reg, address, 1, data);
        return data[0] | data[1] << 8;
    }

    void monitor(int address) const
    {
        KEY_ADDRESS key = KEY_ADDRESS();
        key.stationNo = 1;
        key.regName = latin("D_W");
        key.startAddr = address;
        key.count = 1;
        QList<KEY_ADDRESS> keys;
        keys.append(key);
        CALL(intf_addrMerge)(keys);
    }

    // The next frame up to its check, without control characters; empty when there is none.
    QByteArray nextFrame() const
    {
        FRAME_PRO frame = FRAME_PRO();
        CALL(intf_getSendFrame)(frame);
        const QByteArray bytes(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
        return bytes.mid(1, bytes.size() - 4);
    }

    void watch(ValueChangeCallback callback) const
    {
        CALL(intf_setAddrValueChangeCallBack)(callback);
    }

private:
    Q_DISABLE_COPY(Library)

    void *m_handle;
};

QStringList g_calls;

int record(const char *library, int deviceNo, int address)
{
    g_calls.append(latin("%1: device %2, address %3")
                       .arg(latin(library), QString::number(deviceNo), QString::number(address)));
    return 0;
}

int callOfOne(int deviceNo, int, QString &, int address)
{
    return record("one", deviceNo, address);
}

int callOfOther(int deviceNo, int, QString &, int address)
{
    return record("other", deviceNo, address);
}

// True while some part of the file is in this process's memory.
bool isMapped(const QString &fileName)
{
    QFile maps(latin("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) &&
           maps.readAll().contains(QFile::encodeName(QFileInfo(fileName).canonicalFilePath()));
}

} // namespace

class TestLibraryLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QByteArray pattern = QFile::encodeName(QDir::tempPath() + latin("/driver-XXXXXX"));
        QVERIFY(mkdtemp(pattern.data()) != nullptr);
        m_directory = QFile::decodeName(pattern);
        QVERIFY(QFile::copy(latin(DRIVER_LIBRARY), copy("libline_1.so")));
        QVERIFY(QFile::copy(latin(DRIVER_LIBRARY), copy("libline_2.so")));
    }

    void cleanupTestCase()
    {
        QFile::remove(copy("libline_1.so"));
        QFile::remove(copy("libline_2.so"));
        QVERIFY(QDir().rmdir(m_directory));
    }

    void init() { g_calls.clear(); }

    void unloadingTakesItOutOfMemory()
    {
        const QString file = latin(DRIVER_LIBRARY);
        QVERIFY(!isMapped(file));
        Library library(file);
        QVERIFY2(library.isLoaded(), dlerror());
        QVERIFY(isMapped(file));
        library.start("3#0#0#3#60");
        library.write(100, 0x1234);
        library.unload();
        QVERIFY(!isMapped(file));
    }

    void loadedAgainItStartsAfresh()
    {
        Library before((latin(DRIVER_LIBRARY)));
        QVERIFY2(before.isLoaded(), dlerror());
        before.start("3#0#0#3#60");
        before.watch(&callOfOne);
        before.monitor(100);
        before.write(100, 0x1234);
        QCOMPARE(g_calls, QStringList(latin("one: device 3, address 100")));
        QCOMPARE(before.value(100), 0x1234);
        QVERIFY(!before.nextFrame().isEmpty());
        before.unload();

        Library after((latin(DRIVER_LIBRARY)));
        QVERIFY2(after.isLoaded(), dlerror());
        QCOMPARE(after.value(100), 0);
        QCOMPARE(after.nextFrame(), QByteArray());
        after.monitor(100);
        after.write(100, 1);
        QCOMPARE(g_calls.size(), 1); // the new one knows no callback yet
        after.start("");             // a text without fields leaves the settings as they are
        after.watch(&callOfOther);
        after.monitor(100);
        after.write(100, 2);
        QCOMPARE(g_calls.last(), latin("other: device 0, address 100"));
    }

    // Texts are shared until one side changes them: none may lie in the library itself.
    void textsOutliveTheLibrary()
    {
        Library library((latin(DRIVER_LIBRARY)));
        QVERIFY2(library.isLoaded(), dlerror());
        const QString version = library.CALL(intf_getVersion)();
        QString page;
        library.CALL(intf_getDriverPropertyPage)(page);
        QList<QString> row;
        library.CALL(intf_getRegListByType)(0, row);
        library.CALL(intf_getRegDiscription)(latin("D_bit"), row);
        library.unload();
        QVERIFY(!isMapped(latin(DRIVER_LIBRARY)));
        QCOMPARE(version, latin("2.0.0.0"));
        QCOMPARE(page, latin("0_0"));
        QCOMPARE(row.first(), latin("P_bit"));
        QCOMPARE(row.last(), latin("1"));
    }

    void loadedManyTimes()
    {
        for (int round = 1; round <= 50; ++round) {
            const Library library((latin(DRIVER_LIBRARY)));
            QVERIFY2(library.isLoaded(), dlerror());
            QCOMPARE(library.value(round - 1), 0);
            library.start("3#0#0#3#60");
            library.write(round, 0x1234);
            QCOMPARE(library.value(round), 0x1234);
        }
        QVERIFY(!isMapped(latin(DRIVER_LIBRARY)));
    }

    void twoFilesHaveTwoStates()
    {
        const Library one(copy("libline_1.so"));
        const Library other(copy("libline_2.so"));
        QVERIFY2(one.isLoaded() && other.isLoaded(), dlerror());
        one.start("1#0#0#3#60");
        other.start("2#0#0#3#60");
        one.watch(&callOfOne);
        other.watch(&callOfOther);
        one.monitor(100);
        other.monitor(200);

        one.write(100, 0x1111);
        QCOMPARE(g_calls, QStringList(latin("one: device 1, address 100")));
        QCOMPARE(one.value(100), 0x1111);
        QCOMPARE(other.value(100), 0);
        QCOMPARE(one.nextFrame(), QByteArray("01wSB08%DW00100011111"));
        QCOMPARE(other.nextFrame(), QByteArray("01rSB08%DW0020001"));

        other.write(200, 0x2222);
        QCOMPARE(g_calls.last(), latin("other: device 2, address 200"));
        QCOMPARE(g_calls.size(), 2);
        QCOMPARE(one.value(200), 0);
    }

    void oneOfTwoIsUnloaded()
    {
        Library one(copy("libline_1.so"));
        const Library other(copy("libline_2.so"));
        QVERIFY2(one.isLoaded() && other.isLoaded(), dlerror());
        one.start("1#0#0#3#60");
        other.start("2#0#0#3#60");
        one.write(100, 0x1111);
        other.write(100, 0x2222);
        one.unload();
        QVERIFY(!isMapped(copy("libline_1.so")));
        QCOMPARE(other.value(100), 0x2222);
        QCOMPARE(other.nextFrame(), QByteArray("01wSB08%DW00100012222"));
    }

private:
    QString copy(const char *name) const { return m_directory + QLatin1Char('/') + latin(name); }

    QString m_directory;
};

QTEST_APPLESS_MAIN(TestLibraryLifetime)
#include "test_library_lifetime.moc"
