// A host that knows the driver by its documentation only: it includes none of its headers, declares
// the records itself and finds every function by name.

#include <dlfcn.h>

#include <cstring>

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtTest/QtTest>

#include "support/rows.h"

namespace {

struct Request
{
    int opKind;
    int stationNo;
    QString regName;
    int startAddr;
    int count;
    unsigned char data[1024];
};

struct Frame
{
    unsigned char sendBuf[1024];
    int sendLen;
    int recvLen;
    int dataPos;
    int unitCount;
    int spare;
    Request var;
};

struct Key
{
    QString keyText;
    int keyA;
    int keyB;
    int stationNo;
    QString regName;
    QString addrText;
    int startAddr;
    int bitFlag;
    int count;
    unsigned char data[1024];
};

struct RecipeItem
{
    int deviceNo;
    int stationNo;
    QString regName;
    int startAddr;
    int count;
    int bufOffset;
    int reserved;
};

Key keyOf(int stationNo, const char *regName, int startAddr, int count)
{
    Key key = Key();
    key.stationNo = stationNo;
    key.regName = QLatin1String(regName);
    key.startAddr = startAddr;
    key.count = count;
    return key;
}

typedef int (*Callback)(int, int, QString &, int);

QStringList g_calls;

int recordCall(int deviceNo, int stationNo, QString &name, int address)
{
    g_calls.append(latin("%1 %2 %3 %4")
                       .arg(QString::number(deviceNo), QString::number(stationNo), name,
                            QString::number(address)));
    return 0;
}

} // namespace

class TestForeignHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_library = dlopen(DRIVER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(m_library != nullptr, dlerror());
        QString parameter;
        find<void (*)(QString &)>("intf_getDriverParameter")(parameter);
        QVERIFY(parameter.endsWith(latin("TX,CX,D_bit")));
    }

    void cleanupTestCase() { QCOMPARE(dlclose(m_library), 0); }

    void init()
    {
        g_calls.clear();
        m_shared.fill('\0');
        m_recipe.fill('\0');
        find<void (*)(Callback)>("intf_setAddrValueChangeCallBack")(&recordCall);
        int status = -1;
        const int result =
            find<int (*)(unsigned char *, int, unsigned char *, int *, const char *, QMutex *)>(
                "intf_initProperty")(reinterpret_cast<unsigned char *>(m_shared.data()), 0,
                                     reinterpret_cast<unsigned char *>(m_recipe.data()), &status,
                                     "3#0#0#2#60", &m_lock);
        QCOMPARE(result, 1);
        QCOMPARE(status, 0);
    }

    void everyNameIsThere_data()
    {
        QTest::addColumn<QByteArray>("name");
        const QByteArray names(
            "intf_getProtocolType intf_getDriverParameter intf_getDriverPropertyPage "
            "intf_SetDriverPropertyPage intf_setAddrValueChangeCallBack intf_getVersion "
            "intf_getRegListByType intf_getRegDiscription intf_initProperty "
            "intf_checkAddrValidity intf_checkAddr intf_addrMerge intf_multiCopy "
            "intf_getSendFrame intf_dealRcvFrame intf_getData intf_setData "
            "intf_addConditionRead intf_setRcpAddress");
        const QList<QByteArray> all = names.split(' ');
        for (const QByteArray &name : all) {
            QTest::newRow(name.constData()) << name;
        }
    }

    void everyNameIsThere()
    {
        QFETCH(QByteArray, name);
        QVERIFY(dlsym(m_library, name.constData()) != nullptr);
    }

    void describesItselfAtOnce()
    {
        int type = -1;
        find<void (*)(int *)>("intf_getProtocolType")(&type);
        QCOMPARE(type, 0);
        QCOMPARE(find<QString (*)()>("intf_getVersion")(), latin("2.0.0.0"));
        QString parameter;
        find<void (*)(QString &)>("intf_getDriverParameter")(parameter);
        QCOMPARE(
            parameter,
            latin(
                "0,38400,8,NONE,1,0,1,192.168.0.100,8000,ls_master_k_cnet,D_W,C_W,T_W,K_W,P_W,F_W,"
                "L_W,M_W,P_bit,K_bit,M_bit,L_bit,F_bit,TX,CX,D_bit"));
    }

    void describesRegisters()
    {
        QList<QString> names;
        QCOMPARE(find<int (*)(int, QList<QString> &)>("intf_getRegListByType")(0, names), 1);
        QCOMPARE(sizeOf(names), 8);
        QList<QString> description;
        QCOMPARE(find<int (*)(const QString &, QList<QString> &)>("intf_getRegDiscription")(
                     latin("D_bit"), description),
                 0);
        QCOMPARE(QStringList(description).join(latin(" ")), latin("DDDD.dd 0.0 9999.15 0 1"));
    }

    void keepsThePropertyPageToItself()
    {
        find<void (*)(const QString &)>("intf_SetDriverPropertyPage")(latin("any text"));
        QString page;
        find<void (*)(QString &)>("intf_getDriverPropertyPage")(page);
        QCOMPARE(page, latin("0_0"));
    }

    void checksAddresses()
    {
        int addr = -1;
        QCOMPARE(find<int (*)(const QString &, const QString &, int &, int, int)>(
                     "intf_checkAddrValidity")(latin("M_bit"), latin("255.15"), addr, 1, 0),
                 0);
        QCOMPARE(addr, 4095);
        QCOMPARE(find<int (*)(const QString &, const QString &, int &, int, int, int)>(
                     "intf_checkAddr")(latin("D_W"), latin("10000"), addr, 0, 1, 0),
                 2);
    }

    void makesSeries()
    {
        QString reg = latin("M_bit");
        QVector<QString> texts;
        QVector<int> numbers;
        QCOMPARE(find<int (*)(QString &, int, int, int, QVector<QString> &, QVector<int> &)>(
                     "intf_multiCopy")(reg, 4094, 3, 1, texts, numbers),
                 2);
        QCOMPARE(QStringList(texts.toList()).join(latin(" ")), latin("255.14 255.15 255.15"));
        QCOMPARE(numbers.at(2), 4095);
    }

    void readsAndNotifies()
    {
        QList<Key> keys;
        keys.append(keyOf(1, "D_W", 100, 5));
        QCOMPARE(find<int (*)(QList<Key> &)>("intf_addrMerge")(keys), 1);

        const Frame frame = nextFrame();
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen),
                 QByteArray("\x05"
                            "01rSB08%DW0010005\x04"
                            "EF"));
        QCOMPARE(frame.recvLen, 33);
        QCOMPARE(frame.dataPos, 10);
        QCOMPARE(frame.unitCount, 5);
        QCOMPARE(frame.spare, 0);
        QCOMPARE(frame.var.opKind, 4);
        QCOMPARE(frame.var.regName, latin("D_W"));
        QCOMPARE(frame.var.count, 5);

        QString errorText;
        QCOMPARE(answer("01rSB010A00000000000000001234", &errorText), 1);
        QCOMPARE(errorText, latin("1#D_W100(5)(33)"));
        QCOMPARE(g_calls, QStringList(latin("3 1 D_W 104")));

        unsigned char bytes[4] = {9, 9, 9, 9};
        QString reg = latin("D_W");
        QCOMPARE(find<int (*)(int, QString &, int, int, unsigned char *)>("intf_getData")(
                     1, reg, 104, 1, bytes),
                 1);
        QCOMPARE(static_cast<int>(bytes[0]), 0x34);
        QCOMPARE(static_cast<int>(bytes[1]), 0x12);
        QCOMPARE(static_cast<int>(bytes[2]), 9);
    }

    void writes()
    {
        unsigned char values[4] = {0x34, 0x12, 0xCD, 0xAB};
        QString reg = latin("D_W");
        QCOMPARE(find<int (*)(int, QString &, int, int, unsigned char *, int)>("intf_setData")(
                     1, reg, 100, 2, values, 9),
                 1);
        const Frame frame = nextFrame();
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen),
                 QByteArray("\x05"
                            "01wSB08%DW00100021234ABCD\x04"
                            "C5"));
        QCOMPARE(frame.var.opKind, 9);
        QCOMPARE(answer("01wSB"), 1);
        QCOMPARE(nextFrame().sendLen, 0);
    }

    void readsOnCondition()
    {
        Key key = keyOf(2, "T_W", 7, 1);
        QCOMPARE(find<int (*)(Key &, int)>("intf_addConditionRead")(key, 5), 1);
        QCOMPARE(nextFrame().var.opKind, 5);
        QCOMPARE(answer("02rSB01020001"), 1);
        QCOMPARE(g_calls, QStringList(latin("-1 -1 -1 0")));
    }

    void transfersRecipes()
    {
        const RecipeItem item = {3, 1, latin("D_W"), 10, 2, 4, 0};
        QVector<RecipeItem> items;
        items.append(item);
        QCOMPARE(find<int (*)(QVector<RecipeItem> &)>("intf_setRcpAddress")(items), 1);
        m_shared[60116] = 1;
        QCOMPARE(nextFrame().var.count, 2);
        QCOMPARE(answer("01rSB01040102FFFE"), 1);
        QCOMPARE(static_cast<int>(m_shared.at(60116)), 0);
        QCOMPARE(m_recipe.mid(8, 4), QByteArray("\x02\x01\xFE\xFF"));
        QCOMPARE(g_calls, QStringList() << latin("0 -1 RWI 4") << latin("0 -1 RWI 5"));
    }

private:
    // The function of that name with the type that the documentation gives.
    template <typename Function>
    Function find(const char *name) const
    {
        Function function = nullptr;
        void *const symbol = dlsym(m_library, name);
        std::memcpy(&function, &symbol, sizeof function);
        return function;
    }

    Frame nextFrame() const
    {
        Frame frame = Frame();
        find<int (*)(Frame &)>("intf_getSendFrame")(frame);
        return frame;
    }

    // Hands in ACK, the text, ETX and its block check.
    int answer(const char *body, QString *errorText = nullptr) const
    {
        const QByteArray text = QByteArray("\x06") + body + "\x03";
        unsigned sum = 0;
        for (const char character : text) {
            sum += static_cast<unsigned char>(character);
        }
        QByteArray reply = text + QByteArray::number(sum % 256 + 256, 16).toUpper().right(2);
        QString unused;
        return find<int (*)(QByteArray &, QString &)>("intf_dealRcvFrame")(
            reply, errorText != nullptr ? *errorText : unused);
    }

    void *m_library = nullptr;
    QByteArray m_shared = QByteArray(60117, '\0');
    QByteArray m_recipe = QByteArray(200, '\0');
    QMutex m_lock;
};

QTEST_APPLESS_MAIN(TestForeignHost)
#include "test_foreign_host.moc"
