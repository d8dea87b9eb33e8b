#include "host/support/test_registers.h"

#include <host/jobs/read_plan.h>

#include <QtTest>

using namespace cnet;

namespace {

const int kBlockWords = 10;

} // namespace

class TestReadPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plans_data();
    void plans();
    void picksTheValues_data();
    void picksTheValues();
};

void TestReadPlan::plans_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("together"); // requests, with the items that each serves
    QTest::addColumn<QString>("apart");
    const auto row = [](const char *name, const char *asked, const char *together,
                        const char *apart) {
        QTest::newRow(name) << QString::fromLatin1(asked) << QString::fromLatin1(together)
                            << QString::fromLatin1(apart);
    };
    const char cut[] = "1/D_W:0*10 (0), 1/D_W:10*10 (0), 1/D_W:20 (0)";
    row("one", "D_W:5*3", "1/D_W:5*3 (0)", "1/D_W:5*3 (0)");
    row("longer than a block", "D_W:0*21", cut, cut);
    row("neighbours", "D_W:5*3 D_W:8*2", "1/D_W:5*5 (0 1)", "1/D_W:5*3 (0), 1/D_W:8*2 (1)");
    row("any order", "D_W:8*2 D_W:5*3", "1/D_W:5*5 (1 0)", "1/D_W:8*2 (0), 1/D_W:5*3 (1)");
    row("the same twice", "D_W:5 D_W:5", "1/D_W:5 (0 1)", "1/D_W:5 (0), 1/D_W:5 (1)");
    row("one within the other", "D_W:5*5 D_W:6", "1/D_W:5*5 (0 1)", "1/D_W:5*5 (0), 1/D_W:6 (1)");
    row("as small a gap as pays", "D_W:0 D_W:9", "1/D_W:0*10 (0 1)", "1/D_W:0 (0), 1/D_W:9 (1)");
    row("not more than a block", "D_W:0*5 D_W:6*5", "1/D_W:0*5 (0), 1/D_W:6*5 (1)",
        "1/D_W:0*5 (0), 1/D_W:6*5 (1)");
    row("stations", "2/D_W:0 1/D_W:1", "1/D_W:1 (1), 2/D_W:0 (0)", "2/D_W:0 (0), 1/D_W:1 (1)");
    row("registers", "M_W:0 D_W:1", "1/D_W:1 (1), 1/M_W:0 (0)", "1/M_W:0 (0), 1/D_W:1 (1)");
    row("bits", "M_bit:3.15*2 M_bit:3.0", "1/M_W:3*2 (0 1)", "1/M_W:3*2 (0), 1/M_W:3 (1)");
    row("bits beside words", "M_bit:3.15 M_W:4", "1/M_W:3*2 (0 1)", "1/M_W:3 (0), 1/M_W:4 (1)");
    row("contacts", "TX:7*2", "1/TX:7 (0), 1/TX:8 (0)", "1/TX:7 (0), 1/TX:8 (0)");
}

void TestReadPlan::plans()
{
    QFETCH(QString, asked);
    for (const auto merging : {Merging::Together, Merging::Apart}) {
        QStringList requests;
        for (const PlannedRead &read :
             planReads(testItems(asked), testCatalog(), kBlockWords, merging)) {
            QStringList served;
            for (const ServedBlock &block : read.serves) {
                served.append(QString::number(block.item));
            }
            requests.append(QString::fromLatin1("%1 (%2)").arg(read.request.text(),
                                                               served.join(QLatin1Char(' '))));
        }
        QTEST(requests.join(QLatin1String(", ")),
              merging == Merging::Together ? "together" : "apart");
    }
}

void TestReadPlan::picksTheValues_data()
{
    QTest::addColumn<QString>("asked");
    QTest::addColumn<int>("offset"); // of the block in the item
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("request");
    QTest::addColumn<QVector<quint16>>("values");
    // The request brings 0x8000, 0x0001, 0x0005.
    QTest::newRow("all") << "D_W:5*3" << 0 << 3 << "D_W:5*3" << QVector<quint16>{0x8000, 1, 5};
    QTest::newRow("some") << "D_W:6" << 0 << 1 << "D_W:5*3" << QVector<quint16>{1};
    QTest::newRow("a later block") << "D_W:0*20" << 6 << 2 << "D_W:5*3" << QVector<quint16>{1, 5};
    QTest::newRow("bits") << "M_bit:5.15*3" << 0 << 3 << "M_W:5*3" << QVector<quint16>{1, 1, 0};
    QTest::newRow("bits of a later block")
        << "M_bit:4.0*48" << 32 << 3 << "M_W:5*3" << QVector<quint16>{1, 0, 0};
    QTest::newRow("contact") << "TX:7*2" << 1 << 1 << "TX:8" << QVector<quint16>{0x8000};
}

void TestReadPlan::picksTheValues()
{
    QFETCH(QString, asked);
    QFETCH(int, offset);
    QFETCH(int, count);
    QFETCH(QString, request);
    QTEST(valuesOf(testItems(asked).first(), {offset, count}, testItems(request).first(),
                   {0x8000, 1, 5}),
          "values");
}

QTEST_APPLESS_MAIN(TestReadPlan)

#include "test_read_plan.moc"
