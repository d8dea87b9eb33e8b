#include <host/scan/likely_settings.h>

#include <QSet>
#include <QtTest>

using namespace cnet;

class TestLikelySettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasEachOnce();
    void beginsWithTheLikely();
};

void TestLikelySettings::hasEachOnce()
{
    QSet<QString> texts;
    for (const LineSettings &line : likelySettings()) {
        QCOMPARE(line.dataBits, 8);
        texts.insert(line.text());
    }
    QCOMPARE(texts.size(), likelySettings().size());
    QCOMPARE(texts.size(), 8 * 3 * 2);
    QVERIFY(texts.contains(QLatin1String("4800,8,ODD,2")));
}

void TestLikelySettings::beginsWithTheLikely()
{
    const QVector<LineSettings> all = likelySettings();
    QCOMPARE(all.constFirst().text(), LineSettings().text());
    QCOMPARE(all.at(1).text(), QLatin1String("9600,8,NONE,1"));
    QCOMPARE(all.at(8).text(), QLatin1String("38400,8,EVEN,1"));
    QCOMPARE(all.constLast().text(), QLatin1String("1200,8,ODD,2"));
}

QTEST_APPLESS_MAIN(TestLikelySettings)
#include "test_likely_settings.moc"
