#include "shown_trend.h"

#include "support/full_disk.h"
#include "support/rows.h"

using namespace cnet;
using namespace cnet::view;

namespace {

const Case<const char *, const char *> kPictures[] = {{"PNG", "a.png", "\x89PNG"},
                                                      {"SVG", "a.svg", "<?xml"},
                                                      {"SVG in capitals", "a.SVG", "<?xml"},
                                                      {"no ending", "a", "\x89PNG"}};

} // namespace

/** The files of the page: tables, pictures and recordings. */
class TestTrendFiles : public QObject, private ShownTrend
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void writesCsv();
    void writesPictures_data();
    void writesPictures();
    void tellsOfAFullDisk();
    void recordsToAFile();
    void recordsWhatIsConfirmed();

private:
    bool write(const char *text);
};

void TestTrendFiles::writesCsv()
{
    const QString file = path("a.csv");
    QVERIFY(!m_page->exportCsv(file));
    QVERIFY(!trouble().isEmpty());
    QVERIFY(!QFile::exists(file));
    m_page->addTraces(names("speed"));
    const double to = m_page->view().sight().time.to;
    store("speed").clear();
    store("speed").append(qRound64(to) - 30000, 1);
    store("speed").append(qRound64(to) - 10000, 2);
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY2(m_page->exportCsv(file), qPrintable(trouble()));
    QCOMPARE(told.count(), 1);
    const auto rows = [&file] { return bytesOf(file).count('\n'); };
    QCOMPARE(rows(), 3);
    m_page->cursors().place(Cursor::A, to - 20000);
    m_page->cursors().place(Cursor::B, to - 15000);
    QVERIFY(m_page->exportCsv(file));
    QCOMPARE(rows(), 2);
}

void TestTrendFiles::writesPictures_data()
{
    addRows(kPictures);
}

void TestTrendFiles::writesPictures()
{
    const auto &row = currentRow(kPictures);
    m_page->addTraces(names("speed lamp"));
    QCoreApplication::processEvents();
    m_page->refresh();
    const QString file = path(row.given);
    QVERIFY(m_page->exportImage(file));
    const QByteArray content = bytesOf(file);
    QVERIFY(content.startsWith(row.expected));
    if (content.startsWith("<?xml")) {
        QVERIFY(content.contains(">speed (1/min)<"));
        QVERIFY(content.contains(">lamp<"));
    } else {
        const QImage image = QImage::fromData(content);
        QVERIFY(image.width() >= m_page->plot().width());
        QVERIFY(image.height() > m_page->plot().height());
    }
}

void TestTrendFiles::tellsOfAFullDisk()
{
    m_page->addTraces(names("speed"));
    const QString file = path("a.png");
    QVERIFY(m_page->exportImage(file));
    const QByteArray before = bytesOf(file);
    {
        const FullDisk full(100);
        QVERIFY(!m_page->exportImage(file));
    }
    QVERIFY(trouble().contains(QLatin1String("a.png")));
    QCOMPARE(bytesOf(file), before);
}

/** @param text an assignment */
bool TestTrendFiles::write(const char *text)
{
    QString error;
    const auto assignment =
        parseAssignment(QLatin1String(text), 1, m_plant->line().registers(), error);
    if (assignment) {
        m_plant->line().session()->write({*assignment}, ReadBack::Never);
    }
    return assignment.has_value();
}

void TestTrendFiles::recordsToAFile()
{
    m_page->addTraces(names("speed"));
    openOnce();
    setWord(1000, 100); // before it is read
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 10.0, kPatienceMs);
    QVERIFY(!m_page->startRecording(path("no/a.csv")));
    QVERIFY(!trouble().isEmpty());
    QVERIFY(!m_page->actions().record->isChecked());
    const QString file = path("a.csv");
    QVERIFY(m_page->startRecording(file));
    QVERIFY(m_page->actions().record->isChecked());
    QVERIFY(write("D_W:1000=200"));
    QTRY_COMPARE_WITH_TIMEOUT(last("speed"), 20.0, kPatienceMs);
    m_plant->line().close();
    m_page->stopRecording();
    QVERIFY(!m_page->record().isRunning());
    const auto rows = bytesOf(file).split('\n');
    QCOMPARE(rows.size(), 5); // the last one is empty
    QVERIFY(rows.at(1).endsWith(",speed,10,good"));
    QVERIFY(rows.at(2).endsWith(",speed,20,good"));
    QVERIFY(rows.at(3).contains(",speed,,"));
}

void TestTrendFiles::recordsWhatIsConfirmed()
{
    m_page->addTraces(names("level"));
    openOnce();
    setWord(1001, 10); // before it is read
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 10.0, kPatienceMs);
    // It begins while the write waits.
    m_plant->plc().faults.add({plc::FaultKind::Delay, 300, 300, 2});
    QSignalSpy told(&tags(), &WatchedTags::stateChanged);
    QVERIFY(write("D_W:1001=20"));
    const int level = tags().tags().indexOf(QLatin1String("level"));
    QTRY_VERIFY_WITH_TIMEOUT(!told.isEmpty(), kPatienceMs);
    QCOMPARE(tags().quality(level), Quality::Waiting);
    const QString file = path("a.csv");
    QVERIFY(m_page->startRecording(file));
    QTRY_COMPARE_WITH_TIMEOUT(last("level"), 20.0, kPatienceMs);
    m_page->stopRecording();
    const auto rows = bytesOf(file).split('\n');
    QCOMPARE(rows.size(), 4); // the last one is empty
    QVERIFY(rows.at(1).endsWith(",level,10,good"));
    QVERIFY(rows.at(2).endsWith(",level,20,good"));
}

QTEST_MAIN(TestTrendFiles)
#include "test_trend_files.moc"
