#include "host/recipe/recipe_file.h"
#include <host/driver/driver.h>

#include <QtTest>

using namespace cnet;

class TestRecipeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void readsAnythingWithoutHarm_data();
    void readsAnythingWithoutHarm();
    void fillsIn_data();
    void fillsIn();

private:
    std::optional<RecipeFile> parse(const QByteArray &content, bool write, QString &error);

    Driver m_driver;
};

void TestRecipeFile::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

std::optional<RecipeFile> TestRecipeFile::parse(const QByteArray &content, bool write,
                                                QString &error)
{
    return RecipeFile::parse(
        content, write ? RecipeUse::Write : RecipeUse::Read, 7, m_driver.registers(),
        [this](const Item &item, QString &why) { return m_driver.check(item, Access::Read, why); },
        error);
}

void TestRecipeFile::reads_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("write");
    QTest::addColumn<QString>("items"); // "line station/register:address*count=values"
    const auto row = [](const char *name, const QByteArray &content, const char *items,
                        bool write = true) {
        QTest::newRow(name) << content << write << QString::fromLatin1(items);
    };
    row("all columns", "station,register,address,count,value\n2,D_W,100,2,5,0x10\n",
        "2 2/D_W:100*2=5,16");
    row("columns in another order", "count,address,station,register,value\n1,100,2,D_W,-1\n",
        "2 2/D_W:100=65535");
    row("no station", "register,address,count,value\nD_W,100,1,5\n", "2 7/D_W:100=5");
    row("an empty station", "station,register,address,value\n,D_W,100,5\n", "2 7/D_W:100=5");
    row("no count", "register,address,value\nD_W,100,5,6,7\n", "2 7/D_W:100*3=5,6,7");
    row("an empty count", "register,address,count,value\nD_W,100,,5,6\n", "2 7/D_W:100*2=5,6");
    row("no end of the last line", "register,address,value\nD_W,1,5", "2 7/D_W:1=5");
    row("lines of Windows", "register,address,value\r\nD_W,1,5\r\n", "2 7/D_W:1=5");
    row("byte order mark", "\xEF\xBB\xBFregister,address,value\nD_W,1,5\n", "2 7/D_W:1=5");
    row("comments and empty lines", "# one\n\nregister,address,value\n \n#D_W,9,9\nD_W,1,5\n\n",
        "6 7/D_W:1=5");
    row("blanks around fields", " register , address , value \n D_W , 1 , 5 \n", "2 7/D_W:1=5");
    row("capitals in the header", "Register,ADDRESS,Value\nD_W,1,5\n", "2 7/D_W:1=5");
    row("a header for each value", "register,address,value,value\nD_W,1,5,6\n", "2 7/D_W:1*2=5,6");
    row("values and value... for value", "register,address,values,value...\nD_W,1,5\n",
        "2 7/D_W:1=5");
    row("fields without content at the end", "register,address,value,,,\nD_W,1,5,,\n",
        "2 7/D_W:1=5");
    row("several, in the order of the file", "register,address,value\nM_W,9,1\nD_W,3,2\nD_W,2,3\n",
        "2 7/M_W:9=1; 3 7/D_W:3=2; 4 7/D_W:2=3");
    row("the same address at two stations",
        "station,register,address,value\n1,D_W,1,1\n2,D_W,1,2\n", "2 1/D_W:1=1; 3 2/D_W:1=2");
    row("to be read, without a value", "register,address,count,value\nD_W,1,3\n",
        "2 7/D_W:1*3=", false);
    row("to be read, without a column for values", "register,address,count\nD_W,1,3\n",
        "2 7/D_W:1*3=", false);
    row("to be read, with values", "register,address,count,value\nD_W,1,2,8,9\n", "2 7/D_W:1*2=8,9",
        false);
}

void TestRecipeFile::reads()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, write);
    QString error;
    const auto file = parse(content, write, error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QStringList items;
    for (const RecipeItem &item : file->items()) {
        QStringList values;
        for (const quint16 value : item.values) {
            values.append(QString::number(value));
        }
        items.append(QString::fromLatin1("%1 %2=%3")
                         .arg(item.line)
                         .arg(item.item.text(), values.join(QLatin1Char(','))));
    }
    QTEST(items.join(QLatin1String("; ")), "items");
}

void TestRecipeFile::refuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error"); // how it begins
    QTest::addColumn<bool>("write");
    const auto row = [](const char *name, const QByteArray &content, const char *error,
                        bool write = true) {
        QTest::newRow(name) << content << QString::fromLatin1(error) << write;
    };
    const QByteArray head = "register,address,count,value\n";
    row("empty", "", "1: the file has no items");
    row("only a header", head, "2: the file has no items");
    row("only comments", "#\n#\n", "3: the file has no items");
    row("no header", "D_W,1,1,5\n", "1: unknown column 'D_W'; expected station, register");
    row("unknown column", "register,address,size,value\n", "1: unknown column 'size'");
    row("semicolons", "register;address;value\n", "1: unknown column 'register;address;value'");
    row("column without a name", "register,,address,value\n", "1: unknown column ''");
    row("column behind the values", "register,address,value,count\n",
        "1: misplaced column 'count'");
    row("the same column twice", "register,register,address,value\n", "1: two columns 'register'");
    row("no register", "address,value\n", "1: a column is missing");
    row("no address", "register,value\n", "1: a column is missing");
    row("no values to write", "register,address,count\nD_W,1,1\n", "1: a column is missing");
    row("unknown register", head + "Q_W,1,1,5\n", "2: the driver has no register 'Q_W'");
    row("terminal codes", head + "\x1b[2J,1,1,5\n", "2: the driver has no register '?[2J'");
    row("terminal codes in an address", head + "D_W,\x1b[2J,1,5\n", "2: 'D_W:?[2J*1'");
    row("empty register", head + ",1,1,5\n", "2: the driver has no register ''");
    row("station within the register", head + "2/D_W,1,1,5\n",
        "2: the driver has no register '2/D_W'");
    row("bits", head + "M_bit,3.5,1,1\n", "2: 'M_bit:3.5*1': a recipe holds words");
    row("contacts", head + "TX,3,1,1\n", "2: 'TX:3*1': a recipe holds words");
    row("no address in the line", head + "D_W,,1,5\n", "2: 'D_W:*1': expected");
    row("address that is no number", head + "D_W,x,1,5\n", "2: 'D_W:x*1': an address of D_W");
    row("address out of range", head + "D_W,10000,1,5\n", "2: 'D_W:10000*1': an address of D_W");
    row("row out of range", head + "D_W,9999,2,5,6\n",
        "2: 'D_W:9999*2': expected a count of 1, since");
    row("count of nothing", head + "D_W,1,0,5\n", "2: 'D_W:1*0': expected a count of 1 to");
    row("count that is no number", head + "D_W,1,x,5\n", "2: 'D_W:1*x': expected");
    row("huge count", head + "D_W,1,99999999999,5\n",
        "2: 'D_W:1*99999999999': expected a count of 1 to");
    row("station out of range", "station,register,address,value\n32,D_W,1,5\n",
        "2: '32/D_W:1*1': a station is");
    row("too few values", head + "D_W,1,3,5,6\n", "2: 'D_W:1*3': expected 3 values, found 2");
    row("too many values", head + "D_W,1,1,5,6\n", "2: 'D_W:1*1': expected 1 values, found 2");
    row("no value", head + "D_W,1,1\n", "2: 'D_W:1*1': expected 1 values, found 0");
    row("neither count nor value", head + "D_W,1\n", "2: 'D_W:1': expected a count or values");
    row("value beyond 16 bits", head + "D_W,1,1,65536\n", "2: '65536' is no value of D_W, which");
    row("value below 16 bits", head + "D_W,1,1,-32769\n", "2: '-32769' is no value of D_W");
    row("value that is no number", head + "D_W,1,1,five\n", "2: 'five' is no value of D_W");
    row("empty value", head + "D_W,1,3,1,,3\n", "2: '' is no value of D_W");
    row("quoted value", head + "D_W,1,1,\"5\"\n", "2: '\"5\"' is no value of D_W");
    row("the same address twice", head + "D_W,1,1,5\nM_W,1,1,5\nD_W,1,1,6\n",
        "4: '7/D_W:1' overlaps '7/D_W:1' of line 2");
    row("overlap in another order", head + "D_W,5,2,5,6\nD_W,1,5,1,2,3,4,5\n",
        "3: '7/D_W:1*5' overlaps '7/D_W:5*2' of line 2");
    row("overlap of one of many", head + "D_W,1,9,1,2,3,4,5,6,7,8,9\nD_W,20,1,1\nD_W,9,1,1\n",
        "4: '7/D_W:9' overlaps '7/D_W:1*9' of line 2");
    row("the line counts comments", "# a\n\n" + head + "# b\nD_W,1,1,x\n", "5: 'x' is no value");
    row("to be read, with a wrong value", head + "D_W,1,1,x\n", "2: 'x' is no value", false);
    row("to be read, with too few values", head + "D_W,1,2,1\n", "2: 'D_W:1*2': expected 2 values",
        false);
    row("to be read, more fields than columns", "register,address,count\nD_W,1,1,5\n",
        "2: more fields than the header has columns", false);
}

void TestRecipeFile::refuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QFETCH(bool, write);
    QString said;
    QVERIFY(!parse(content, write, said).has_value());
    QVERIFY2(said.startsWith(error), qPrintable(said));
    QVERIFY(!said.contains(QLatin1Char('\n')));
}

void TestRecipeFile::readsAnythingWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray every;
    for (int byte = 0; byte < 256; ++byte) {
        every.append(static_cast<char>(byte));
    }
    const QByteArray head = "register,address,count,value\n";
    QTest::newRow("every byte") << every;
    QTest::newRow("every byte behind a header") << head + every;
    QTest::newRow("zeros") << QByteArray(10000, '\0');
    QTest::newRow("zeros behind a header") << head + QByteArray(10000, '\0');
    QTest::newRow("commas") << QByteArray(10000, ',');
    QTest::newRow("commas and a number") << head + QByteArray(10000, ',') + "1\n";
    QTest::newRow("one long word") << QByteArray(1000000, 'x');
    QTest::newRow("one long number") << head + "D_W,1,1," + QByteArray(1000000, '9');
    QTest::newRow("the beginning of a program") << QByteArray("\x7f"
                                                              "ELF\x02\x01\x01\x00\x00",
                                                              9);
    QTest::newRow("control characters") << head + "D_W,\x1b[2J,1,5\n";
}

void TestRecipeFile::readsAnythingWithoutHarm()
{
    QFETCH(QByteArray, content);
    for (const bool write : {true, false}) {
        QString error;
        QVERIFY(!parse(content, write, error).has_value());
        QVERIFY(!error.isEmpty());
        for (const QChar letter : std::as_const(error)) {
            QVERIFY(letter.isPrint());
        }
        QVERIFY(error.size() < 500);
    }
}

void TestRecipeFile::fillsIn_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("filled"); // with 1000 and up, item by item
    const auto row = [](const char *name, const char *content, const char *filled) {
        QTest::newRow(name) << QByteArray(content) << QByteArray(filled);
    };
    row("values that are missing", "register,address,count,value\nD_W,5,2\n",
        "register,address,count,value\nD_W,5,2,1000,1001\n");
    row("no column for values", "register,address,count\nD_W,5,1\nM_W,5,2\n",
        "register,address,count,value\nD_W,5,1,1000\nM_W,5,2,1001,1002\n");
    row("no column for values, lines of Windows", "register,address,count\r\nD_W,5,1\r\n",
        "register,address,count,value\r\nD_W,5,1,1000\r\n");
    row("no column for values, but empty fields", "register,address,count,,\r\nD_W,5,1,,\r\n",
        "register,address,count,value,\r\nD_W,5,1,1000,\r\n");
    row("values that are the same", "register,address,value\nD_W,5,01000,0x3e9\n",
        "register,address,value\nD_W,5,01000,0x3e9\n");
    row("other values", "register,address,value\nD_W,5,7,0xFF,-4\n",
        "register,address,value\nD_W,5,1000,0x03E9,1002\n");
    row("blanks around a value", "register,address,value\nD_W,5, 7 ,8\n",
        "register,address,value\nD_W,5, 1000 ,1001\n");
    row("all else stays", "# head\r\n\r\n register,address ,value,,\r\nD_W, 5,1,,\r\n# end",
        "# head\r\n\r\n register,address ,value,,\r\nD_W, 5,1000,,\r\n# end");
    row("items in the order of the file", "register,address,value\nM_W,9,1\nD_W,3,2\n",
        "register,address,value\nM_W,9,1000\nD_W,3,1001\n");
    row("byte order mark and foreign letters",
        "\xEF\xBB\xBFregister,address,value\n# \xE4\xC3\xA4\nD_W,1,5\n",
        "\xEF\xBB\xBFregister,address,value\n# \xE4\xC3\xA4\nD_W,1,1000\n");
}

void TestRecipeFile::fillsIn()
{
    QFETCH(QByteArray, content);
    QString error;
    const auto file = parse(content, false, error);
    QVERIFY2(file.has_value(), qPrintable(error));
    QVector<QVector<quint16>> values;
    quint16 next = 1000;
    for (const RecipeItem &item : file->items()) {
        QVector<quint16> words;
        for (int i = 0; i < item.item.count; ++i) {
            words.append(next++);
        }
        values.append(words);
    }
    QTEST(file->filled(values), "filled");
}

QTEST_APPLESS_MAIN(TestRecipeFile)
#include "test_recipe_file.moc"
