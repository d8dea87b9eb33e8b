#include "host/tag/tag_writing.h"

#include "host/support/test_types.h"
#include "support/rows.h"

#include <QStringList>

using namespace cnet;

class TestTagWriting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assigns_data();
    void assigns();
    void refuses_data();
    void refuses();
    void cutsBetweenValuesOnly();
    void keepsWhatIsReadOnly();
};

namespace {

const int kMostWords = 58;

struct Assigned
{
    const char *what; // and the item with its values
    const char *sent;
};

const Assigned kAssigned[] = {
    {"D_W:100@f32=12.5", "1/D_W:100*2=0,16712"},
    {"D_W:100@i16*0.1=12.5,-1", "1/D_W:100*2=125,65526"},
    {"D_W:100@bcd4=1234", "1/D_W:100=4660"},
    {"D_W:100@string4=AB", "1/D_W:100*2=16961,0"},
    {"M_bit:3.5@bool=on,off", "1/M_bit:3.5*2=1,0"},
    {"D_W:5@bit3=1", "1/D_bit:5.3=1"},
    {"M_W:255@bit15=0", "1/M_bit:255.15=0"},
    {"D_W:5@bit3=1,0", "1/D_bit:5.3=1 1/D_bit:6.3=0"},
};

const Case<const char *, const char *> kMistakes[] = {
    {"too large for its type", "D_W:100@i16=40000", "1/D_W:100: 40000 does not fit i16"},
    {"too large behind the scale", "D_W:100@i16*0.1=4000", "40000 does not fit i16"},
    {"the last of several", "D_W:100@u16=1,2,-1", "-1 does not fit u16"},
    {"a bit above 1", "M_bit:3.5@enum=2", "M_bit takes 0 or 1"},
    {"a bit without a register", "HEX:5@bit3=1", "a bit of HEX cannot be written by itself"},
};

QString sentText(const QVector<Assignment> &assignments)
{
    QStringList texts;
    for (const Assignment &assignment : assignments) {
        texts.append(assignment.text());
    }
    return texts.join(QLatin1Char(' '));
}

RegisterCatalog catalogWithHex()
{
    RegisterCatalog registers = testCatalog();
    registers.add(testRegister("HEX"));
    return registers;
}

std::optional<QVector<Assignment>> assignmentsOf(const char *text, int mostWords, QString &error)
{
    const auto read = parseTypedAssignment(QLatin1String(text), 1, catalogWithHex(), error);
    return read ? cnet::assignmentsOf(read->tag, read->values, catalogWithHex(), mostWords, error)
                : std::nullopt;
}

} // namespace

void TestTagWriting::assigns_data()
{
    addRows(kAssigned);
}

void TestTagWriting::assigns()
{
    const Assigned &row = currentRow(kAssigned);
    QString error;
    const auto sent = assignmentsOf(row.what, kMostWords, error);
    QVERIFY2(sent.has_value(), qPrintable(error));
    QCOMPARE(sentText(*sent), QLatin1String(row.sent));
}

void TestTagWriting::refuses_data()
{
    addRows(kMistakes);
}

void TestTagWriting::refuses()
{
    const auto &row = currentRow(kMistakes);
    QString error;
    QVERIFY(!assignmentsOf(row.given, kMostWords, error));
    QVERIFY2(error.contains(QLatin1String(row.expected)), qPrintable(error));
}

// Half of a value in the PLC, and be it for one request, is a value that nobody asked for.
void TestTagWriting::cutsBetweenValuesOnly()
{
    QString error;
    const auto sent = assignmentsOf("D_W:0*15@f64=1.5", kMostWords, error);
    QVERIFY2(sent.has_value(), qPrintable(error));
    QCOMPARE(static_cast<int>(sent->size()), 2);
    QCOMPARE(sent->at(0).item.count, 56);
    QCOMPARE(sent->at(1).item.start, 56);
    QCOMPARE(sent->at(1).item.count, 4);
    const auto narrow = assignmentsOf("D_W:0*2@f64=1.5", 3, error);
    QCOMPARE(static_cast<int>(narrow->size()), 2);
}

void TestTagWriting::keepsWhatIsReadOnly()
{
    Tag tag = testTag("D_W:0@i16");
    tag.name = QStringLiteral("press.speed");
    tag.access = TagAccess::Read;
    QString error;
    QVERIFY(!cnet::assignmentsOf(tag, {qint64(1)}, testCatalog(), kMostWords, error));
    QCOMPARE(error, QStringLiteral("press.speed can only be read"));
    tag.access = TagAccess::ReadWrite;
    QVERIFY(!cnet::assignmentsOf(tag, {qint64(1), qint64(2)}, testCatalog(), kMostWords, error));
    QCOMPARE(error, QStringLiteral("press.speed takes 1 value, not 2"));
    QVERIFY(cnet::assignmentsOf(tag, {qint64(1)}, testCatalog(), kMostWords, error));
}

QTEST_APPLESS_MAIN(TestTagWriting)
#include "test_tag_writing.moc"
