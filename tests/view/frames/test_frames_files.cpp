#include "shown_frames.h"

#include <support/capture_file.h>
#include <support/full_disk.h>
#include <support/rows.h>

#include <sys/stat.h>

using namespace cnet;
using namespace cnet::view;

/** Captures that the page of frames saves and opens. */
class TestFramesFiles : public QObject, private ShownFrames
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(show()); }
    void cleanup() { close(); }
    void savesAndOpens();
    void savesManyInTurns();
    void saysWhyItCannotSave();
    void losesNothingToABrokenFile_data();
    void losesNothingToABrokenFile();
    void opensAsFarAsAFileGoes();
    void choosesALineOfAFile();
    void saysWhatAPauseLeavesOut();
    void saysWhatWasLeftOutWhenItBegan();
    void opensNoPipe();
};

void TestFramesFiles::savesAndOpens()
{
    QSignalSpy told(m_page.get(), &Page::told);
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    exchanges(3);
    exchange(readRequest(), refusal(), Outcome::Refused);
    m_page->recorder().flush();
    QVERIFY(m_page->saveCapture(path("some.pcapng")));
    QCOMPARE(told.takeFirst().at(0).toString(),
             QLatin1String("8 frames were saved in some.pcapng."));
    exchanges(2);
    QVERIFY(m_page->openCapture(path("some.pcapng")));
    QVERIFY(!m_page->isLive());
    QCOMPARE(table().model()->rowCount(), 8);
    QVERIFY(m_page->captureBar().isVisible());
    QVERIFY(m_page->captureBar().text().contains(QLatin1String("some.pcapng")));
    QVERIFY(!m_page->captureBar().lines().isVisible());
    // The line goes on meanwhile, and nobody disturbs the file.
    exchanges(5);
    QCOMPARE(table().model()->rowCount(), 8);
    QTest::keyClick(&table(), Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(table().model()->rowCount(), 8);
    select(7);
    QVERIFY(m_page->detail().headline().contains(QLatin1String("refused")));
    QVERIFY(m_page->saveCapture(path("again.pcapng")));
    QTest::keyClick(&table(), Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(m_page->isLive());
    QVERIFY(!m_page->captureBar().isVisible());
    QCOMPARE(table().model()->rowCount(), 22);
    QCOMPARE(troubled.count(), 0);
}

void TestFramesFiles::saysWhatAPauseLeavesOut()
{
    QSignalSpy told(m_page.get(), &Page::told);
    exchanges(3);
    m_page->recorder().flush();
    m_page->setPaused(true);
    exchanges(2);
    QVERIFY(m_page->saveCapture(path("some.pcapng")));
    QCOMPARE(
        told.takeLast().at(0).toString(),
        QLatin1String("6 frames were saved in some.pcapng. Those that wait since the pause are "
                      "not among them."));
}

void TestFramesFiles::saysWhatWasLeftOutWhenItBegan()
{
    QSignalSpy told(m_page.get(), &Page::told);
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    m_page->setPaused(true);
    exchanges(2);
    QVERIFY(!m_page->saveCapture(path("none.pcapng")));
    QCOMPARE(troubled.last().at(1).toString(),
             QLatin1String("End the pause first: frames wait since it began."));
    m_page->setPaused(false);
    exchanges(15000);
    m_page->recorder().flush();
    m_page->setPaused(true);
    exchanges(2);
    QVERIFY(m_page->saveCapture(path("many.pcapng")));
    QCOMPARE(told.count(), 0);
    m_page->setPaused(false); // too late for this file
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, 60000);
    QVERIFY2(told.first().at(0).toString().contains(QLatin1String("wait since the pause")),
             qPrintable(told.first().at(0).toString()));
}

// Nobody writes to it, and to open it would wait for ever.
void TestFramesFiles::opensNoPipe()
{
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    QVERIFY(!m_page->openCapture(path("pipe")));
    QVERIFY(troubled.at(0).at(0).toString().endsWith(QLatin1String(": it is no file")));
}

void TestFramesFiles::savesManyInTurns()
{
    constexpr int kMany = 15000;
    QSignalSpy told(m_page.get(), &Page::told);
    exchanges(kMany);
    QVERIFY(m_page->saveCapture(path("many.pcapng")));
    QCOMPARE(told.count(), 0); // the event loop has its turn in between
    m_page->recorder().clear();
    exchanges(3);
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, 60000);
    QVERIFY(told.first().first().toString().contains(QString::number(2 * kMany)));
    const auto framesIn = [this](const char *name) {
        return readRecordingFile(path(name)).lines.at(0).exchanges.size();
    };
    QCOMPARE(framesIn("many.pcapng"), size_t(kMany)); // as they were when it began
    // Whoever closes the window meanwhile has the whole file, too.
    exchanges(kMany);
    QVERIFY(m_page->saveCapture(path("last.pcapng")));
    QCOMPARE(told.count(), 1);
    m_page.reset();
    QCOMPARE(framesIn("last.pcapng"), size_t(kMany + 3));
}

void TestFramesFiles::saysWhyItCannotSave()
{
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(!m_page->saveCapture(path("none.pcapng")));
    QCOMPARE(troubled.count(), 1);
    exchanges(300);
    QVERIFY(!m_page->saveCapture(path("no/such/folder.pcapng")));
    QCOMPARE(troubled.count(), 2);
    QVERIFY(troubled.at(1).at(0).toString().contains(QLatin1String("folder.pcapng")));
    // It may take more than one turn.
    QSignalSpy told(m_page.get(), &Page::told);
    QVERIFY(m_page->saveCapture(path("full.pcapng")));
    QTRY_COMPARE(told.count(), 1);
    QFile file(path("full.pcapng"));
    const qint64 size = file.size();
    exchanges(10);
    {
        const FullDisk full(1000);
        m_page->saveCapture(path("full.pcapng"));
        QTRY_COMPARE(troubled.count(), 3);
    }
    QCOMPARE(file.size(), size);
}

namespace {

const Given<const char *> kBroken[] = {
    {"no capture", "hello"},
    {"empty", ""},
    {"cut at once", "\x0a\x0d\x0d\x0a\x1c"},
    {"not there", nullptr},
};

} // namespace

void TestFramesFiles::losesNothingToABrokenFile_data()
{
    addRows(kBroken);
}

void TestFramesFiles::losesNothingToABrokenFile()
{
    const auto &broken = currentRow(kBroken);
    const QString name = path("broken.pcapng");
    QFile::remove(name);
    if (broken.given != nullptr) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(broken.given);
    }
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    exchanges(3);
    select(2);
    const QString before = m_page->detail().headline();
    QVERIFY(!m_page->openCapture(name));
    QCOMPARE(troubled.count(), 1);
    QVERIFY(troubled.at(0).at(0).toString().contains(name));
    QVERIFY(m_page->isLive());
    QCOMPARE(table().model()->rowCount(), 6);
    QCOMPARE(m_page->detail().headline(), before);
    // The same beside a file that is shown.
    CaptureFile good;
    QVERIFY(good.line("a").sent(readRequest()).store(path("good.pcapng")));
    QVERIFY(m_page->openCapture(path("good.pcapng")));
    QVERIFY(!m_page->openCapture(name));
    QCOMPARE(table().model()->rowCount(), 1);
    QVERIFY(m_page->captureBar().text().contains(QLatin1String("good.pcapng")));
}

void TestFramesFiles::opensAsFarAsAFileGoes()
{
    CaptureFile whole;
    whole.line("a").sent(readRequest()).received(readAnswer()).sent(readRequest());
    QFile file(path("cut.pcapng"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(whole.bytes().chopped(10));
    file.close();
    QSignalSpy troubled(m_page.get(), &Page::troubled);
    QVERIFY(m_page->openCapture(file.fileName()));
    QCOMPARE(table().model()->rowCount(), 2);
    QCOMPARE(troubled.count(), 1);
    QVERIFY2(troubled.at(0).at(0).toString().contains(QLatin1String("at byte")),
             qPrintable(troubled.at(0).at(0).toString()));
}

void TestFramesFiles::choosesALineOfAFile()
{
    CaptureFile file;
    file.line("press").sent(readRequest()).received(readAnswer());
    file.line("kiln").sent(readRequest("0020"));
    QVERIFY(file.store(path("two.pcapng")));
    QVERIFY(m_page->openCapture(path("two.pcapng")));
    QVERIFY(m_page->captureBar().lines().isVisible());
    QCOMPARE(table().model()->rowCount(), 2);
    m_page->captureBar().lines().setCurrentIndex(1);
    QCOMPARE(table().model()->rowCount(), 1);
    QVERIFY(table()
                .model()
                ->index(0, FrameModel::Meaning)
                .data()
                .toString()
                .contains(QLatin1String("D_W:20")));
}

QTEST_MAIN(TestFramesFiles)
#include "test_frames_files.moc"
