#include "program.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/** Items with types: cnet-panel read, write and identify with a simulated PLC. */
class TestTypedItems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsBackWhatItWrote_data();
    void readsBackWhatItWrote();
    void leavesTheOtherBitsAlone();
    void endsWithOneForAValueThatIsNone();
    void takesLists();
    void writesNothingOfABadList();
    void identifies();

private:
    QByteArray run(QList<QByteArray> arguments, int exitCode = 0);
    QByteArray listOf(const QByteArray &content);

    QTemporaryDir m_directory;
    std::unique_ptr<PlcProgram> m_plc;
    QByteArray m_errors;
};

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

void TestTypedItems::init()
{
    m_plc = std::make_unique<PlcProgram>();
    QVERIFY(
        m_plc->serve(words("--tcp 127.0.0.1:0"), words("--set D_W:7=0x8001 --set D_W:8=0x12A4")));
}

// @return standard output, its lines joined
QByteArray TestTypedItems::run(QList<QByteArray> arguments, int exitCode)
{
    Program panel;
    arguments += QList<QByteArray>{"--link", "tcp:" + m_plc->place().toLatin1()};
    if (!panel.startBytes(CNET_PANEL, arguments)) {
        return "did not start";
    }
    const int code = panel.exitCode();
    m_errors = panel.errors();
    const QByteArray output = panel.lines().join("; ");
    return code == exitCode ? output : "exit code " + QByteArray::number(code) + "; " + output;
}

QByteArray TestTypedItems::listOf(const QByteArray &content)
{
    const QString path = m_directory.filePath(QLatin1String("list"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
               ? '@' + QFile::encodeName(path)
               : QByteArray();
}

void TestTypedItems::readsBackWhatItWrote_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("words"); // that the PLC holds
    const auto row = [](const char *item, const char *value, const char *words) {
        QTest::newRow(item) << QByteArray(item) << QByteArray(value) << QByteArray(words);
    };
    row("D_W:100@f32", "12.5", "1/D_W:100  0 0x0000; 1/D_W:101  16712 0x4148");
    row("D_W:100@f32 high-first", "12.5", "1/D_W:100  16712 0x4148; 1/D_W:101  0 0x0000");
    row("D_W:100@i16*0.1", "-12.5", "1/D_W:100  65411 0xFF83; 1/D_W:101  0 0x0000");
    row("D_W:100@u64", "18446744073709551615", "1/D_W:100  65535 0xFFFF; 1/D_W:101  65535 0xFFFF");
    row("D_W:100@i64", "9007199254740993", "1/D_W:100  1 0x0001; 1/D_W:101  0 0x0000");
    row("D_W:100@bcd8", "12345678", "1/D_W:100  22136 0x5678; 1/D_W:101  4660 0x1234");
    row("D_W:100@string4", "\"AB,\"", "1/D_W:100  16961 0x4241; 1/D_W:101  44 0x002C");
    row("D_W:100@bool", "true", "1/D_W:100  1 0x0001; 1/D_W:101  0 0x0000");
}

void TestTypedItems::readsBackWhatItWrote()
{
    QFETCH(QByteArray, item);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, words);
    QCOMPARE(run({"write", item + '=' + value}), "1/" + item + '=' + value + ": written");
    QCOMPARE(run({"read", item}), "1/" + item + "  " + value);
    QCOMPARE(run({"read", "D_W:100*2"}), words);
}

void TestTypedItems::leavesTheOtherBitsAlone()
{
    QCOMPARE(run({"write", "D_W:7@bit3=1", "D_W:7@bit0=off"}),
             QByteArray("1/D_W:7@bit3=1: written; 1/D_W:7@bit0=0: written"));
    QCOMPARE(run({"read", "D_W:7", "D_W:7@bit3"}),
             QByteArray("1/D_W:7  32776 0x8008; 1/D_W:7@bit3  1"));
}

void TestTypedItems::endsWithOneForAValueThatIsNone()
{
    QCOMPARE(run({"read", "D_W:8@bcd4", "D_W:8"}, 1),
             QByteArray("1/D_W:8@bcd4  - (wrong BCD digit); 1/D_W:8  4772 0x12A4"));
    const QByteArray shown = run({"monitor", "--count", "2", "D_W:8@bcd4"}, 1);
    QVERIFY2(shown.contains("1/D_W:8@bcd4  - (wrong BCD digit)"), shown.constData());
    QVERIFY2(shown.contains("quality implausible"), shown.constData());
    run({"monitor", "--count", "2", "D_W:8@u16"});
}

void TestTypedItems::takesLists()
{
    const QByteArray list = listOf("# places\nD_W:7@u16\n\nD_W:7@i16\n");
    QCOMPARE(run({"read", list, "D_W:8@u16"}),
             QByteArray("1/D_W:7@u16  32769; 1/D_W:7@i16  -32767; 1/D_W:8@u16  4772"));
}

void TestTypedItems::writesNothingOfABadList()
{
    const QByteArray list = listOf("D_W:7@u16=1\nD_W:8@u16=70000\n");
    QCOMPARE(run({"write", list}, 2), QByteArray());
    QVERIFY2(m_errors.contains("list:2: 1/D_W:8: 70000 does not fit u16"), m_errors.constData());
    QCOMPARE(run({"read", "D_W:7@u16"}), QByteArray("1/D_W:7@u16  32769"));
}

void TestTypedItems::identifies()
{
    run({"write", "D_W:100@f32=12.5"});
    const QByteArray text = run({"identify", "D_W:100*2"});
    QVERIFY2(text.contains("1/D_W:100@f32              12.5; "), text.constData());
    QVERIFY2(!text.contains("string4"), text.constData());
    const QByteArray json = run({"identify", "D_W:8", "--format", "json"});
    QVERIFY2(json.contains("\"doubt\":\"wrong BCD digit\""), json.constData());
}

QTEST_GUILESS_MAIN(TestTypedItems)
#include "test_typed_items.moc"
