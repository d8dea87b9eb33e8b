#include "table_of_values.h"

#include "support/rows.h"

using namespace cnet;
using namespace cnet::view;

/** The table of values: what its cells say. */
class TestValuesTable : public QObject, private TableOfValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void saysAges_data();
    void saysAges();
    void comparesScalars_data();
    void comparesScalars();
    void showsRawWords();
    void showsWhatWasRead();
    void showsLastValuesOfAClosedLine();
    void keepsExtremes();
    void tellsOfManyRowsAtOnce();
    void fadesAfterAChange();
    void keepsWhatIsKnownOfTagsThatStay();

private:
    struct Pair
    {
        const char *what;
        Scalar left;
        Scalar right;
        int expected;
    };

    static const Case<qint64, const char *> kAges[];
    static const Pair kPairs[];
};

const Case<qint64, const char *> TestValuesTable::kAges[] = {
    {"never", -1, ""},          {"now", 0, "0.0 s"},          {"tenths", 9940, "9.9 s"},
    {"seconds", 10000, "10 s"}, {"minutes", 120000, "2 min"}, {"hours", 7200000, "2 h"},
    {"days", 259200000, "3 d"},
};

void TestValuesTable::saysAges_data()
{
    addRows(kAges);
}

void TestValuesTable::saysAges()
{
    const auto &row = currentRow(kAges);
    QCOMPARE(ageText(row.given), latin(row.expected));
}

const TestValuesTable::Pair TestValuesTable::kPairs[] = {
    {"not known first", Scalar(), Scalar(qint64(-5)), -1},
    {"beyond what a double holds", Scalar(qint64(9007199254740993)),
     Scalar(qint64(9007199254740992)), 1},
    {"whole and fraction", Scalar(qint64(2)), Scalar(2.5), -1},
    {"numbers before texts", Scalar(qint64(7)), Scalar(latin("1")), -1},
    {"truths", Scalar(true), Scalar(false), 1},
};

void TestValuesTable::comparesScalars_data()
{
    addRows(kPairs);
}

void TestValuesTable::comparesScalars()
{
    const auto &row = currentRow(kPairs);
    QCOMPARE(compareScalars(row.left, row.right), row.expected);
    QCOMPARE(compareScalars(row.right, row.left), -row.expected);
    QCOMPARE(compareScalars(row.left, row.left), 0);
}

void TestValuesTable::showsRawWords()
{
    QCOMPARE(rawText({0x12FF, 1}, false), latin("0x12FF 0x0001"));
    QCOMPARE(rawText({1}, true), latin("1"));
    QCOMPARE(rawText({}, false), QString());
}

void TestValuesTable::showsWhatWasRead()
{
    QCOMPARE(m_model->rowCount(), 5 + 12);
    QCOMPARE(shown(0, ValueColumn::Value), latin("-"));
    QCOMPARE(shown(0, ValueColumn::Quality), latin("not read yet"));
    QCOMPARE(shown(0, ValueColumn::Changed), QString());
    m_plant->open();
    m_plant->setWord(1000, 123);
    m_plant->setWord(1002, 2);
    m_plant->setWord(1012, 77);
    m_plant->setWord(1030, 0x6241);
    QTRY_COMPARE_WITH_TIMEOUT(shown(0, ValueColumn::Value), latin("12.3 1/min"), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(5, ValueColumn::Value), latin("77"), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(16, ValueColumn::Value), latin("\"Ab\""), kPatienceMs);
    QCOMPARE(shown(0, ValueColumn::Name), latin("oil.speed"));
    QCOMPARE(shown(0, ValueColumn::Raw), latin("0x007B"));
    QTRY_COMPARE_WITH_TIMEOUT(shown(0, ValueColumn::Quality), latin("good"), kPatienceMs);
    QCOMPARE(shown(0, ValueColumn::Description), latin("strokes wanted"));
    QVERIFY(!shown(0, ValueColumn::Changed).isEmpty());
    QVERIFY(!shown(0, ValueColumn::Age).isEmpty());
    QCOMPARE(shown(2, ValueColumn::Value), latin("fast"));
    QCOMPARE(shown(5, ValueColumn::Name), latin("zones[2]"));
    QCOMPARE(cell(0, ValueColumn::Value).data(Qt::EditRole).toString(), latin("12.3"));
    // The quality has a sign, not a colour alone.
    QVERIFY(!cell(0, ValueColumn::Quality).data(Qt::DecorationRole).isNull());
}

void TestValuesTable::showsLastValuesOfAClosedLine()
{
    m_plant->open();
    m_plant->setWord(1000, 123);
    QTRY_COMPARE_WITH_TIMEOUT(shown(0, ValueColumn::Value), latin("12.3 1/min"), kPatienceMs);
    m_plant->line().close();
    QCOMPARE(shown(0, ValueColumn::Value), latin("12.3 1/min"));
    QCOMPARE(shown(0, ValueColumn::Quality), latin("line down"));
    QVERIFY(!shown(0, ValueColumn::Age).isEmpty());
}

void TestValuesTable::keepsExtremes()
{
    m_plant->open();
    const QVector<quint16> values{300, 1300, 50, 200};
    for (const quint16 value : values) { // the second is above the tag's bound
        m_plant->setWord(1000, value);
        QTRY_COMPARE_WITH_TIMEOUT(m_model->row(0).now.units, QVector<quint16>{value}, kPatienceMs);
    }
    // The first round may have come before the first value.
    QVERIFY(compareScalars(m_model->row(0).least, Scalar(5.0)) <= 0);
    QCOMPARE(shown(0, ValueColumn::Max), latin("130.0"));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->row(0).now.quality, Quality::Good, kPatienceMs);
    m_model->resetExtremes();
    QCOMPARE(shown(0, ValueColumn::Min), latin("20.0"));
    QCOMPARE(shown(0, ValueColumn::Max), latin("20.0"));
    // A truth and a text have none.
    QCOMPARE(shown(15, ValueColumn::Max), QString());
    QCOMPARE(shown(16, ValueColumn::Min), QString());
}

// Each range costs views and proxies as much as a thousand rows.
void TestValuesTable::tellsOfManyRowsAtOnce()
{
    QByteArray content("name,register,address\n");
    for (int i = 0; i < 400; ++i) {
        content +=
            QByteArray("w") + QByteArray::number(i) + ",D_W," + QByteArray::number(2000 + i) + "\n";
    }
    m_plant->tags().setTags(m_plant->read(content));
    m_plant->open();
    QTRY_VERIFY_WITH_TIMEOUT(m_plant->tags().quality(399) == Quality::Good, kPatienceMs);
    QSet<int> told;
    connect(m_model.get(), &QAbstractItemModel::dataChanged, this,
            [&told](const QModelIndex &first, const QModelIndex &last) {
                for (int row = first.row(); row <= last.row(); ++row) {
                    told.insert(row);
                }
            });
    QSet<int> changed;
    for (int i = 0; i < 400; i += 2) {
        m_plant->setWord(2000 + i, 9);
        changed.insert(i);
    }
    QTRY_VERIFY_WITH_TIMEOUT(told.contains(changed), kPatienceMs);
    QCOMPARE(shown(398, ValueColumn::Value), latin("9"));
}

void TestValuesTable::fadesAfterAChange()
{
    openAndRead(5);
    const QModelIndex value = cell(0, ValueColumn::Value);
    QCOMPARE(value.data(ValuesModel::FreshRole).toDouble(), 0.0); // a first reading is no change
    QVERIFY(!m_model->isAnyFresh());
    QSignalSpy freshened(m_model.get(), &ValuesModel::freshened);
    quint16 word = 55; // a slow machine may see one when it has faded
    QTRY_VERIFY_WITH_TIMEOUT((m_plant->setWord(1000, ++word), freshened.count() > 0), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(value.data(ValuesModel::FreshRole).toDouble(), 0.0, kPatienceMs);
    QVERIFY(!m_model->isAnyFresh());
}

void TestValuesTable::keepsWhatIsKnownOfTagsThatStay()
{
    openAndRead();
    m_plant->setWord(1000, 500);
    QTRY_COMPARE_WITH_TIMEOUT(shown(0, ValueColumn::Max), latin("50.0"), kPatienceMs);
    QVERIFY(write(0, "400"));
    QCOMPARE(stage(0), WriteStage::NotSent);
    QVector<Tag> fewer = m_plant->tags().tags().all();
    fewer.removeAt(1);
    fewer.prepend(fewer.takeLast());
    m_plant->tags().setTags(TagSet(fewer));
    QCOMPARE(m_model->rowCount(), 16);
    QCOMPARE(shown(1, ValueColumn::Name), latin("oil.speed"));
    QCOMPARE(shown(1, ValueColumn::Max), latin("50.0"));
    QCOMPARE(stage(1), WriteStage::NotSent);
    // Another place under the same name is another value.
    fewer[1].item.start = 1100;
    m_plant->tags().setTags(TagSet(fewer));
    QCOMPARE(shown(1, ValueColumn::Max), QString());
    m_plant->tags().setTags(TagSet());
    QCOMPARE(m_model->rowCount(), 0);
}

QTEST_MAIN(TestValuesTable)
#include "test_values_table.moc"
