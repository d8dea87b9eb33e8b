#include "host/support/tag_files.h"
#include "support/rows.h"

#include <QtTest>

using namespace cnet;

class TestTagRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsMistakes_data();
    void findsMistakes();
    void warns_data();
    void warns();
};

namespace {

// Fields of one tag, "scale=0 min=5", and what is said of it behind "2:COLUMN: ".
const Case<const char *, const char *> kMistakes[] = {
    {"no name", "name=", "name: no name; every tag needs one, for example press.speed"},
    {"name with a blank", "name=a_b|c", "name: 'a b c' is no name; letters, digits"},
    {"name like an item", "name=D_W:100", "name: 'D_W:100' is no name"},
    {"name like a pattern", "name=press.*", "name: 'press.*' is no name"},
    {"name that begins with a digit", "name=1a", "name: '1a' is no name"},
    {"no register", "register=", "register: no register, it has D_W"},
    {"unknown register", "register=d_w", "register: the driver has no register 'd_w', it has "},
    {"its near miss", "register=d_w", "; did you mean D_W?"},
    {"no address", "address=",
     "address: no address of D_W, which is a number from 0 to 9999, for "
     "example 0"},
    {"address of another form", "address=3.5", "address: '3.5' is no address of D_W, which is"},
    {"address out of range", "address=10000", "address: '10000' is no address of D_W, which is"},
    {"address that the driver refuses", "address=666", "address: the driver does not like it"},
    {"station out of range", "station=32",
     "station: '32' is no station, which is a number from 0 "
     "to 31, for example 1"},
    {"station that is no number", "station=-1", "station: '-1' is no station"},
    {"unknown type", "type=int", "type: 'int' is no type; expected bool"},
    {"type of words on bits", "register=M_bit address=3.5 type=u16",
     "type: u16 takes words, and M_bit has bits; expected bool, enum or raw, or a register of "
     "words, for example D_W"},
    {"type longer than its area", "address=9999 type=f32",
     "type: 1 value of f32 do not fit: from D_W:9999 there are 1 word up to the end at 9999, which "
     "is room for 0"},
    {"row longer than its area", "address=9996 type=i32 count=3", "count: 3 values of i32 do not"},
    {"count of nothing", "count=0", "count: '0' is no count of values"},
    {"count that is no number", "count=2.5", "count: '2.5' is no count of values"},
    {"endless count", "count=99999999999", "count: '99999999999' is no count of values"},
    {"scale of nothing", "scale=0", "scale: '0' makes every value the same, and none could be"},
    {"scale that is no number", "scale=x", "scale: 'x' is no number, for example 0.1"},
    {"decimal comma", "scale=0,1",
     "scale: '0,1' is no number; the decimal sign is a point, for "
     "example 0.1"},
    {"infinite offset", "offset=inf", "offset: 'inf' is no number"},
    {"endless offset", "offset=1e999", "offset: '1e999' is no number"},
    {"no number", "min=nan", "min: 'nan' is no number"},
    {"min above max", "min=5 max=4", "min: '5' is above max, which is '4', so no value could"},
    {"deadband below 0", "deadband=-1", "deadband: '-1' is less than 0"},
    {"scale of a text", "type=string4 scale=2", "scale: string4 has no scale; leave the field"},
    {"offset of an enum", "type=enum texts=0=a offset=2", "offset: enum has no offset"},
    {"max of a bit", "type=bit3 max=1", "max: bit3 has no max; leave the field empty"},
    {"min of bits", "register=M_bit address=3.5 min=0", "min: bits has no min"},
    {"deadband of a bool", "type=bool deadband=1", "deadband: bool has no deadband"},
    {"unknown access", "access=write", "access: 'write' is no access; expected read or read-write"},
    {"writing what can only be read", "register=OCT address=17 access=rw",
     "access: OCT can only be read; expected read"},
    {"texts without an enum", "type=u16 texts=0=a",
     "texts: only an enum has texts, and the type is"},
    {"text without a number", "type=enum texts=a", "texts: 'a' is no NUMBER=TEXT; expected"},
    {"number without a text", "type=enum texts=1=", "texts: '1=' is no NUMBER=TEXT; expected"},
    {"number of no word", "type=enum texts=65536=a", "texts: '65536=a' has a number that is not"},
    {"number of no bit", "register=M_bit address=3.5 type=enum texts=0=a;2=b",
     "texts: '2=b' has a number that is not from 0 to 1; expected"},
    {"number twice", "type=enum texts=1=a;1=b", "texts: '1=b' has a number that has a text"},
    {"text twice", "type=enum texts=1=a;2=a", "texts: '2=a' has a text that another number has"},
    {"control characters", "unit=\x07", "unit: control characters, which no screen shows"},
    {"group with a pattern", "group=press/*", "group: 'press/*' is no group; letters, digits"},
};

const Case<const char *, const char *> kWarnings[] = {
    {"an enum without texts", "type=enum",
     "type: enum without texts is no more than a number; give it texts"},
    {"an enum of a bit without texts", "register=M_bit address=3.5 type=enum",
     "type: enum without texts"},
    {"a long number with a scale", "type=u64 scale=0.1", "scale: u64 with a scale or an offset is"},
};

// One tag; what is not given is good.
TagFile fileOf(const char *fields)
{
    QMap<QString, QString> given{{QLatin1String("name"), QLatin1String("a")},
                                 {QLatin1String("register"), QLatin1String("D_W")},
                                 {QLatin1String("address"), QLatin1String("100")}};
    for (const QString &field : QString::fromLatin1(fields).split(QLatin1Char(' '))) {
        QString text = field.section(QLatin1Char('='), 1);
        text.replace(QLatin1Char('|'), QLatin1Char(' '));
        if (text.contains(QLatin1Char(' '))) {
            text.replace(QLatin1Char('_'), QLatin1Char(' '));
        }
        given.insert(field.section(QLatin1Char('='), 0, 0), text);
    }
    const CsvDialect dialect;
    return testTagFile(csvRecord(QStringList(given.keys()), dialect) + '\n' +
                       csvRecord(QStringList(given.values()), dialect) + '\n');
}

QString behindPlace(const QString &text)
{
    return text.section(QLatin1String(": "), 1);
}

} // namespace

void TestTagRow::findsMistakes_data()
{
    addRows(kMistakes);
}

void TestTagRow::findsMistakes()
{
    const auto &row = currentRow(kMistakes);
    const TagFile file = fileOf(row.given);
    const QStringList said = placedTexts(file.mistakes());
    QCOMPARE(said.join(QLatin1Char('\n')), said.value(0)); // one mistake, said once
    const QString text = behindPlace(said.value(0));
    const QString expected = QLatin1String(row.expected);
    QVERIFY2(expected.startsWith(QLatin1Char(';')) ? text.endsWith(expected)
                                                   : text.startsWith(expected),
             qPrintable(text));
    QVERIFY(file.tags().isEmpty());
}

void TestTagRow::warns_data()
{
    addRows(kWarnings);
}

void TestTagRow::warns()
{
    const auto &row = currentRow(kWarnings);
    const TagFile file = fileOf(row.given);
    QVERIFY(file.isGood());
    const QString text = behindPlace(placedTexts(file.warnings()).join(QLatin1Char('\n')));
    QVERIFY2(text.startsWith(QLatin1String(row.expected)), qPrintable(text));
}

QTEST_APPLESS_MAIN(TestTagRow)
#include "test_tag_row.moc"
