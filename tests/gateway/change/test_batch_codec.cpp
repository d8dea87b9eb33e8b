#include "gateway/support/changes.h"
#include "support/random.h"

#include <QtTest>

#include <limits>

using namespace cnet;
using namespace cnet::gateway;

/** What is written into a batch is read from it, and from anything else nothing. */
class TestBatchCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesBackWhatItWasGiven();
    void saysMuchOnce();
    void knowsSourcesAgain();
    void forgetsSourcesInTheEnd();
    void takesNoDamagedBatch();
};

namespace {

QVector<Change> allKinds()
{
    auto source = sourceOf("mould.zones[2]");
    source->station = 31;
    source->unit = QString::fromUtf8("\xc2\xb0"
                                     "C");
    source->type.kind = ValueKind::String;
    source->type.characters = 20;
    source->scale = 0.1;
    source->offset = -40;
    QVector<Change> changes;
    const Scalar values[] = {{},
                             true,
                             qint64(-9223372036854775807),
                             qint64(63),
                             qint64(-64),
                             qint64(64),
                             quint64(18446744073709551615U),
                             0.1,
                             QString::fromUtf8("\xc3\xa4\n")};
    for (const Scalar &value : values) {
        changes.append(changeOf(source, value, 1700000000000 + changes.size()));
    }
    changes.append(changeOf(source, qint64(1), std::numeric_limits<qint64>::min()));
    changes.append(changeOf(source, qint64(1), std::numeric_limits<qint64>::max()));
    for (const Quality quality :
         {Quality::NeverRead, Quality::Good, Quality::Implausible, Quality::Stale, Quality::Refused,
          Quality::NoAnswer, Quality::LineDown}) {
        Change change = changeOf(sourceOf("b"), qint64(1));
        change.quality = quality;
        change.cause = QLatin1String("timed out");
        changes.append(change);
    }
    return changes;
}

QByteArray written(const QVector<Change> &changes)
{
    BatchWriter writer;
    for (const Change &change : changes) {
        writer.add(change);
    }
    return writer.finish();
}

} // namespace

void TestBatchCodec::givesBackWhatItWasGiven()
{
    const QVector<Change> changes = allKinds();
    const auto read = readBatch(written(changes));
    QVERIFY(read);
    QCOMPARE(read->size(), changes.size());
    for (int i = 0; i < changes.size(); ++i) {
        QVERIFY2(read->at(i) == changes.at(i), qPrintable(QString::number(i)));
    }
}

void TestBatchCodec::saysMuchOnce()
{
    BatchWriter writer;
    const auto source = sourceOf("a");
    writer.add(changeOf(source, qint64(1)));
    const int first = writer.bytes();
    writer.add(changeOf(source, qint64(2)));
    QVERIFY(writer.bytes() - first <= 5);
    QCOMPARE(writer.count(), 2);
    QVERIFY(qAbs(writer.bytes() - writer.finish().size()) < 20);
    QCOMPARE(writer.count(), 0);
    writer.add(changeOf(sourceOf("b"), qint64(3)));
    QCOMPARE(textOf(readBatch(writer.finish())->first()), QLatin1String("b=3"));
}

void TestBatchCodec::knowsSourcesAgain()
{
    BatchWriter writer;
    BatchReader reader;
    const auto source = sourceOf("a");
    QVector<Change> changes;
    for (int batch = 0; batch < 3; ++batch) {
        writer.add(changeOf(sourceOf("b"), qint64(1)));
        writer.add(changeOf(source, qint64(batch), 1000 * batch));
        const auto read = reader.read(writer.finish());
        QVERIFY(read);
        changes.append(read->last());
    }
    QCOMPARE(textOf(changes.last()), QLatin1String("a=2"));
    QCOMPARE(changes.last().atMs, qint64(2000));
    QVERIFY(changes.first().source == changes.last().source);
    // Another one of the same name is not taken for it.
    auto other = sourceOf("a");
    other->unit = QLatin1String("bar");
    writer.add(changeOf(other, qint64(4)));
    QCOMPARE(reader.read(writer.finish())->first().source->unit, QLatin1String("bar"));
}

// Tag files may be loaded for ever.
void TestBatchCodec::forgetsSourcesInTheEnd()
{
    BatchWriter writer;
    std::weak_ptr<const ChangeSource> written;
    for (int i = 0; i <= kMostKnownSources; ++i) {
        const auto source = sourceOf(QByteArray::number(i).constData());
        written = source;
        writer.add(changeOf(source, qint64(i)));
    }
    const QByteArray bytes = writer.finish();
    QVERIFY(written.expired());
    BatchReader reader;
    std::weak_ptr<const ChangeSource> read = reader.read(bytes)->last().source;
    QVERIFY(!read.expired());
    writer.add(changeOf(sourceOf("b"), qint64(1)));
    QVERIFY(reader.read(writer.finish()));
    QVERIFY(read.expired());
}

void TestBatchCodec::takesNoDamagedBatch()
{
    const QByteArray whole = written(allKinds());
    for (int length = 0; length < whole.size(); ++length) {
        QVERIFY(!readBatch(whole.left(length)));
    }
    QVERIFY(!readBatch(whole + 'x'));
    Random random(3);
    for (int i = 0; i < 3000; ++i) {
        QByteArray other = whole;
        other[random.below(static_cast<int>(other.size()))] = static_cast<char>(random.below(256));
        readBatch(other); // whatever comes of it: no crash, no memory without end
    }
}

QTEST_APPLESS_MAIN(TestBatchCodec)
#include "test_batch_codec.moc"
