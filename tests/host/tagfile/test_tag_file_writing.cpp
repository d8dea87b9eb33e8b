#include "host/support/tag_files.h"
#include "support/rows.h"

#include <QtTest>

using namespace cnet;

class TestTagFileWriting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesAlone_data();
    void leavesAlone();
    void updates_data();
    void updates();
    void keepsStations();
    void writesNewFiles();
};

namespace {

const char kOdd[] = "\xEF\xBB\xBF# press line\r\n\r\n"
                    " Register ;NAME; address;# note;scale;unit;;\r\n"
                    "D_W ; \"speed\" ;0100;by J.; 1.0e-1;\"mm/s\";;\r\n"
                    "\"# quoted; by a spreadsheet\";;\r\n"
                    ";;;;;;;\r\n"
                    "D_W;temp;200;;;;;\r\n"
                    "# end";

const Given<QByteArray> kFiles[] = {
    {"odd spellings", kOdd},
    {"no end of the last line", "name,register,address\na,D_W,1"},
    {"tabs", "name\tregister\taddress\na\tD_W\t1\n"},
    {"a text of several lines", "name,register,address,description\na,D_W,1,\"b\nc\"\n"},
};

// Tags by what is done to them: "-name", "+name", or "name column=text".
struct Update
{
    const char *what;
    const char *change;
    QByteArray before;
    QByteArray after;
};

const QByteArray kHead("# c\nname,register,address,scale\n");

const Update kUpdates[] = {
    {"a field", "a scale=0.25", kHead + "a,D_W, 1 , 0.50\n# d\n", kHead + "a,D_W, 1 , 0.25\n# d\n"},
    {"a field that is not there yet", "a scale=3", kHead + "a,D_W,1\n", kHead + "a,D_W,1,3\n"},
    {"back to the usual", "a scale=1", kHead + "a,D_W,1,0.5\n", kHead + "a,D_W,1,1\n"},
    {"an address", "a address=7", kHead + "a,D_W,001,0.50\n", kHead + "a,D_W,7,0.50\n"},
    {"a column that is not there yet", "a unit=\"x\",y", "name,register,address,,\na,D_W,1,,\n",
     "name,register,address,unit,\na,D_W,1,\"\"\"x\"\",y\",\n"},
    {"a quoted field", "a scale=2", kHead + "a,D_W,1,\"0.5\"\n", kHead + "a,D_W,1,\"2\"\n"},
    {"a tag less", "-a", kHead + "a,D_W,1\n# d\nb,D_W,2\n", kHead + "# d\nb,D_W,2\n"},
    {"a tag more", "+n", kHead + "a,D_W,1\n", kHead + "a,D_W,1\nn,D_W,9,\n"},
    {"a tag more, with lines of Windows", "+n", "name;register;address\r\na;D_W;1",
     "name;register;address\r\na;D_W;1\r\nn;D_W;9\r\n"},
};

Tag newTag(const char *name, int station = 1)
{
    Tag tag;
    tag.name = QLatin1String(name);
    tag.item = testItem("D_W", 9, 1, station);
    return tag;
}

QVector<Tag> changed(QVector<Tag> tags, const QString &change)
{
    if (change.startsWith(QLatin1Char('+'))) {
        tags.append(newTag(qPrintable(change.mid(1))));
    } else if (change.startsWith(QLatin1Char('-'))) {
        tags.removeFirst();
    } else {
        const QString text = change.section(QLatin1Char('='), 1);
        const QString column = change.section(QLatin1Char('='), 0, 0).section(QLatin1Char(' '), 1);
        Tag &tag = tags.first();
        if (column == QLatin1String("scale")) {
            tag.scale = text.toDouble();
        } else if (column == QLatin1String("unit")) {
            tag.unit = text;
        } else {
            tag.item.start = text.toInt();
        }
    }
    return tags;
}

} // namespace

void TestTagFileWriting::leavesAlone_data()
{
    addRows(kFiles);
}

void TestTagFileWriting::leavesAlone()
{
    const auto &row = currentRow(kFiles);
    const TagFile file = testTagFile(row.given);
    QVERIFY2(file.isGood(), qPrintable(placedTexts(file.mistakes()).join(QLatin1Char('\n'))));
    QCOMPARE(file.updated(file.tags()), row.given);
    // In another order they are the same tags.
    QVector<Tag> reversed = file.tags();
    std::reverse(reversed.begin(), reversed.end());
    QCOMPARE(file.updated(reversed), row.given);
}

void TestTagFileWriting::updates_data()
{
    addRows(kUpdates);
}

void TestTagFileWriting::updates()
{
    const auto &row = currentRow(kUpdates);
    const TagFile file = testTagFile(row.before);
    const QVector<Tag> wanted = changed(file.tags(), QLatin1String(row.change));
    const QByteArray after = file.updated(wanted);
    QCOMPARE(after, row.after);
    const TagFile again = testTagFile(after);
    QCOMPARE(int(again.tags().size()), int(wanted.size()));
    for (int i = 0; i < wanted.size(); ++i) {
        QCOMPARE(columnsText(again.tags().at(i)), columnsText(wanted.at(i)));
    }
}

// A file without stations may be read for another one.
void TestTagFileWriting::keepsStations()
{
    const TagFile file = testTagFile("name,register,address\na,D_W,1\n", 5);
    QCOMPARE(file.updated(file.tags() + QVector<Tag>{newTag("n", 5)}),
             QByteArray("name,register,address\na,D_W,1\nn,D_W,9\n"));
    QCOMPARE(file.updated(file.tags() + QVector<Tag>{newTag("n", 1)}),
             QByteArray("name,register,address,station\na,D_W,1\nn,D_W,9,1\n"));
}

void TestTagFileWriting::writesNewFiles()
{
    const QByteArray content = "name;register;address;station;type;scale;min;texts;description\n"
                               "a;D_W;5;1;f32 high-first;0.1;-1e+300;;\"x; \"\"y\"\"\"\n"
                               "b;M_bit;3.5;2;bool;;;;\n"
                               "c;D_W;9;1;enum;;;\"0=off;1=on\";\n";
    const TagFile file = testTagFile(content);
    QVERIFY(file.isGood());
    QCOMPARE(TagFile::written(file.tags(), ';'), content);
    QCOMPARE(TagFile::written({}, ','), QByteArray("name,register,address\n"));
}

QTEST_APPLESS_MAIN(TestTagFileWriting)
#include "test_tag_file_writing.moc"
