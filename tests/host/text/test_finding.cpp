#include <host/text/finding.h>

#include <QtTest>

using namespace cnet;

class TestFinding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhere();
    void keepsTheFirstInTheOrderOfTheFile();
};

void TestFinding::saysWhere()
{
    const Finding inField{7, 12, QLatin1String("scale"), QLatin1String("'0' is no scale")};
    QCOMPARE(inField.placed(), QLatin1String("7:12: scale: '0' is no scale"));
    const Finding ofFile{9, 1, QString(), QLatin1String("no tags")};
    QCOMPARE(ofFile.placed(), QLatin1String("9:1: no tags"));
}

void TestFinding::keepsTheFirstInTheOrderOfTheFile()
{
    const auto finding = [](int line, int column) { return Finding{line, column, {}, {}}; };
    Findings rows(2);
    rows.add(finding(3, 5));
    rows.add(finding(8, 1));
    rows.add(finding(9, 1));
    Findings across(2);
    across.add(finding(3, 2));
    rows.add(across);
    rows.sort();
    QCOMPARE(rows.count(), 4);
    QCOMPARE(int(rows.first().size()), 2);
    QCOMPARE(rows.first().at(0).column, 2);
    QCOMPARE(rows.first().at(1).column, 5);
    QVERIFY(!rows.isEmpty() && Findings(5).isEmpty());
}

QTEST_APPLESS_MAIN(TestFinding)
#include "test_finding.moc"
