#include "host/support/tag_files.h"
#include "support/rows.h"

#include <QtTest>

using namespace cnet;

class TestTagWarnings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void warns_data();
    void warns();
};

namespace {

// Rows behind "name,station,register,address,type,count", and the warnings by "|".
const Case<const char *, const char *> kWarnings[] = {
    {"nothing", "a,1,D_W,1\nb,1,D_W,2,f32\nc,2,D_W,1\nd,1,M_W,1\ne,2,D_W,2\n", ""},
    {"the same address", "a,1,D_W,5\nb,1,D_W,5\n",
     "3:9: address: overlaps 'a' of line 2, which takes D_W:5; a change of one is a change of the"},
    {"a row over another tag, in another order", "a,1,D_W,7\nb,1,D_W,5,,9\n",
     "3:9: address: overlaps 'a' of line 2, which takes D_W:7; "},
    {"a tag within a row", "b,1,D_W,5,i32,9\nx,1,D_W,6\na,1,D_W,22\n",
     "3:9: address: overlaps 'b' of line 2, which takes D_W:5 to 22; |4:9: address: overlaps "
     "'b' of line 2"},
    {"a type longer than its area", "b,1,D_W,6\na,1,D_W,5,f32\n",
     "3:11: type: f32 takes D_W:5 to 6, and 'b' of line 2 begins at 6 already; expected a shorter "
     "type, or the next one further on, for example at 7"},
    {"a word and its bits", "a,1,D_W,5\nb,1,D_W,5,bit3\nc,1,D_W,5,bit4\n", ""},
    {"the same bit", "a,1,D_W,5\nb,1,D_W,5,bit3\nc,1,D_W,5,bit3\n",
     "4:9: address: overlaps 'b' of line 3"},
    {"names", "Press,1,D_W,5\npress,1,D_W,6\nPRESS,1,D_W,7\n",
     "3:1: name: 'press' differs from 'Press' of line 2 only by case, and people will mix|"
     "4:1: name: 'PRESS' differs from 'Press' of line 2"},
    {"a station without others", "a,1,D_W,5\nb,11,D_W,6\nc,1,D_W,7\nd,1,D_W,8\n",
     "3:3: station: station 11 has no other tag; is it not one of those that the others are on, "
     "for example 1?"},
    {"each on a station of its own", "a,1,D_W,5\nb,2,D_W,6\nc,3,D_W,7\nd,4,D_W,8\n", ""},
    {"too few for stations", "a,1,D_W,5\nb,2,D_W,6\nc,1,D_W,7\n", ""},
};

} // namespace

void TestTagWarnings::warns_data()
{
    addRows(kWarnings);
}

void TestTagWarnings::warns()
{
    const auto &row = currentRow(kWarnings);
    const TagFile file =
        testTagFile(QByteArray("name,station,register,address,type,count\n") + row.given);
    QVERIFY2(file.isGood(), qPrintable(placedTexts(file.mistakes()).join(QLatin1Char('\n'))));
    const QStringList said = placedTexts(file.warnings());
    const QStringList expected =
        QString::fromLatin1(row.expected).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QCOMPARE(said.size(), expected.size());
    for (int i = 0; i < said.size(); ++i) {
        QVERIFY2(said.at(i).startsWith(expected.at(i)), qPrintable(said.at(i)));
    }
}

QTEST_APPLESS_MAIN(TestTagWarnings)
#include "test_tag_warnings.moc"
