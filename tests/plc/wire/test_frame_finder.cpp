#include "plc/wire/frame_finder.h"

#include "plc/support/wire_text.h"
#include "plc/wire/wire.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

using Frames = QList<QByteArray>;

static const struct
{
    const char *what;
    QByteArray head, tail;
    int size, frames;
} kLongestFrame[] = {
    {"256 without check", wire("[ENQ]01RSS"), wire("[EOT]"), 256, 1},
    {"257 without check", wire("[ENQ]01RSS"), wire("[EOT]"), 257, 0},
    {"256 with check", wire("[ENQ]01rSS"), wire("[EOT]AB"), 256, 1},
    {"257 with check", wire("[ENQ]01rSS"), wire("[EOT]AB"), 257, 0},
};

class TestFrameFinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Frames>("frames");
        const auto row = [](const char *name, const char *bytes,
                            std::initializer_list<const char *> all) {
            Frames frames;
            for (const char *frame : all) {
                frames << wire(frame);
            }
            QTest::newRow(name) << wire(bytes) << frames;
        };
        const char *const upper = "[ENQ]01RSS0104%DW1[EOT]";
        const char *const lower = "[ENQ]01rSS0104%DW1[EOT]AB";
        row("upper case ends with EOT", "[ENQ]01RSS0104%DW1[EOT]", {upper});
        row("lower case ends two behind EOT", "[ENQ]01rSS0104%DW1[EOT]AB", {lower});
        row("two at once", "[ENQ]01RSS0104%DW1[EOT][ENQ]01rSS0104%DW1[EOT]AB", {upper, lower});
        row("garbage around", "xx[EOT][ACK][00][FF][ENQ]01RSS0104%DW1[EOT]yy[ETX]", {upper});
        row("check after an upper-case command is garbage",
            "[ENQ]01RSS0104%DW1[EOT]AB[ENQ]01RSS0104%DW1[EOT]", {upper, upper});
        row("ENQ begins anew", "[ENQ]01RSS01[ENQ]01RSS0104%DW1[EOT]", {upper});
        row("ENQ begins anew in the check", "[ENQ]01rSS0104%DW1[EOT]A[ENQ]01RSS0104%DW1[EOT]",
            {upper});
        row("ENQ twice", "[ENQ][ENQ]01RSS0104%DW1[EOT]", {upper});
        row("check made of EOT", "[ENQ]01rSS[EOT][EOT][EOT]", {"[ENQ]01rSS[EOT][EOT][EOT]"});
        row("shortest", "[ENQ][EOT]", {"[ENQ][EOT]"});
        row("lower-case letter elsewhere", "[ENQ]0rRSS[EOT]AB", {"[ENQ]0rRSS[EOT]"});
        row("no end", "[ENQ]01RSS0104%DW1", {});
        row("check not yet there", "[ENQ]01rSS0104%DW1[EOT]A", {});
        row("nothing", "", {});
    }

    void finds()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Frames, frames);
        // In one piece, and in pieces of every size.
        for (int piece = static_cast<int>(bytes.size()); piece > 0; --piece) {
            FrameFinder finder;
            Frames found;
            for (int i = 0; i < bytes.size(); i += piece) {
                for (const QByteArray &frame : finder.take(bytes.mid(i, piece))) {
                    found << frame;
                }
            }
            QCOMPARE(found, frames);
        }
    }

    void holdsNoMoreThanOneFrame()
    {
        FrameFinder finder;
        QVERIFY(finder.take(QByteArray(100000, 'x')).empty());
        QCOMPARE(finder.pending(), 0);
        QVERIFY(finder.take(wire("[ENQ]") + QByteArray(kMaxFrameBytes - 1, 'x')).empty());
        QCOMPARE(finder.pending(), kMaxFrameBytes);
        QVERIFY(finder.take(QByteArray(1, 'x')).empty());
        QCOMPARE(finder.pending(), 0);
        QVERIFY(finder.take(wire("[EOT]")).empty());
        QCOMPARE(finder.take(wire("[ENQ]01RSS[EOT]")).size(), std::size_t(1));
    }

    void longestFrame_data() { addRows(kLongestFrame); }
    void longestFrame()
    {
        const auto &row = currentRow(kLongestFrame);
        const QByteArray frame =
            row.head +
            QByteArray(row.size - static_cast<int>(row.head.size() + row.tail.size()), '0') +
            row.tail;
        FrameFinder finder;
        QCOMPARE(int(finder.take(frame).size()), row.frames);
        QCOMPARE(finder.take(wire("[ENQ]01RSS[EOT]")).size(), std::size_t(1));
    }
};

QTEST_APPLESS_MAIN(TestFrameFinder)
#include "test_frame_finder.moc"
