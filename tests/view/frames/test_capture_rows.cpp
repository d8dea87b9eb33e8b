#include "view/frames/trace/capture_file.h"
#include "view/frames/trace/frame_words.h"
#include "view/frames/trace/line_recorder.h"

#include "frames_made.h"

#include <support/capture_file.h>
#include <support/rows.h>

#include <QtTest>

using namespace cnet;
using namespace cnet::view;

/** Rows of a file, and files of rows. */
class TestCaptureRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatBecameOfARequest_data();
    void tellsWhatBecameOfARequest();
    void findsWhatIsLate();
    void leavesTheLastRequestOpen();
    void comesBackAsItWas();
    void writesWhatNobodyAnswered();
    void writesWhatWasAskedOnceMore();
    void takesAnyRow();
};

namespace {

QByteArray captureOf(const FrameLog &log, const QString &lineName)
{
    CaptureMaker maker(log, lineName);
    while (maker.take(1)) {
    }
    return maker.content();
}

FrameLog read(const QByteArray &content)
{
    const Recording recording = readRecording(content);
    return recording.lines.empty() ? FrameLog() : logOf(recording.lines.front());
}

/** Of each row: ">" or "<", its request's row, and its result. */
QStringList rowsOf(const FrameLog &log)
{
    QStringList rows;
    for (int i = 0; i < log.size(); ++i) {
        const FrameRow &row = log.at(i);
        rows << QString::fromLatin1("%1%2 %3")
                    .arg(QLatin1String(row.way == FrameWay::Sent ? ">" : "<"))
                    .arg(row.request)
                    .arg(resultWords(row).section(QLatin1Char(';'), 0, 0))
                    .trimmed();
    }
    return rows;
}

struct Came
{
    const char *what;
    QList<QByteArray> answers;
    QStringList rows;
};

QStringList texts(std::initializer_list<const char *> all)
{
    QStringList list;
    for (const char *text : all) {
        list << QString::fromLatin1(text);
    }
    return list;
}

const QByteArray kWrongCheck = readAnswer().chopped(2) + "00";

const Came kCame[] = {
    {"an answer", {readAnswer()}, texts({">0", "<0 good"})},
    {"nothing", {}, texts({">0", "<0 no answer"})},
    {"a refusal",
     {refusal()},
     texts({">0", "<0 refused: 1132, no such device, or address outside the device"})},
    {"a wrong check", {kWrongCheck}, texts({">0", "<0 block check wrong"})},
    {"a part", {readAnswer().left(7)}, texts({">0", "<0 not used"})},
    {"another station", {readAnswer("00010002", "02")}, texts({">0", "<0 not used"})},
    {"noise, and an answer", {"\xff", readAnswer()}, texts({">0", "<0 stray bytes", "<0 good"})},
    {"twice", {readAnswer(), readAnswer()}, texts({">0", "<0 good", "<0 not used"})},
};

} // namespace

void TestCaptureRows::tellsWhatBecameOfARequest_data()
{
    addRows(kCame);
}

void TestCaptureRows::tellsWhatBecameOfARequest()
{
    const auto &came = currentRow(kCame);
    CaptureFile file;
    file.line("a").sent(readRequest());
    for (const QByteArray &answer : came.answers) {
        file.received(answer, 20);
    }
    file.sent(readRequest("0020")).received(readAnswer());
    QStringList rows = rowsOf(read(file.bytes()));
    QCOMPARE(rows.mid(0, rows.size() - 2), came.rows);
}

// An answer to a request that was given up comes with the next one's.
void TestCaptureRows::findsWhatIsLate()
{
    const QByteArray write = completedRequest("01wSB07%DW0040010001");
    CaptureFile file;
    file.line("a").sent(readRequest()).sent(readRequest()).sent(write, 50);
    file.received(readAnswer()).received(answered("01wSB"), 9);
    const FrameLog log = read(file.bytes());
    QCOMPARE(rowsOf(log), texts({">0", "<0 no answer", ">2 sent again", "<2 no answer", ">4",
                                 "<2 too late", "<4 good"}));
    QCOMPARE(log.at(5).tookMs, 51.0);
    QCOMPARE(log.at(6).tookMs, 10.0);
    QCOMPARE(log.at(2).late, 5);
    QCOMPARE(log.at(4).answer, 6);
    QVERIFY(log.at(4).kind == FrameKind::Write && log.at(6).kind == FrameKind::Write);
    QVERIFY(timeWords(log.at(1)).isEmpty() && !timeWords(log.at(0)).isEmpty());
}

void TestCaptureRows::leavesTheLastRequestOpen()
{
    CaptureFile file;
    file.line("a").sent(readRequest()).received(readAnswer()).sent(readRequest());
    QCOMPARE(rowsOf(read(file.bytes())), texts({">0", "<0 good", ">2"}));
}

void TestCaptureRows::comesBackAsItWas()
{
    Line line;
    FrameModel model;
    LineRecorder recorder(line, model);
    const auto note = [&recorder](const QByteArray &answer, Outcome outcome, double tookMs) {
        recorder.noteRequest(readRequest());
        recorder.noteEnd(report(readRequest(), answer, outcome, tookMs));
    };
    note(readAnswer(), Outcome::Answered, 12.25);
    note(refusal(), Outcome::Refused, 0.5);
    note(readAnswer("FFFF0000"), Outcome::Answered, 1999.75);
    recorder.flush();
    const Recording recording = readRecording(captureOf(model.log(), QLatin1String("tcp x:1")));
    QVERIFY(recording.remarks.isEmpty());
    QCOMPARE(recording.lines.size(), std::size_t(1));
    QCOMPARE(recording.lines.front().name, QLatin1String("tcp x:1"));
    const FrameLog log = logOf(recording.lines.front());
    QCOMPARE(rowsOf(log), rowsOf(model.log()));
    for (int i = 0; i < log.size(); ++i) {
        QCOMPARE(log.at(i).bytes, model.log().at(i).bytes);
        QCOMPARE(log.at(i).timeNs, model.log().at(i).timeNs);
        QCOMPARE(log.at(i).tookMs, model.log().at(i).tookMs);
        QCOMPARE(log.at(i).packet, i + 1);
    }
    QVERIFY(log.at(5).note.startsWith(QLatin1String("station 1, rSB answered: 1/D_W:10*2")));
    // Once more: what the file says of a frame stays.
    const Recording again = readRecording(captureOf(log, QLatin1String("b")));
    QCOMPARE(again.lines.front().exchanges.at(2).answers.at(0).comment, log.at(5).note);
}

// A file has frames only, so that nothing came is told with what was asked.
void TestCaptureRows::writesWhatNobodyAnswered()
{
    FrameLog log;
    FrameRow request;
    request.bytes = readRequest();
    request.request = 0;
    request.answer = 1;
    log.append(request);
    FrameRow nothing;
    nothing.request = 0;
    nothing.way = FrameWay::Received;
    nothing.faults = FrameFault::TimedOut;
    log.append(nothing);
    QCOMPARE(framesOf(log), 1);
    const Recording recording = readRecording(captureOf(log, QString()));
    const RecordedFrame &frame = recording.lines.at(0).exchanges.at(0).request;
    QCOMPARE(frame.bytes, readRequest());
    QCOMPARE(frame.comment, QLatin1String("station 1, read 1/D_W:10*2; no answer"));
}

void TestCaptureRows::writesWhatWasAskedOnceMore()
{
    FrameLog log;
    FrameRow request;
    request.bytes = readRequest();
    request.request = 0;
    request.answer = 1;
    log.append(request);
    FrameRow doubted;
    doubted.bytes = readAnswer();
    doubted.request = 0;
    doubted.way = FrameWay::Received;
    doubted.isDoubted = true;
    log.append(doubted);
    const Recording recording = readRecording(captureOf(log, QString()));
    const RecordedFrame &frame = recording.lines.at(0).exchanges.at(0).answers.at(0);
    QVERIFY2(frame.comment.endsWith(QLatin1String("; asked once more")), qPrintable(frame.comment));
}

// Names, comments and bytes of any length and kind, from a file of any origin.
void TestCaptureRows::takesAnyRow()
{
    const QString ink(60000, QChar(0x6f22));
    FrameLog log;
    FrameRow row;
    row.bytes = QByteArray(300000, '\x05');
    row.note = ink;
    row.packet = 1;
    row.timeNs = -1;
    log.append(row);
    log.append(row);
    const Recording recording = readRecording(captureOf(log, ink));
    QVERIFY2(recording.remarks.isEmpty(), qPrintable(recording.remarks.join(QLatin1Char(' '))));
    QCOMPARE(recording.lines.at(0).exchanges.size(), std::size_t(2));
    QCOMPARE(recording.lines.at(0).exchanges.at(1).request.bytes, row.bytes);
    QVERIFY(ink.startsWith(recording.lines.at(0).exchanges.at(1).request.comment));
}

QTEST_MAIN(TestCaptureRows)
#include "test_capture_rows.moc"
