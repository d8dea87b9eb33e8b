#include "host/decode/wire_text.h"
#include "programs/program.h"
#include "shark.h"
#include "support/rows.h"

#include "host/capture/capture_line.h"

#include <QTemporaryDir>

#include <csignal>

using namespace cnet;

/** What the dissector makes of captures as a whole: what belongs together, damage, passes. */
class TestCaptures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void joins_data();
    void joins();
    void linesAreApart();
    void linksBothWays();
    void linksWithoutATree();
    void showsWhatDecodeShows();
    void survivesDamage();

private:
    QString path(const char *name) const { return m_directory.filePath(QLatin1String(name)); }
    bool edit(const QString &line);

    QTemporaryDir m_directory;
};

namespace {

/** Frames of a line, which a master that captures sends (>) and receives (<). */
QString capture(const QString &file, const QList<QByteArray> &frames, int lines = 1)
{
    CaptureOptions options;
    options.path = file;
    QString error;
    const auto capture = Capture::open(options, error);
    if (!capture) {
        return error;
    }
    std::vector<std::unique_ptr<CaptureLine>> all;
    all.reserve(static_cast<std::size_t>(lines));
    for (int i = 0; i < lines; ++i) {
        all.push_back(std::make_unique<CaptureLine>(*capture, QString::number(i)));
    }
    for (int i = 0; i < frames.size(); ++i) {
        const auto way =
            frames.at(i).startsWith('>') ? CaptureDirection::Sent : CaptureDirection::Received;
        CaptureLine &line = *all.at(static_cast<std::size_t>(i % lines));
        line.add(way, wireText(frames.at(i).mid(1).constData()));
        line.flush(way);
    }
    return file;
}

const char kAsk1[] = "><ENQ>01rSB08%DW0010002<EOT>??";
const char kAsk1Other[] = "><ENQ>01rSB08%DW0020002<EOT>??";
const char kAsk2[] = "><ENQ>02rSS0106%MW003<EOT>??";
const char kSay1[] = "<<ACK>01rSB0104000100FF<ETX>??";
const char kSay1Wrong[] = "<<ACK>01rSB0104000100FF<ETX>00";
const char kSay2[] = "<<ACK>02rSS01020007<ETX>??";
const char kNo1[] = "<<NAK>01rSB1132<ETX>??";
const char kEcho1[] = "<<ENQ>01rSB08%DW0010002<EOT>??";

struct Story
{
    const char *what;
    QList<QByteArray> frames;
    QList<QByteArray> found; ///< request|unanswered|repeats|echo of|experts, of each frame
};

const Story kStories[] = {
    {"one after the other", {kAsk1, kSay1, kAsk2, kSay2}, {"||||", "1||||", "||||", "3||||"}},
    {"the same again is a poll", {kAsk1, kSay1, kAsk1, kSay1}, {"||||", "1||||", "||||", "3||||"}},
    {"no answer, repeated", {kAsk1, kAsk1, kSay1}, {"||||", "|1|1||", "2||||"}},
    {"no answer, given up", {kAsk1, kAsk2, kSay2}, {"||||", "|1|||", "2||||"}},
    {"wrong check, repeated",
     {kAsk1, kSay1Wrong, kAsk1, kSay1},
     {"||||", "1||||", "||1||", "3||||"}},
    {"noise is no answer", {kAsk1, "<xyz", kAsk1}, {"||||", "||||", "|1|1||"}},
    {"refused is settled", {kAsk1, kNo1, kAsk1}, {"||||", "1||||1", "||||"}},
    {"refused, error code unknown", {kAsk1, "<<NAK>01rSB9999<ETX>??"}, {"||||", "1||||1"}},
    {"echo", {kAsk1, kEcho1, kSay1}, {"||||", "|||1|", "1||||"}},
    {"late", {kAsk1, kAsk2, kSay1, kSay2}, {"||||", "|1|||", "1||||", "2||||"}},
    {"other station", {kAsk1, kSay2, kSay1}, {"||||", "||||2", "1||||"}},
    {"other command", {kAsk1, "<<ACK>01wSB<ETX>??"}, {"||||", "||||3"}},
    {"other count", {kAsk1, "<<ACK>01rSB01020001<ETX>??"}, {"||||", "||||3"}},
    {"twice", {kAsk1, kSay1, kSay1}, {"||||", "1||||", "||||4"}},
    {"nothing was asked yet", {kSay1, kAsk1, kSay1}, {"||||", "||||", "2||||"}},
    {"asked for something else", {kAsk1, kAsk1Other, kSay1}, {"||||", "|1|||", "2||||"}},
    {"bad request", {"><ENQ>01rSB08%DW0010002<EOT>00", kSay1}, {"||||", "||||4"}},
};

} // namespace

void TestCaptures::initTestCase()
{
    skipWithoutShark();
}

void TestCaptures::joins_data()
{
    addRows(kStories);
}

void TestCaptures::joins()
{
    const Story &row = currentRow(kStories);
    const QString file = capture(path("story.pcapng"), row.frames);
    const QList<QByteArray> lines = dissectFields(
        file,
        QLatin1String("cnet.request_in cnet.unanswered cnet.repeats cnet.echo_of cnet.refused "
                      "cnet.other_station cnet.mismatch cnet.unasked"));
    QCOMPARE(lines.size(), row.found.size());
    for (int i = 0; i < lines.size(); ++i) {
        QByteArrayList fields = lines.at(i).split('|');
        QCOMPARE(fields.size(), 8);
        const int expert = static_cast<int>(fields.mid(4).indexOf("1")) + 1;
        fields = fields.mid(0, 4);
        fields.append(expert == 0 ? QByteArray() : QByteArray::number(expert));
        QVERIFY2(fields.join('|') == row.found.at(i),
                 QByteArray::number(i + 1) + ": " + lines.at(i));
    }
}

// The other line's requests are none of this one.
void TestCaptures::linesAreApart()
{
    const QString file = capture(path("lines.pcapng"), {kAsk1, kAsk1, kSay1, kSay1}, 2);
    QCOMPARE(dissectFields(file, QLatin1String("cnet.request_in cnet.repeats")),
             (QList<QByteArray>{"|", "|", "1|", "2|"}));
}

// A request cannot know its answer before the second pass; all else is the same in both.
void TestCaptures::linksBothWays()
{
    const QString file = capture(path("links.pcapng"), {kAsk1, kAsk1, kSay1, kAsk2, kNo1, kSay2});
    const QString fields = QLatin1String("cnet.request_in cnet.answer_in");
    QCOMPARE(dissectFields(file, fields), (QList<QByteArray>{"|", "|", "2|", "|", "|", "4|"}));
    QCOMPARE(dissectFields(file, fields, QLatin1String("-2 -Y cnet")),
             (QList<QByteArray>{"|", "|3", "2|", "|6", "|", "4|"}));
}

// Whoever only looks at packets, as Wireshark does behind its list, builds no tree when a file is
// loaded.
void TestCaptures::linksWithoutATree()
{
    const QString plugins = path(".local/lib/wireshark/plugins");
    QVERIFY(QDir().mkpath(plugins));
    QFile::link(QFileInfo(QLatin1String(DISSECTOR)).path(), plugins + QLatin1String("/cnet"));
    const QString file = capture(path("load.pcapng"), {kAsk1, kSay1});
    Program sharkd;
    sharkd.setVariable("HOME", m_directory.path().toLocal8Bit().constData());
    QVERIFY(sharkd.start(QLatin1String("sharkd"), {QLatin1String("-")}));
    const auto ask = [&sharkd](const QByteArray &method, const QByteArray &parameters) {
        const auto before = sharkd.lines().size();
        sharkd.type(R"({"jsonrpc":"2.0","id":1,"method":")" + method + R"(","params":{)" +
                    parameters + "}}\n");
        return sharkd.waitForLine([before, &sharkd](const QByteArray &line) {
            return sharkd.lines().size() > before && line == sharkd.lines().last();
        });
    };
    QVERIFY(ask("load", R"("file":")" + file.toLocal8Bit() + '"').contains("OK"));
    const QByteArray answer = ask("frame", R"("frame":2,"proto":true)");
    QVERIFY2(answer.contains("Request in: 1"), answer.constData());
    QVERIFY2(answer.contains("D_W:101 = 255 0x00FF"), answer.constData());
}

void TestCaptures::showsWhatDecodeShows()
{
    const QString file =
        capture(path("words.pcapng"), {kAsk1, kSay1, "><ENQ>01wSS0109%MX00001A01<EOT>??", kNo1});
    const QByteArray all = Dissection(file, QLatin1String("-O cnet")).lines().join('\n');
    for (const char *part :
         {"MASTER-K Cnet, station 1, read D_W:100*2", "[Address: D_W:100]",
          "[Block check status: Good (1)]", "[Request in: 1]", "D_W:100 = 1 0x0001",
          "D_W:101 = 255 0x00FF", "[Address of the value: D_W:101]",
          "station 1, write M_bit:1.10 = 1", "[Response time: 0.0",
          "Error code: no such device, or address outside the device (0x1132)",
          "Request refused: 1132, no such device, or address outside the device"}) {
        QVERIFY2(all.contains(part), QByteArray(part) + " is not in\n" + all);
    }
}

bool TestCaptures::edit(const QString &line)
{
    QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString program = words.takeFirst();
    Program editor;
    return editor.start(program, words) && editor.exitCode() == 0;
}

// Wrong bytes anywhere, packets that were not captured as a whole: no error, and both passes the
// same.
void TestCaptures::survivesDamage()
{
    PlcProgram plc;
    const QString faults = path("faults.pcapng");
    QVERIFY(plc.serve(
        {QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
        QString::fromLatin1("--capture %1 --fault silence@5% --fault truncate@10% --fault "
                            "noise-before@10% --fault wrong-station@10% --fault echo@10% "
                            "--fault repeat@10% --fault oversize=1500@5% --fault refuse@10%")
            .arg(faults)
            .split(QLatin1Char(' '))));
    Program panel;
    QVERIFY(panel.start(
        QLatin1String(CNET_PANEL),
        QString::fromLatin1("monitor --count 20 --interval 0 --timeout 20 --link tcp:%1 "
                            "D_W:100*20 M_bit:3.1 TX:7")
            .arg(plc.place())
            .split(QLatin1Char(' '))));
    QVERIFY(panel.exitCode() >= 0);
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
    QString variants;
    int number = 0;
    for (const QString &source : {faults, QString::fromLatin1(PRESS_CAPTURE)}) {
        for (const char *how : {"--seed 1 -E 0.02", "--seed 2 -E 0.02", "--seed 3 -E 0.1", "-s 27",
                                "-s 38", "-s 50", "-s 20"}) {
            const QString variant = path("variant") + QString::number(++number);
            QVERIFY(edit(
                QString::fromLatin1("editcap %1 %2 %3").arg(QLatin1String(how), source, variant)));
            variants += QLatin1Char(' ') + variant;
        }
    }
    const QString all = path("all.pcapng");
    QVERIFY(edit(QLatin1String("mergecap -a -w ") + all + variants));
    Dissection once(all, QLatin1String("-V"));
    Dissection twice(all, QLatin1String("-V -2"));
    QList<QByteArray> second = twice.lines();
    second.erase(
        std::remove_if(second.begin(), second.end(),
                       [](const QByteArray &line) { return line.startsWith("    [Answer in: "); }),
        second.end());
    const QList<QByteArray> first = once.lines();
    QVERIFY2(first.size() > 50000, first.value(0).constData());
    QVERIFY(first.join('\n').count("Frame not captured as a whole") > 20);
    for (int i = 0; i < first.size(); ++i) {
        QCOMPARE(second.value(i), first.at(i));
    }
}

QTEST_GUILESS_MAIN(TestCaptures)
#include "test_captures.moc"
