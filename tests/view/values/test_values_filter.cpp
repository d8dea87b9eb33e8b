#include "table_of_values.h"
#include "view/tags/tag_drag.h"
#include "view/values/table/values_filter.h"

#include "support/rows.h"

using namespace cnet;
using namespace cnet::view;

/** The table of values: which of its rows are seen, and in which order. */
class TestValuesFilter : public QObject, private TableOfValues
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

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

    static const Case<const char *, const char *> kFilters[];
    static const Order kOrders[];

    std::unique_ptr<ValuesFilter> m_shown;
    std::unique_ptr<QAbstractItemModelTester> m_shownTester;
};

void TestValuesFilter::init()
{
    begin();
    m_shown = std::make_unique<ValuesFilter>(*m_model);
    m_shownTester = std::make_unique<QAbstractItemModelTester>(m_shown.get());
}

void TestValuesFilter::cleanup()
{
    m_shownTester.reset();
    m_shown.reset();
    end();
}

const Case<const char *, const char *> TestValuesFilter::kFilters[] = {
    {"nothing", "", "oil.speed oil.level oil.mode lamp name"},
    {"name", "SPEED", "oil.speed"},
    {"description", "tank", "oil.level"},
    {"group", "pump", "oil.speed"},
    {"all words", "  oil height ", "oil.level"},
    {"quality", "not read level", "oil.level"},
    {"none", "nonsense", ""},
};

void TestValuesFilter::filtersByWords_data()
{
    addRows(kFilters);
}

void TestValuesFilter::filtersByWords()
{
    const auto &row = currentRow(kFilters);
    m_shown->setWords(latin(row.given));
    QStringList names;
    for (int i = 0; i < m_shown->rowCount(); ++i) {
        const QString name = view::shown(*m_shown, i, ValueColumn::Name);
        if (!name.startsWith(latin("zones["))) {
            names.append(name);
        }
    }
    QCOMPARE(names.join(QLatin1Char(' ')), latin(row.expected));
}

void TestValuesFilter::filtersByGroup()
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

void TestValuesFilter::filtersByQualityAsItChanges()
{
    m_shown->setWords(latin("line down"));
    QCOMPARE(m_shown->rowCount(), 0);
    openAndRead();
    m_plant->line().close();
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->rowCount(), 17, kPatienceMs);
}

const TestValuesFilter::Order TestValuesFilter::kOrders[] = {
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

void TestValuesFilter::sorts_data()
{
    addRows(kOrders);
}

void TestValuesFilter::sorts()
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
    QTRY_COMPARE_WITH_TIMEOUT(shown(14, ValueColumn::Value), latin("30"), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(shown(16, ValueColumn::Value), latin("\"AA\""), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    const auto &row = currentRow(kOrders);
    m_shown->sort(static_cast<int>(row.column), row.order);
    QVector<int> rows;
    for (int i = 0; i < m_shown->rowCount(); ++i) {
        rows.append(m_shown->index(i, 0).data(ValuesModel::RowRole).toInt());
    }
    QCOMPARE(rows, row.rows);
}

void TestValuesFilter::dragsNames()
{
    const QModelIndexList cells{m_shown->index(0, 0), m_shown->index(0, 1), m_shown->index(5, 2)};
    const std::unique_ptr<QMimeData> data(m_shown->mimeData(cells));
    QCOMPARE(tagsOfMime(data.get()), (QStringList{latin("oil.speed"), latin("zones[2]")}));
    QVERIFY(m_shown->mimeTypes().contains(data->formats().first()));
    QVERIFY(m_shown->flags(m_shown->index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
}

QTEST_MAIN(TestValuesFilter)
#include "test_values_filter.moc"
