#include <host/wire/answer_shape.h>
#include <host/wire/block_check.h>
#include <host/wire/fence_frame.h>

#include <plc/stations/station.h>

#include <QtTest>

using namespace cnet;

class TestFenceFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAnsweredAsAnnounced();
    void allDiffer();
};

void TestFenceFrame::isAnsweredAsAnnounced()
{
    for (const auto model : {plc::Model::Full, plc::Model::K120s}) {
        for (const int number : {0, 1, 31}) {
            plc::Station station(number, model);
            for (int form = 0; form < kFenceForms; ++form) {
                const FenceFrame fence = fenceFrame(number, form);
                const QByteArray answer = station.answer(fence.request);
                const QByteArray what = "form " + QByteArray::number(form) + ": " + fence.request;
                QVERIFY2(isWholeAnswer(answer) && answer.at(0) == '\x06', what.constData());
                QVERIFY2(answer.size() == fence.answerLength && answer.size() <= 256,
                         what.constData());
                QVERIFY2(fence.request.size() <= 256, what.constData());
            }
        }
    }
}

void TestFenceFrame::allDiffer()
{
    QVector<AnswerShape> shapes;
    for (int form = 0; form < kFenceForms; ++form) {
        const FenceFrame fence = fenceFrame(1, form);
        const AnswerShape shape = AnswerShape::toRequest(fence.request, fence.answerLength);
        QVERIFY2(!shapes.contains(shape), qPrintable(QString::number(form)));
        shapes.append(shape);
    }
}

QTEST_APPLESS_MAIN(TestFenceFrame)

#include "test_fence_frame.moc"
