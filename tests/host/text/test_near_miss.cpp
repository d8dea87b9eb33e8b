#include "support/rows.h"

#include <host/text/near_miss.h>

#include <QtTest>

using namespace cnet;

class TestNearMiss : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void isBounded();
};

namespace {

const Case<const char *, const char *> kMisses[] = {
    {"another case", "d_w", "D_W"},
    {"only the beginning", "D", "D_W"},
    {"a letter left out", "scle", "scale"},
    {"a letter too many", "scalle", "scale"},
    {"another letter", "scake", "scale"},
    {"two letters swapped", "sacle", "scale"},
    {"the first of two that are as near", "textz", "text"},
    {"something else", "colour", ""},
    {"another short one", "xyz", ""},
    {"nothing", "", ""},
};

const QStringList kKnown{QLatin1String("scale"), QLatin1String("text"), QLatin1String("texts"),
                         QLatin1String("D_W"), QLatin1String("M_bit")};

} // namespace

void TestNearMiss::finds_data()
{
    addRows(kMisses);
}

void TestNearMiss::finds()
{
    const auto &row = currentRow(kMisses);
    const QString wanted = QLatin1String(row.expected);
    QCOMPARE(nearMiss(QLatin1String(row.given), kKnown), wanted);
    QCOMPARE(nearMissHint(QLatin1String(row.given), kKnown),
             wanted.isEmpty() ? QString()
                              : QLatin1String("; did you mean ") + wanted + QLatin1Char('?'));
}

void TestNearMiss::isBounded()
{
    const QString endless(5000000, QLatin1Char('s'));
    QCOMPARE(nearMiss(endless, kKnown), QString());
    QCOMPARE(nearMiss(QLatin1String("scale"), {endless}), QString());
}

QTEST_APPLESS_MAIN(TestNearMiss)
#include "test_near_miss.moc"
