#include "gateway/sinks/history_file.h"
#include "gateway/sinks/history_reader.h"
#include "gateway/support/changes.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace cnet;
using namespace cnet::gateway;

/** What is stored is read again, once, also while more is stored; old changes go. */
class TestHistoryFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void givesBackAllKinds();
    void choosesByTag_data();
    void choosesByTag();
    void choosesByTime();
    void takesABatchOnce();
    void followsATagThatMeansSomethingElse();
    void storesAllOfWhatDidNotFit_data();
    void storesAllOfWhatDidNotFit();
    void letsOldChangesGo();
    void letsChangesGoForRoom();
    void hasAViewForPeople();
    void saysWhatFails();

private:
    StoreError open(HistoryFile &file, const char *ledger = "one") const
    {
        return file.open(path(), m_bounds, QLatin1String(ledger));
    }
    QString path() const { return m_directory->filePath(QLatin1String("history.sqlite")); }
    QStringList read(const HistoryQuery &query = {QLatin1String("*"), QString()}) const;

    HistoryBounds m_bounds;
    std::unique_ptr<QTemporaryDir> m_directory;
};

namespace {

constexpr qint64 kHourMs = 3600000;

SinkBatch batchOf(qint64 number, const QVector<Change> &changes)
{
    return {number, changes};
}

QString textOf(const HistoryRow &row)
{
    const auto *whole = std::get_if<qint64>(&row.value.value);
    return row.tag.name + QLatin1Char('=') +
           (whole == nullptr ? QLatin1String("-") : QString::number(*whole));
}

} // namespace

void TestHistoryFile::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_bounds = {kHourMs, 1000000000};
}

QStringList TestHistoryFile::read(const HistoryQuery &query) const
{
    HistoryReader reader;
    QStringList texts;
    reader.open(path());
    reader.read(query, [&texts](const HistoryRow &row) {
        texts.append(::textOf(row));
        return true;
    });
    return texts;
}

void TestHistoryFile::givesBackAllKinds()
{
    HistoryFile file;
    QVERIFY(open(file).isNone());
    QVector<Change> changes;
    const auto add = [&changes](ValueKind kind, const Scalar &value) {
        auto source = sourceOf("a");
        source->tag = QString::number(changes.size());
        source->unit = QString::fromUtf8("\xc2\xb5m");
        source->type.kind = kind;
        source->scale = 0.5;
        changes.append(changeOf(source, value, 5000));
    };
    add(ValueKind::Bool, true);
    add(ValueKind::Bit, false);
    add(ValueKind::I64, qint64(-9223372036854775807));
    add(ValueKind::U64, quint64(18446744073709551615U));
    add(ValueKind::F32, 0.1);
    add(ValueKind::Enum, qint64(1));
    add(ValueKind::U16, Scalar());
    add(ValueKind::I16, 0.0);
    Change bad = changes.last();
    bad.quality = Quality::NoAnswer;
    bad.cause = QLatin1String("timed out");
    changes.append(bad);
    QVERIFY(file.store({batchOf(1, changes)}).isNone());

    HistoryReader reader;
    QVERIFY(reader.open(path()).isNone());
    int row = 0;
    const auto compare = [&](const HistoryRow &read) {
        const Change &change = changes.at(row++);
        const bool isSame =
            read.value.value == change.value && read.tag.name == change.source->tag &&
            read.tag.unit == change.source->unit && read.tag.type == change.source->type &&
            read.tag.scale == 0.5 && read.tag.item.station == 1 && read.atMs == 5000 &&
            read.line == QLatin1String("press") && read.quality == qualityText(change.quality) &&
            read.reason == change.cause;
        return isSame;
    };
    QVERIFY(reader.read({QLatin1String("*"), QString()}, compare).isNone());
    QCOMPARE(row, int(changes.size()));
}

void TestHistoryFile::choosesByTag_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("found");
    const auto row = [](const char *name, const char *tag, const char *line, const char *found) {
        QTest::newRow(name) << QString::fromLatin1(tag) << QString::fromLatin1(line)
                            << QString::fromLatin1(found);
    };
    row("name", "press.a", "", "press.a=1");
    row("pattern", "press.?", "", "press.a=1 press.b=2");
    row("array", "zones", "", "zones[0]=3 zones[1]=4");
    row("one of an array", "zones[1]", "", "zones[1]=4");
    row("line", "press.a", "press", "press.a=1");
    row("another line", "press.a", "oven", "");
    row("no tag", "press", "", "");
}

void TestHistoryFile::choosesByTag()
{
    QFETCH(QString, tag);
    QFETCH(QString, line);
    QFETCH(QString, found);
    HistoryFile file;
    QVERIFY(open(file).isNone());
    QVector<Change> changes;
    for (const char *name : {"press.a", "press.b", "zones[0]", "zones[1]"}) {
        changes.append(changeOf(sourceOf(name), qint64(changes.size() + 1)));
    }
    QVERIFY(file.store({batchOf(1, changes)}).isNone());
    QCOMPARE(read({tag, line}).join(QLatin1Char(' ')), found);
    HistoryReader reader;
    QVERIFY(reader.open(path()).isNone());
    QCOMPARE(reader.hasTag({tag, line}), !found.isEmpty());
    QCOMPARE(int(reader.tags().size()), 4);
}

void TestHistoryFile::choosesByTime()
{
    HistoryFile file;
    QVERIFY(open(file).isNone());
    const auto source = sourceOf("a");
    QVector<Change> changes;
    for (const qint64 atMs : {3000, 1000, 2000, 2000, 4000}) {
        changes.append(changeOf(source, qint64(changes.size()), atMs));
    }
    QVERIFY(file.store({batchOf(1, changes)}).isNone());
    QCOMPARE(read().join(QLatin1Char(' ')), QLatin1String("a=1 a=2 a=3 a=0 a=4"));
    QCOMPARE(read({QLatin1String("a"), QString(), 2000, 4000}).join(QLatin1Char(' ')),
             QLatin1String("a=2 a=3 a=0"));
}

void TestHistoryFile::takesABatchOnce()
{
    const auto source = sourceOf("a");
    const SinkBatch first = batchOf(1, {changeOf(source, qint64(1), 1000)});
    const SinkBatch second = batchOf(2, {changeOf(source, qint64(2), 2000)});
    HistoryFile file;
    QVERIFY(open(file).isNone());
    QVERIFY(file.store({first}).isNone());
    QVERIFY(file.store({first, second}).isNone());
    file.close();
    QVERIFY(open(file).isNone());
    QVERIFY(file.store({first, second}).isNone());
    QCOMPARE(read().join(QLatin1Char(' ')), QLatin1String("a=1 a=2"));
    // Another ledger begins with its numbers anew.
    file.close();
    QVERIFY(open(file, "another").isNone());
    QVERIFY(file.store({first}).isNone());
    QCOMPARE(int(read().size()), 3);
}

void TestHistoryFile::followsATagThatMeansSomethingElse()
{
    HistoryFile file;
    QVERIFY(open(file).isNone());
    const auto bar = sourceOf("a");
    bar->unit = QLatin1String("bar");
    auto other = sourceOf("a");
    other->unit = QLatin1String("psi");
    QVERIFY(file.store({batchOf(1, {changeOf(bar, qint64(1))})}).isNone());
    QVERIFY(file.store({batchOf(2, {changeOf(other, qint64(2))})}).isNone());
    QVERIFY(file.store({batchOf(3, {changeOf(bar, qint64(2))})}).isNone());
    QStringList units;
    HistoryReader reader;
    QVERIFY(reader.open(path()).isNone());
    reader.read({QLatin1String("a"), QString()}, [&units](const HistoryRow &row) {
        units.append(row.tag.unit);
        return true;
    });
    QCOMPARE(units.join(QLatin1Char(' ')), QLatin1String("bar bar bar"));
}

void TestHistoryFile::storesAllOfWhatDidNotFit_data()
{
    QTest::addColumn<int>("changes");
    QTest::newRow("at its end") << 1;
    QTest::newRow("while it was stored") << 5000; // 10 MB are more than is kept in memory
}

// What went with the transaction, also names of tags, is not taken for stored.
void TestHistoryFile::storesAllOfWhatDidNotFit()
{
    QFETCH(int, changes);
    HistoryFile file;
    QVERIFY(open(file).isNone());
    const Scalar text = QString(2000, QLatin1Char('x'));
    const SinkBatch batch = batchOf(1, QVector<Change>(changes, changeOf(sourceOf("a"), text)));
    {
        const FullDisk full(1000);
        QVERIFY(file.store({batch}).kind == StoreError::Kind::Full);
    }
    QVERIFY(file.store({batch}).isNone());
    QCOMPARE(int(read().size()), changes);
}

void TestHistoryFile::letsOldChangesGo()
{
    HistoryFile file;
    QVERIFY(open(file).isNone());
    const auto source = sourceOf("a");
    QVector<Change> changes;
    for (int i = 0; i < 10; ++i) {
        changes.append(changeOf(source, qint64(i), i * kHourMs));
    }
    QVERIFY(file.store({batchOf(1, changes)}).isNone());
    QVERIFY(file.prune(9 * kHourMs, 5).isNone());
    QCOMPARE(read().value(0), QLatin1String("a=5")); // bit by bit
    QVERIFY(file.prune(9 * kHourMs, 100).isNone());
    QCOMPARE(read().join(QLatin1Char(' ')), QLatin1String("a=8 a=9"));
}

void TestHistoryFile::letsChangesGoForRoom()
{
    m_bounds = {1000 * kHourMs, 1000000};
    HistoryFile file;
    QVERIFY(open(file).isNone());
    const auto source = sourceOf("a");
    for (int number = 1; number <= 100; ++number) {
        QVector<Change> changes;
        for (int i = 0; i < 1000; ++i) {
            changes.append(changeOf(source, qint64(number), number));
        }
        QVERIFY(file.store({batchOf(number, changes)}).isNone());
        QVERIFY(file.prune(1000, 2000).isNone());
    }
    const QStringList left = read();
    QVERIFY(left.size() > 10000 && left.size() < 60000);
    QCOMPARE(left.last(), QLatin1String("a=100"));
    QVERIFY(QFileInfo(path()).size() < 1500000);
}

void TestHistoryFile::hasAViewForPeople()
{
    HistoryFile file;
    QVERIFY(open(file).isNone());
    QVERIFY(file.store({batchOf(1, {changeOf(sourceOf("a"), qint64(7), 1700000000123)})}).isNone());
    Database database;
    QVERIFY(database.openToRead(path()).isNone());
    Statement view(database, "SELECT time, line, tag, value, quality FROM history");
    QCOMPARE(view.step(), Statement::Step::Row);
    QCOMPARE(view.text(0), QLatin1String("2023-11-14T22:13:20.123Z"));
    QCOMPARE(view.text(1) + view.text(2) + view.text(3) + view.text(4),
             QLatin1String("pressa7good"));
}

void TestHistoryFile::saysWhatFails()
{
    HistoryFile file;
    QVERIFY(!file.store({batchOf(1, {})}).isNone());
    QVERIFY(!file.open(QLatin1String("/nonexistent/file"), m_bounds, QString()).isNone());
    HistoryReader reader;
    QVERIFY(!reader.open(path()).isNone());
    QVERIFY(!reader.read({QLatin1String("a"), QString()}, nullptr).isNone());
}

QTEST_APPLESS_MAIN(TestHistoryFile)
#include "test_history_file.moc"
