#include "host/decode/wire_text.h"

#include <host/decode/frame_comments.h>
#include <host/decode/frame_text.h>

#include <QtTest>

#include <random>

using namespace cnet;

class TestFrameComments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesAnswersTheirAddresses();
    void saysWhatTheDecoderSays();
};

void TestFrameComments::givesAnswersTheirAddresses()
{
    FrameComments comments;
    const auto says = [&comments](const char *frame) { return comments.next(wireText(frame)); };
    QCOMPARE(says("<ENQ>01rSB08%DW0010002<EOT>??"), QLatin1String("station 1, read 1/D_W:100*2"));
    QCOMPARE(says("<ACK>01rSB010412345678<ETX>??"),
             QLatin1String("station 1, rSB answered: 1/D_W:100*2 = 4660 0x1234, 22136 0x5678"));
    QCOMPARE(says("<ACK>01rSB010412345678<ETX>??"),
             QLatin1String("station 1, rSB answered: 2 words = 4660 0x1234, 22136 0x5678"));
    QCOMPARE(says("noise"), QLatin1String("no frame: a frame begins with ENQ (05), ACK (06) or "
                                          "NAK (15)"));
}

// Without the fields the same is said of any frames, good and bad, as with them.
void TestFrameComments::saysWhatTheDecoderSays()
{
    const QList<QByteArray> frames{wireText("<ENQ>01rSB08%DW0010002<EOT>??"),
                                   wireText("<ACK>01rSB010412345678<ETX>??"),
                                   wireText("<ENQ>02rSS0208%DW0010008%DW00101<EOT>??"),
                                   wireText("<ACK>02rSS02021234020005<ETX>??"),
                                   wireText("<NAK>01rSB1132<ETX>??"),
                                   wireText("<ENQ>01wSS0107%MX003500<EOT>??"),
                                   wireText("<ACK>01wSS<ETX>??"),
                                   wireText("<ENQ>01WSB08%DW001000212345678<EOT>")};
    std::mt19937 random(5);
    const auto below = [&random](qsizetype limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    FrameComments comments;
    FrameDecoder decoder;
    for (int i = 0; i < 20000; ++i) {
        QByteArray frame = frames.at(below(frames.size()));
        const int harm = below(6);
        if (harm == 0) {
            frame[below(frame.size())] = static_cast<char>(below(128));
        } else if (harm == 1) {
            frame.truncate(below(frame.size()));
        } else if (harm == 2) {
            frame.insert(below(frame.size()), frame.at(below(frame.size())));
        }
        const DecodedFrame decoded = decoder.next(frame);
        QCOMPARE(comments.next(frame), frameSummary(decoded));
    }
}

QTEST_APPLESS_MAIN(TestFrameComments)
#include "test_frame_comments.moc"
