#include "values_fixture.h"
#include "view/tags/tag_drag.h"
#include "view/values/table/values_filter.h"

#include "support/rows.h"

#include <QAbstractItemModelTester>

using namespace cnet;
using namespace cnet::view;

namespace {

int at(ValueColumn column)
{
    return static_cast<int>(column);
}

QString shown(const QAbstractItemModel &model, int row, ValueColumn column)
{
    return model.index(row, at(column)).data().toString();
}

} // namespace

/** The table of values: what its cells say, its filter and its order. */
class TestValuesTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

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
    void filtersByWords_data();
    void filtersByWords();
    void filtersByGroup();
    void filtersByQualityAsItChanges();
    void sorts_data();
    void sorts();
    void dragsNames();

private:
    struct Order
    {
        const char *what;
        ValueColumn column;
        Qt::SortOrder order;
        QVector<int> rows; ///< of the model
    };
    struct Pair
    {
        const char *what;
        Scalar left;
        Scalar right;
        int expected;
    };

    static const Case<qint64, const char *> kAges[];
    static const Pair kPairs[];
    static const Case<const char *, const char *> kFilters[];
    static const Order kOrders[];

    void openAndRead(int intervalMs = 1)
    {
        m_plant->open(intervalMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    }
    bool write(int row, const char *text)
    {
        return m_model->setData(m_model->index(row, at(ValueColumn::Value)), latin(text),
                                Qt::EditRole);
    }
    WriteStage stage(int row) const { return m_model->row(row).write.stage; }

    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<ValuesModel> m_model;
    std::unique_ptr<ValuesFilter> m_shown;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<QAbstractItemModelTester> m_shownTester;
};

void TestValuesTable::init()
{
    m_plant = std::make_unique<ValuesFixture>();
    m_plant->tags().setTags(m_plant->read(kTags));
    m_model = std::make_unique<ValuesModel>(m_plant->tags());
    m_shown = std::make_unique<ValuesFilter>(*m_model);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
    m_shownTester = std::make_unique<QAbstractItemModelTester>(m_shown.get());
}

void TestValuesTable::cleanup()
{
    m_shownTester.reset();
    m_tester.reset();
    m_shown.reset();
    m_model.reset();
    m_plant.reset();
}

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
    QCOMPARE(shown(*m_model, 0, ValueColumn::Value), latin("-"));
    QCOMPARE(shown(*m_model, 0, ValueColumn::Quality), latin("not read yet"));
    QCOMPARE(shown(*m_model, 0, ValueColumn::Changed), QString());
    m_plant->open();
    m_plant->setWord(1000, 123);
    m_plant->setWord(1002, 2);
    m_plant->setWord(1012, 77);
    m_plant->setWord(1030, 0x6241);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 0, ValueColumn::Value), latin("12.3 1/min"),
                              kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 5, ValueColumn::Value), latin("77"), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 16, ValueColumn::Value), latin("\"Ab\""),
                              kPatienceMs);
    QCOMPARE(shown(*m_model, 0, ValueColumn::Name), latin("oil.speed"));
    QCOMPARE(shown(*m_model, 0, ValueColumn::Raw), latin("0x007B"));
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 0, ValueColumn::Quality), latin("good"), kPatienceMs);
    QCOMPARE(shown(*m_model, 0, ValueColumn::Description), latin("strokes wanted"));
    QVERIFY(!shown(*m_model, 0, ValueColumn::Changed).isEmpty());
    QVERIFY(!shown(*m_model, 0, ValueColumn::Age).isEmpty());
    QCOMPARE(shown(*m_model, 2, ValueColumn::Value), latin("fast"));
    QCOMPARE(shown(*m_model, 5, ValueColumn::Name), latin("zones[2]"));
    QCOMPARE(m_model->index(0, at(ValueColumn::Value)).data(Qt::EditRole).toString(),
             latin("12.3"));
    // The quality has a sign, not a colour alone.
    QVERIFY(!m_model->index(0, at(ValueColumn::Quality)).data(Qt::DecorationRole).isNull());
}

void TestValuesTable::showsLastValuesOfAClosedLine()
{
    m_plant->open();
    m_plant->setWord(1000, 123);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 0, ValueColumn::Value), latin("12.3 1/min"),
                              kPatienceMs);
    m_plant->line().close();
    QCOMPARE(shown(*m_model, 0, ValueColumn::Value), latin("12.3 1/min"));
    QCOMPARE(shown(*m_model, 0, ValueColumn::Quality), latin("line down"));
    QVERIFY(!shown(*m_model, 0, ValueColumn::Age).isEmpty());
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
    QCOMPARE(shown(*m_model, 0, ValueColumn::Max), latin("130.0"));
    m_model->resetExtremes();
    QCOMPARE(shown(*m_model, 0, ValueColumn::Min), latin("20.0"));
    QCOMPARE(shown(*m_model, 0, ValueColumn::Max), latin("20.0"));
    // A truth and a text have none.
    QCOMPARE(shown(*m_model, 15, ValueColumn::Max), QString());
    QCOMPARE(shown(*m_model, 16, ValueColumn::Min), QString());
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
    QCOMPARE(shown(*m_model, 398, ValueColumn::Value), latin("9"));
}

void TestValuesTable::fadesAfterAChange()
{
    openAndRead(5);
    const QModelIndex value = m_model->index(0, at(ValueColumn::Value));
    QCOMPARE(value.data(ValuesModel::FreshRole).toDouble(), 0.0); // a first reading is no change
    QVERIFY(!m_model->isAnyFresh());
    QSignalSpy freshened(m_model.get(), &ValuesModel::freshened);
    m_plant->setWord(1000, 55);
    QTRY_VERIFY_WITH_TIMEOUT(freshened.count() > 0, kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(value.data(ValuesModel::FreshRole).toDouble(), 0.0, kPatienceMs);
    QVERIFY(!m_model->isAnyFresh());
}

void TestValuesTable::keepsWhatIsKnownOfTagsThatStay()
{
    openAndRead();
    m_plant->setWord(1000, 500);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 0, ValueColumn::Max), latin("50.0"), kPatienceMs);
    QVERIFY(write(0, "400"));
    QCOMPARE(stage(0), WriteStage::NotSent);
    QVector<Tag> fewer = m_plant->tags().tags().all();
    fewer.removeAt(1);
    fewer.prepend(fewer.takeLast());
    m_plant->tags().setTags(TagSet(fewer));
    QCOMPARE(m_model->rowCount(), 16);
    QCOMPARE(shown(*m_model, 1, ValueColumn::Name), latin("oil.speed"));
    QCOMPARE(shown(*m_model, 1, ValueColumn::Max), latin("50.0"));
    QCOMPARE(stage(1), WriteStage::NotSent);
    // Another place under the same name is another value.
    fewer[1].item.start = 1100;
    m_plant->tags().setTags(TagSet(fewer));
    QCOMPARE(shown(*m_model, 1, ValueColumn::Max), QString());
    m_plant->tags().setTags(TagSet());
    QCOMPARE(m_model->rowCount(), 0);
}

const Case<const char *, const char *> TestValuesTable::kFilters[] = {
    {"nothing", "", "oil.speed oil.level oil.mode lamp name"},
    {"name", "SPEED", "oil.speed"},
    {"description", "tank", "oil.level"},
    {"group", "pump", "oil.speed"},
    {"all words", "  oil height ", "oil.level"},
    {"quality", "not read level", "oil.level"},
    {"none", "nonsense", ""},
};

void TestValuesTable::filtersByWords_data()
{
    addRows(kFilters);
}

void TestValuesTable::filtersByWords()
{
    const auto &row = currentRow(kFilters);
    m_shown->setWords(latin(row.given));
    QStringList names;
    for (int i = 0; i < m_shown->rowCount(); ++i) {
        const QString name = shown(*m_shown, i, ValueColumn::Name);
        if (!name.startsWith(latin("zones["))) {
            names.append(name);
        }
    }
    QCOMPARE(names.join(QLatin1Char(' ')), latin(row.expected));
}

void TestValuesTable::filtersByGroup()
{
    m_shown->setGroup(latin("oil")); // not "oilcan"
    QCOMPARE(m_shown->rowCount(), 3);
    m_shown->setGroup(latin("oil/pump"));
    QCOMPARE(m_shown->rowCount(), 1);
    m_shown->setWords(latin("level"));
    QCOMPARE(m_shown->rowCount(), 0);
    m_shown->setGroup(QString());
    QCOMPARE(m_shown->rowCount(), 1);
}

void TestValuesTable::filtersByQualityAsItChanges()
{
    m_shown->setWords(latin("line down"));
    QCOMPARE(m_shown->rowCount(), 0);
    openAndRead();
    m_plant->line().close();
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->rowCount(), 17, kPatienceMs);
}

const TestValuesTable::Order TestValuesTable::kOrders[] = {
    {"names, and indexes as numbers",
     ValueColumn::Name,
     Qt::AscendingOrder,
     {15, 16, 1, 2, 0, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}},
    {"names backwards",
     ValueColumn::Name,
     Qt::DescendingOrder,
     {14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 0, 2, 1, 16, 15}},
    {"values as numbers, texts last",
     ValueColumn::Value,
     Qt::AscendingOrder,
     {1, 15, 2, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 14, 13, 0, 16}},
    {"raw words",
     ValueColumn::Raw,
     Qt::AscendingOrder,
     {15, 2, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 14, 13, 0, 16, 1}},
};

void TestValuesTable::sorts_data()
{
    addRows(kOrders);
}

void TestValuesTable::sorts()
{
    m_plant->open();
    m_plant->setWord(1000, 999);    // 99.9
    m_plant->setWord(1001, 0xFFFE); // -2
    m_plant->setWord(1002, 2);
    m_plant->setWord(1030, 0x4141);
    for (int i = 0; i < 10; ++i) {
        m_plant->setWord(1010 + i, static_cast<quint16>(20 - i));
    }
    m_plant->setWord(1020, 31);
    m_plant->setWord(1021, 30);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 14, ValueColumn::Value), latin("30"), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(*m_model, 16, ValueColumn::Value), latin("\"AA\""),
                              kPatienceMs);
    const auto &row = currentRow(kOrders);
    m_shown->sort(at(row.column), row.order);
    QVector<int> rows;
    for (int i = 0; i < m_shown->rowCount(); ++i) {
        rows.append(m_shown->index(i, 0).data(ValuesModel::RowRole).toInt());
    }
    QCOMPARE(rows, row.rows);
}

void TestValuesTable::dragsNames()
{
    const QModelIndexList cells{m_shown->index(0, 0), m_shown->index(0, 1), m_shown->index(5, 2)};
    const std::unique_ptr<QMimeData> data(m_shown->mimeData(cells));
    QCOMPARE(tagsOfMime(data.get()), (QStringList{latin("oil.speed"), latin("zones[2]")}));
    QVERIFY(m_shown->mimeTypes().contains(data->formats().first()));
    QVERIFY(m_shown->flags(m_shown->index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
}

QTEST_MAIN(TestValuesTable)
#include "test_values_table.moc"
