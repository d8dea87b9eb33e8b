#include "gateway/postgresql/copy_text.h"
#include "gateway/support/changes.h"

#include <QtTest>

#include <limits>

using namespace cnet;
using namespace cnet::gateway;

Q_DECLARE_METATYPE(cnet::Scalar)

/** Changes as COPY reads them. */
class TestCopyText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAValue_data();
    void writesAValue();
    void writesATime_data();
    void writesATime();
    void beginsAnew();
};

void TestCopyText::writesAValue_data()
{
    QTest::addColumn<Scalar>("value");
    QTest::addColumn<QByteArray>("fields");

    QTest::newRow("nothing") << Scalar() << QByteArray("\\N\t\\N\t\\N");
    QTest::newRow("true") << Scalar(true) << QByteArray("\\N\t\\N\tt");
    QTest::newRow("false") << Scalar(false) << QByteArray("\\N\t\\N\tf");
    QTest::newRow("least") << Scalar(std::numeric_limits<qint64>::min())
                           << QByteArray("-9223372036854775808\t\\N\t\\N");
    QTest::newRow("beyond 2^63") << Scalar(std::numeric_limits<quint64>::max())
                                 << QByteArray("18446744073709551615\t\\N\t\\N");
    QTest::newRow("fraction") << Scalar(0.1) << QByteArray("0.1\t\\N\t\\N");
    QTest::newRow("all digits") << Scalar(1.0 / 3) << QByteArray("0.3333333333333333\t\\N\t\\N");
    QTest::newRow("large") << Scalar(-1.7976931348623157e308)
                           << QByteArray("-1.7976931348623157e+308\t\\N\t\\N");
    QTest::newRow("text") << Scalar(QString::fromUtf8("22 °C")) << QByteArray("\\N\t22 °C\t\\N");
    QTest::newRow("empty text") << Scalar(QString()) << QByteArray("\\N\t\t\\N");
    QTest::newRow("looks like nothing")
        << Scalar(QString::fromLatin1("\\N")) << QByteArray("\\N\t\\\\N\t\\N");
    QTest::newRow("marks") << Scalar(QString::fromLatin1("a\tb\nc\rd\\."))
                           << QByteArray("\\N\ta\\tb\\nc\\rd\\\\.\t\\N");
    QTest::newRow("zero") << Scalar(QString::fromLatin1("a\0b", 3)) << QByteArray("\\N\tab\t\\N");
}

void TestCopyText::writesAValue()
{
    QFETCH(Scalar, value);
    QFETCH(QByteArray, fields);
    CopyText text;
    text.add(changeOf(sourceOf("a"), value, 1793491200007), 12, 3);
    QCOMPARE(text.finish(), "2026-11-01 00:00:00.007+00\t12\t3\t" + fields + "\n");
}

void TestCopyText::writesATime_data()
{
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("ms") << qint64(1793491200987) << QByteArray("2026-11-01 00:00:00.987+00");
    QTest::newRow("no clock") << qint64(0) << QByteArray("1970-01-01 00:00:00.000+00");
    QTest::newRow("before time") << qint64(-5) << QByteArray("1970-01-01 00:00:00.000+00");
    QTest::newRow("beyond time") << std::numeric_limits<qint64>::max()
                                 << QByteArray("9999-12-31 23:59:59.999+00");
}

void TestCopyText::writesATime()
{
    QFETCH(qint64, ms);
    CopyText text;
    text.add(changeOf(sourceOf("a"), Scalar(), 1793491200001), 1, 1);
    text.add(changeOf(sourceOf("a"), Scalar(), ms), 1, 1);
    QTEST(text.finish().split('\n').at(1).split('\t').first(), "text");
}

void TestCopyText::beginsAnew()
{
    CopyText text;
    text.add(changeOf(sourceOf("a"), qint64(1)), 1, 1);
    const QByteArray first = text.finish();
    QCOMPARE(text.finish(), QByteArray());
    text.add(changeOf(sourceOf("a"), qint64(1)), 1, 1);
    QCOMPARE(text.finish(), first);
}

QTEST_APPLESS_MAIN(TestCopyText)
#include "test_copy_text.moc"
