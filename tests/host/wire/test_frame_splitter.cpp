#include "host/decode/wire_text.h"
#include "support/rows.h"

#include <host/decode/frame_text.h>
#include <host/wire/frame_splitter.h>

#include <QStringList>

using namespace cnet;

class TestFrameSplitter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splits_data();
    void splits();
    void endsSomewhere();
    void knowsTheEnd_data();
    void knowsTheEnd();
};

namespace {

struct Split
{
    const char *what;
    const char *bytes;
    Between between;
    const char *frames; ///< with a bar between them
};

const Split kSplits[] = {
    {"nothing", "", Between::Keep, ""},
    {"one", "<ENQ>01<EOT>AA", Between::Keep, "<ENQ>01<EOT>AA"},
    {"two", "<ENQ>01<EOT>AA<ACK>01<ETX>BB", Between::Keep, "<ENQ>01<EOT>AA|<ACK>01<ETX>BB"},
    {"cut by a head", "<ENQ>01<NAK>01<ETX>BB", Between::Keep, "<ENQ>01|<NAK>01<ETX>BB"},
    {"noise kept", "xx<ENQ>01<EOT>AA yy", Between::Keep, "xx|<ENQ>01<EOT>AA| yy"},
    {"noise dropped", "xx<ENQ>01<EOT>AA yy", Between::Drop, "<ENQ>01<EOT>AA"},
    {"line ends", "<ENQ>01<EOT>AA\\r\\n<ENQ>02<EOT>AA\\r\\n", Between::Keep,
     "<ENQ>01<EOT>AA|<ENQ>02<EOT>AA"},
    {"excess", "<ENQ>01<EOT>AAyy", Between::Drop, "<ENQ>01<EOT>AAyy"},
};

const Case<const char *, bool> kEnds[] = {
    {"whole", "<ENQ>01rSB<EOT>AA", true},
    {"no check", "<ENQ>01rSB<EOT>", false},
    {"half", "<ENQ>01rSB<EOT>A", false},
    {"none is due", "<ENQ>01RSB<EOT>", true},
    {"no end", "<ENQ>01rSB", false},
    {"next begun", "<ENQ>01rSB<EOT>AA<ACK>01", false},
    {"no frame", "AA", false},
    {"only an end", "<ETX>AA", false},
};

} // namespace

void TestFrameSplitter::splits_data()
{
    addRows(kSplits);
}

void TestFrameSplitter::splits()
{
    const Split &row = currentRow(kSplits);
    QStringList frames;
    for (const QByteArray &frame : splitFrames(wireText(row.bytes), row.between)) {
        frames.append(visibleText(frame));
    }
    QCOMPARE(frames.join(QLatin1Char('|')), QString::fromLatin1(row.frames));
}

void TestFrameSplitter::endsSomewhere()
{
    const auto frames = splitFrames('\x05' + QByteArray(3000, '0'), Between::Keep);
    QCOMPARE(frames.size(), 3);
    QCOMPARE(frames.at(0).size(), kMostBytesOfFrame);
}

void TestFrameSplitter::knowsTheEnd_data()
{
    addRows(kEnds);
}

void TestFrameSplitter::knowsTheEnd()
{
    const auto &row = currentRow(kEnds);
    QCOMPARE(endsWithWholeFrame(wireText(row.given)), row.expected);
}

QTEST_APPLESS_MAIN(TestFrameSplitter)
#include "test_frame_splitter.moc"
