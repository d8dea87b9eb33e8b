#include <host/driver/change_slot.h>

#include <QtTest>

#include <memory>
#include <vector>

using namespace cnet;

class TestChangeSlot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsItsOwnHandler();
    void isFreeAgain();
    void thereAreOnlySoMany();
};

namespace {

void call(const ChangeSlot &slot, int address)
{
    QString name = QLatin1String("D_W");
    QCOMPARE(slot.function()(0, 3, name, address), 0);
}

} // namespace

void TestChangeSlot::tellsItsOwnHandler()
{
    const ChangeSlot mute;
    ChangeSlot left;
    ChangeSlot right;
    QStringList told;
    left.setHandler([&told](int station, const QString &name, int address) {
        told.append(QString::fromLatin1("left %1/%2:%3").arg(station).arg(name).arg(address));
    });
    right.setHandler([&told](int, const QString &, int address) {
        told.append(QString::fromLatin1("right %1").arg(address));
    });
    call(left, 5);
    call(mute, 6);
    call(right, 7);
    QCOMPARE(told, (QStringList{QLatin1String("left 3/D_W:5"), QLatin1String("right 7")}));
}

// A driver that outlives its slot calls nobody.
void TestChangeSlot::isFreeAgain()
{
    int calls = 0;
    auto slot = std::make_unique<ChangeSlot>();
    const ChangeSlot::Function function = slot->function();
    slot->setHandler([&calls](int, const QString &, int) { ++calls; });
    slot.reset();
    QString name = QLatin1String("D_W");
    function(0, 1, name, 0);
    const ChangeSlot next;
    QVERIFY(next.function() == function);
    function(0, 1, name, 0);
    QCOMPARE(calls, 0);
}

void TestChangeSlot::thereAreOnlySoMany()
{
    std::vector<std::unique_ptr<ChangeSlot>> all;
    QSet<quintptr> functions;
    for (int i = 0; i < kMostDrivers; ++i) {
        all.push_back(std::make_unique<ChangeSlot>());
        functions.insert(reinterpret_cast<quintptr>(all.back()->function()));
    }
    QCOMPARE(static_cast<int>(functions.size()), kMostDrivers);
    QVERIFY(!functions.contains(0));
    ChangeSlot none;
    QVERIFY(none.function() == nullptr);
    none.setHandler([](int, const QString &, int) {});
    all.pop_back();
    QVERIFY(ChangeSlot().function() != nullptr);
}

QTEST_APPLESS_MAIN(TestChangeSlot)

#include "test_change_slot.moc"
