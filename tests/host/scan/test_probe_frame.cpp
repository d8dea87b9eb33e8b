#include "host/support/frames.h"
#include "host/support/test_registers.h"

#include <host/decode/frame_decoder.h>
#include <host/scan/probe_frame.h>

#include <QtTest>

using namespace cnet;

class TestProbeFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsOneWord();
};

void TestProbeFrame::readsOneWord()
{
    const RegisterInfo reg = testRegister("M_W");
    const Question single = probeQuestion(31, reg, 12, ProbeForm::Single);
    const Question block = probeQuestion(31, reg, 99999, ProbeForm::Block);
    QCOMPARE(single.request, requestFrame("1FrSS0108%MW00012"));
    QCOMPARE(block.request, requestFrame("1FrSB08%MW9999901"));
    for (const Question &question : {single, block}) {
        QCOMPARE(question.station, 31);
        QCOMPARE(question.answerLength, answerLength(decodeFrame(question.request)));
    }
}

QTEST_APPLESS_MAIN(TestProbeFrame)
#include "test_probe_frame.moc"
