#include "shown_values.h"

using namespace cnet;
using namespace cnet::view;

/** What one PLC had and took is not shown as another one's, and nothing is written by mistake. */
class TestValuesOtherPlc : public QObject, private ShownValues
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }

    void forgetsExtremesAndWrites();
    void tellsNothingOfAnEmptyTable();
    void writesNothingFromADrag();

private:
    QString text(const char *name, ValueColumn column) const
    {
        const auto &model = *view()->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data().toString() == latin(name)) {
                return model.index(row, static_cast<int>(column)).data().toString();
            }
        }
        return QLatin1String("(no such row)");
    }
};

void TestValuesOtherPlc::forgetsExtremesAndWrites()
{
    m_page->setTags(m_plant->read("name,register,address,type,access\n"
                                  "oil.speed,D_W,1000,u16,read-write\n"));
    m_plant->open();
    m_plant->setWord(1000, 7);
    QTRY_COMPARE_WITH_TIMEOUT(text("oil.speed", ValueColumn::Max), QLatin1String("7"), kPatienceMs);
    auto &model = *view()->model();
    QVERIFY(
        model.setData(model.index(0, static_cast<int>(ValueColumn::Value)), QLatin1String("3")));
    QTRY_VERIFY_WITH_TIMEOUT(text("oil.speed", ValueColumn::Write).startsWith(latin("taken")),
                             kPatienceMs);
    const Connection same = m_plant->line().connection();
    m_plant->line().open(same); // it is the one of before
    QCOMPARE(text("oil.speed", ValueColumn::Max), QLatin1String("7"));
    Connection other = same;
    other.station = 2;
    m_plant->line().open(other);
    QCOMPARE(text("oil.speed", ValueColumn::Max), QString());
    QCOMPARE(text("oil.speed", ValueColumn::Min), QString());
    QCOMPARE(text("oil.speed", ValueColumn::Write), QString());
    QCOMPARE(text("oil.speed", ValueColumn::Changed), QString());
}

void TestValuesOtherPlc::tellsNothingOfAnEmptyTable()
{
    m_plant->open();
    QSignalSpy told(m_page->findChild<ValuesModel *>(), &QAbstractItemModel::dataChanged);
    Connection other = m_plant->line().connection();
    other.station = 2;
    m_plant->line().open(other);
    QVERIFY(told.isEmpty());
}

void TestValuesOtherPlc::writesNothingFromADrag()
{
    m_page->setTags(m_plant->read(kTags));
    QVERIFY(!view()->dragDropOverwriteMode());
    auto &model = *view()->model();
    QVERIFY(!model.setData(model.index(0, static_cast<int>(ValueColumn::Value)), QVariant()));
    QCOMPARE(text("oil.speed", ValueColumn::Write), QString());
}

QTEST_MAIN(TestValuesOtherPlc)
#include "test_values_other_plc.moc"
