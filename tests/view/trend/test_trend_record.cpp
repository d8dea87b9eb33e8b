#include "support/full_disk.h"
#include "view/support/files.h"

#include "view/trend/output/trend_record.h"

#include "host/text/csv_file.h"

#include <QTemporaryDir>

using namespace cnet;
using namespace cnet::view;

namespace {

constexpr qint64 kNow = 1700000000000;
const QLatin1String kName("press.speed");

QList<QByteArray> rowsOf(const QString &path)
{
    QList<QByteArray> rows = bytesOf(path).split('\n');
    if (!rows.isEmpty() && rows.last().isEmpty()) {
        rows.removeLast();
    }
    return rows;
}

} // namespace

/** Recordings: their rows, their bound, and files of others. */
class TestTrendRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writesRows();
    void keepsToItsBound();
    void goesOnWithAFile();
    void leavesOtherFilesAlone();
    void endsWhenTheDiskIsFull();
    void leavesAFileToTheWindowThatHasIt();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    bool start(const QString &file, qint64 bound = TrendRecord::kLeastBound)
    {
        m_error.clear();
        return m_record->start(file, bound, m_error);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TrendRecord> m_record;
    QString m_error;
};

void TestTrendRecord::init()
{
    m_record = std::make_unique<TrendRecord>();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestTrendRecord::writesRows()
{
    m_record->add(kName, kNow, 1, Quality::Good); // none runs
    QVERIFY2(start(path("a.csv")), qPrintable(m_error));
    m_record->add(kName, kNow, 12.5, Quality::Good);
    m_record->add(QLatin1String("a, b"), kNow + 7, qQNaN(), Quality::LineDown);
    m_record->add(kName, kNow + 1000, -3, Quality::Waiting);
    // A second at the latest, without any more samples.
    QTRY_COMPARE_WITH_TIMEOUT(rowsOf(path("a.csv")).size(), 4, 60000);
    const auto file =
        CsvFile::read(bytesOf(path("a.csv")), CsvDivider::Comma, CsvQuotes::Understood);
    const auto cell = [&file](int row, int column) { return file.fields(row).at(column).text; };
    const auto msOf = [&cell](int row) {
        return QDateTime::fromString(cell(row, 0), Qt::ISODateWithMs).toMSecsSinceEpoch();
    };
    QCOMPARE(cell(0, 0), QLatin1String("time"));
    QCOMPARE(msOf(1), kNow);
    QCOMPARE(msOf(2), kNow + 7);
    QCOMPARE(msOf(3), kNow + 1000);
    QCOMPARE(cell(1, 1), kName);
    QCOMPARE(cell(1, 2), QLatin1String("12.5"));
    QCOMPARE(cell(1, 3), qualityText(Quality::Good));
    QCOMPARE(cell(2, 1), QLatin1String("a, b"));
    QCOMPARE(cell(2, 2), QString());
    QCOMPARE(cell(2, 3), qualityText(Quality::LineDown));
}

void TestTrendRecord::keepsToItsBound()
{
    const QString file = path("b.csv");
    QCOMPARE(TrendRecord::olderPath(file), path("b.older.csv"));
    QCOMPARE(TrendRecord::olderPath(path("plain")), path("plain.older"));
    QVERIFY(start(file));
    constexpr int kRows = 20000; // some megabyte
    for (int i = 0; i < kRows; ++i) {
        m_record->add(kName, kNow + i, i, Quality::Good);
        if (i % 1000 == 0) {
            const qint64 both = QFileInfo(file).size() + QFileInfo(path("b.older.csv")).size();
            QVERIFY(both <= TrendRecord::kLeastBound);
        }
    }
    m_record->stop();
    const auto newer = rowsOf(file);
    const auto older = rowsOf(path("b.older.csv"));
    QCOMPARE(newer.first(), older.first());
    QVERIFY(newer.last().contains(QByteArray::number(kRows - 1)));
    // Without a hole between the parts, and of the bound not too little.
    const int all = int(newer.size() + older.size()) - 2;
    QVERIFY(older.at(1).contains(',' + QByteArray::number(kRows - all) + ','));
    QVERIFY(bytesOf(file).size() + bytesOf(path("b.older.csv")).size() >
            TrendRecord::kLeastBound / 3);
}

void TestTrendRecord::goesOnWithAFile()
{
    const QString file = path("c.csv");
    QVERIFY(start(file));
    m_record->add(kName, kNow, 1, Quality::Good);
    m_record->stop();
    QFile torn(file);
    QVERIFY(torn.open(QIODevice::Append));
    torn.write("2024-05-01T12"); // the power went
    torn.close();
    QVERIFY(start(file));
    m_record->add(kName, kNow, 2, Quality::Good);
    m_record->stop();
    const auto rows = rowsOf(file);
    QCOMPARE(rows.size(), 4);
    QVERIFY(rows.at(1).contains(",1,"));
    QVERIFY(rows.at(3).contains(",2,"));
}

void TestTrendRecord::leavesOtherFilesAlone()
{
    for (const QString &other : {path("d.csv"), path("e.older.csv")}) {
        put(other, "my thesis");
    }
    QVERIFY(!start(path("d.csv")));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(!start(path("e.csv")));
    QVERIFY(!start(path("no/such/folder.csv")));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(!m_record->isRunning());
    QCOMPARE(bytesOf(path("d.csv")), QByteArray("my thesis"));
    QCOMPARE(bytesOf(path("e.older.csv")), QByteArray("my thesis"));
}

void TestTrendRecord::endsWhenTheDiskIsFull()
{
    const QString file = path("f.csv");
    QSignalSpy failed(m_record.get(), &TrendRecord::failed);
    QVERIFY(start(file));
    m_record->add(kName, kNow, 1, Quality::Good);
    m_record->flush();
    const QByteArray before = bytesOf(file);
    {
        const FullDisk full(static_cast<rlim_t>(before.size()) + 10);
        m_record->add(kName, kNow, 2, Quality::Good);
        m_record->flush();
    }
    QCOMPARE(failed.count(), 1);
    QVERIFY(failed.first().first().toString().contains(QLatin1String("f.csv")));
    QVERIFY(!m_record->isRunning());
    QCOMPARE(bytesOf(file), before); // and no half row
    m_record->add(kName, kNow, 3, Quality::Good);
    m_record->flush();
    QCOMPARE(failed.count(), 1);
}

void TestTrendRecord::leavesAFileToTheWindowThatHasIt()
{
    QVERIFY(start(path("g.csv")));
    TrendRecord other;
    QVERIFY(!other.start(path("g.csv"), 0, m_error));
    QVERIFY2(m_error.contains(QLatin1String("Another window")) &&
                 m_error.contains(QLatin1String("g.csv.lock")) &&
                 m_error.contains(QString::number(QCoreApplication::applicationPid())),
             qPrintable(m_error));
    QVERIFY(!other.isRunning());
    QVERIFY(start(path("g.csv"))); // its own is no other
    m_record->stop();
    QVERIFY(other.start(path("g.csv"), 0, m_error));
    other.stop();
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(QLatin1String("g.csv")));
}

QTEST_MAIN(TestTrendRecord)
#include "test_trend_record.moc"
