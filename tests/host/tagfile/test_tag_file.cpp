#include "host/support/tag_files.h"
#include "support/rows.h"

#include <QtTest>

#include <ctime>

using namespace cnet;

class TestTagFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void knowsHowItWasWritten();
    void findsMistakesOfTheFile_data();
    void findsMistakesOfTheFile();
    void findsAllAtOnce();
    void countsBeyondTheLimit();
    void isQuick();
    void readsAnythingWithoutHarm_data();
    void readsAnythingWithoutHarm();
};

namespace {

const QByteArray kHeader("name,register,address,station,type,count,scale,offset,unit,min,max,"
                         "deadband,access,texts,description,group\n");

const Case<const char *, const char *> kFiles[] = {
    {"only what is needed", "name,register,address\na,D_W,100\n",
     "name=a register=D_W address=100 station=7"},
    {"columns in another order", "address,name,register\n100,a,D_W\n",
     "name=a register=D_W address=100 station=7"},
    {"capitals in the header", "Name,REGISTER,Address\na,D_W,100\n",
     "name=a register=D_W address=100 station=7"},
    {"semicolons, and a text with a comma",
     "name;register;address;description\na;D_W;100;left, then right\n",
     "name=a register=D_W address=100 station=7 description=left, then right"},
    {"tabs", "name\tregister\taddress\na\tD_W\t100\n", "name=a register=D_W address=100 station=7"},
    {"mark, comments, lines of Windows",
     "\xEF\xBB\xBF# press\r\nname,register,address\r\n# x\r\n\r\na,D_W,100\r\n",
     "name=a register=D_W address=100 station=7"},
    {"empty fields and rows of a spreadsheet", "name,register,address,,\na,D_W,100,,\n,,,,\n",
     "name=a register=D_W address=100 station=7"},
    {"a column for notes", "name,# note,register,address,\na,x,D_W,100,\n",
     "name=a register=D_W address=100 station=7"},
    {"all columns",
     "name,register,address,station,type,count,scale,offset,unit,min,max,deadband,access,"
     "description,group\n"
     "press.speed,D_W,100,2,i32 high-first,3,0.1,-40,mm/s,-5,1e3,0.5,r,\"5\"\" pipe\",press/oil\n",
     "name=press.speed register=D_W address=100 station=2 type=i32 high-first count=3 scale=0.1 "
     "offset=-40 unit=mm/s min=-5 max=1000 deadband=0.5 access=read description=5\" pipe "
     "group=press/oil"},
    {"an enum", "name,register,address,type,texts\na,D_W,1,enum,\"1=on; 0=off (idle);\"\n",
     "name=a register=D_W address=1 station=7 type=enum texts=0=off (idle);1=on"},
    {"bits and contacts",
     "name,register,address,type,count\na,M_bit,3.5,bool,9\nb,TX,7,,\nc,D_W,5,bit 3,\n",
     "name=a register=M_bit address=3.5 station=7 type=bool count=9|name=b register=TX address=7 "
     "station=7|name=c register=D_W address=5 station=7 type=bit3"},
    {"a register that can only be read", "name,register,address\na,OCT,17\n",
     "name=a register=OCT address=17 station=7 access=read"},
    {"words of access",
     "name,register,address,access\na,D_W,1,RW\nb,D_W,2,Read\nc,D_W,3,read-write",
     "name=a register=D_W address=1 station=7|name=b register=D_W address=2 station=7 access=read|"
     "name=c register=D_W address=3 station=7"},
};

const Case<const char *, const char *> kMistakes[] = {
    {"empty", "",
     "1:1: no tags; expected a line that names the columns, for example name,register"},
    {"only a header", "name,register,address\n", "2:1: no tags; expected"},
    {"no header", "a,D_W,100\n", "1:1: a: no such column; expected some of name register"},
    {"unknown column", "name,register,adress\n", "1:15: adress: no such column; expected some of"},
    {"its near miss", "name,register,address,scal\na,D_W,1,2\n",
     "access texts description group; "
     "did you mean scale?"},
    {"missing column", "name,register\na,D_W\n", "1:14: address: the column is missing, and every"},
    {"a decimal comma", "name,register,address,scale\na,D_W,1,2,5\n",
     "2:11: 5 fields, and the header has 4 columns"},
    {"column twice", "name,register,address,Name\n", "1:23: Name: the column is there twice"},
    {"more fields than columns", "name;register;address\na;D_W;1;x;y\n",
     "2:9: 5 fields, and the header has 3 columns; a text with a divider in it is written in "
     "quotes, for example \"a;b\""},
    {"the same name twice", "name,register,address\na,D_W,1\n\na,D_W,2\n",
     "4:1: name: 'a' is the name of line 2 already; expected another one, for example a_2"},
    {"UTF-16", "\xFF\xFEn_a_",
     "1:1: bytes that are no UTF-8, so nobody knows the letters; save the file as UTF-8"},
    {"open quote in the header", "name,\"register,address\na,D_W,1\n",
     "1:6: the quote in front is not closed"},
    {"open quote", "name,register,address\n\"a,D_W,1\nb,D_W,2\n",
     "2:1: name: the quote in front is not closed"},
    {"text behind a quote", "name,register,address\n\"a\"x,D_W,1\n",
     "2:1: name: text behind the closing quote"},
    {"another encoding",
     "name,register,address,unit\na,D_W,1,\xB0"
     "C\n",
     "2:9: unit: bytes that are no UTF-8, so nobody knows the letters; save the file"},
};

} // namespace

void TestTagFile::reads_data()
{
    addRows(kFiles);
}

void TestTagFile::reads()
{
    const auto &row = currentRow(kFiles);
    const TagFile file = testTagFile(row.given, 7);
    QCOMPARE(placedTexts(file.mistakes()), QStringList());
    QStringList tags;
    for (const Tag &tag : file.tags()) {
        tags.append(columnsText(tag));
        QCOMPARE(tag.item.count, tag.type.unitsPerValue() * tag.count);
    }
    QCOMPARE(tags.join(QLatin1Char('|')), QString::fromUtf8(row.expected));
}

void TestTagFile::knowsHowItWasWritten()
{
    const TagFile file = testTagFile("\xEF\xBB\xBFname;register;address\na;D_W;1\n");
    QCOMPARE(file.divider(), ';');
    QVERIFY(file.hasByteOrderMark());
    QVERIFY(!testTagFile("name,register,address\n").hasByteOrderMark());
}

void TestTagFile::findsMistakesOfTheFile_data()
{
    addRows(kMistakes);
}

void TestTagFile::findsMistakesOfTheFile()
{
    const auto &row = currentRow(kMistakes);
    const TagFile file = testTagFile(row.given);
    QVERIFY(!file.isGood());
    const QString said = placedTexts(file.mistakes()).join(QLatin1Char('\n'));
    QVERIFY2(said.contains(QString::fromUtf8(row.expected)), qPrintable(said));
}

void TestTagFile::findsAllAtOnce()
{
    const TagFile file = testTagFile(kHeader + "a,D_W,x,99,f33\n"
                                               "good,D_W,1\n"
                                               "a,D_X,1,,,,0\n"
                                               ",M_W,256,,u16,0\n");
    QStringList places;
    for (const Finding &finding : file.mistakes().first()) {
        places.append(QString::fromLatin1("%1:%2 %3")
                          .arg(finding.line)
                          .arg(finding.column)
                          .arg(finding.field));
    }
    QCOMPARE(
        places.join(QLatin1String(", ")),
        QLatin1String("2:7 address, 2:9 station, 2:12 type, 4:1 name, 4:3 register, 4:12 scale,"
                      " 5:1 name, 5:6 address, 5:15 count"));
    QCOMPARE(int(file.tags().size()), 1);
}

void TestTagFile::countsBeyondTheLimit()
{
    const TagFile file =
        testTagFile("name,register,address\n" + QByteArray("?,D_W,10000\n").repeated(50), 1, 7);
    QCOMPARE(int(file.mistakes().first().size()), 7);
    QCOMPARE(file.mistakes().count(), 149); // all names are wrong, and all but one known already
}

// The release build takes a tenth of a second.
void TestTagFile::isQuick()
{
    QByteArray content = kHeader;
    for (int i = 0; i < 10000; ++i) {
        const bool wrong = i % 10 == 5;
        content += "press.tag" + QByteArray::number(i) + ",D_W," +
                   QByteArray::number(1000 + i / 2) + "," + QByteArray::number(1 + i % 2) + "," +
                   (wrong ? "u61" : "u16") +
                   ",1,0.1,-40,mm/s,-10,6000,0.5,read-write,,a description of it,press/oil\n";
    }
    const std::clock_t begin = std::clock();
    const TagFile file = testTagFile(content, 1, 1000);
    const auto took = static_cast<long long>((std::clock() - begin) * 1000 / CLOCKS_PER_SEC);
    QCOMPARE(file.mistakes().count(), 1000);
    QCOMPARE(int(file.tags().size()), 9000);
    qInfo("10000 tags with 1000 mistakes: %lld ms", took);
    QVERIFY2(took < 10000, qPrintable(QString::number(took)));
}

void TestTagFile::readsAnythingWithoutHarm_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray every;
    for (int byte = 0; byte < 256; ++byte) {
        every.append(static_cast<char>(byte));
    }
    const QByteArray head = "name,register,address,texts\n";
    QTest::newRow("every byte") << every;
    QTest::newRow("every byte behind a header") << head + every.mid(1);
    QTest::newRow("zeros behind a header") << head + QByteArray(10000, '\0');
    QTest::newRow("commas and a number") << head + QByteArray(100000, ',') + "1\n";
    QTest::newRow("quotes") << head + QByteArray(100001, '"');
    QTest::newRow("lines of quotes") << head + QByteArray("\"\"\"\n").repeated(30000);
    QTest::newRow("one long word") << head + QByteArray(1000000, 'x');
    QTest::newRow("columns without end") << QByteArray("x,").repeated(30000);
    QTest::newRow("control characters") << head + "\x1b[2J,\x1b[2J,\x1b[2J,\x1b[2J\n";
}

void TestTagFile::readsAnythingWithoutHarm()
{
    QFETCH(QByteArray, content);
    const TagFile file = testTagFile(content);
    QVERIFY(!file.isGood());
    for (const QString &text : placedTexts(file.mistakes())) {
        QVERIFY2(text.size() < 700, qPrintable(text));
        for (const QChar letter : text) {
            QVERIFY(letter.isPrint());
        }
    }
}

QTEST_APPLESS_MAIN(TestTagFile)
#include "test_tag_file.moc"
