#include "recorded_trace.h"

#include <support/rows.h>

using namespace cnet;
using namespace cnet::view;

/** What goes over a line as rows of a table. */
class TestFrameTrace : public QObject, private RecordedTrace
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void tiesAnAnswerToItsRequest();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void marksWhatIsSentAgain();
    void leavesOpenWhatNobodyWaitedFor();
    void aQuestionOnceMoreIsNoFault();
    void endsWhatIsNotSentAgain();
    void tiesALateAnswerToWhatWasAsked();
    void knowsSignsOfLife();
    void endsWithTheSession();
    void isToldOfDoubts();
    void clears();
};

void TestFrameTrace::tiesAnAnswerToItsRequest()
{
    exchange(readRequest(), readAnswer());
    QCOMPARE(m_model->rowCount(), 0); // a few times a second is enough
    QTRY_COMPARE_WITH_TIMEOUT(m_model->rowCount(), 2, 60000);
    QCOMPARE(row(0).answer, 1);
    QCOMPARE(row(1).request, 0);
    QCOMPARE(row(1).timeNs - row(0).timeNs, 12500000);
    QCOMPARE(text(0, FrameModel::Way), QLatin1String("-> request"));
    QCOMPARE(text(1, FrameModel::Way), QLatin1String("<- answer"));
    QCOMPARE(text(0, FrameModel::Station), QLatin1String("1"));
    QCOMPARE(text(1, FrameModel::Kind), QLatin1String("read"));
    QCOMPARE(text(1, FrameModel::Response), QLatin1String("12.5 ms"));
    QCOMPARE(text(1, FrameModel::Result), QLatin1String("good"));
    QVERIFY(text(1, FrameModel::Meaning).contains(QLatin1String("D_W:10*2 = 1 0x0001, 2 0x0002")));
    QVERIFY(text(0, FrameModel::Bytes).startsWith(QLatin1String("05 30 31 72")));
    QVERIFY(!m_model->index(1, FrameModel::Result).data(Qt::DecorationRole).isValid());
    QCOMPARE(m_recorder->total(), 1);
    QCOMPARE(m_recorder->faulty(), 0);
}

namespace {

struct Wrong
{
    const char *what;
    Outcome outcome;
    Defect defect;
    bool good;
    int stray;
    bool answers;
    const char *words;
};

const Wrong kWrong[] = {
    {"silence", Outcome::TimedOut, Defect::None, false, 0, false, "no answer"},
    {"refusal", Outcome::Refused, Defect::None, false, 0, true, "refused: 1132"},
    {"check", Outcome::Bad, Defect::BlockCheck, false, 0, true, "block check wrong"},
    {"other", Outcome::Bad, Defect::Other, false, 0, true, "not used; a reason"},
    {"driver", Outcome::Answered, Defect::None, false, 0, true, "not used"},
    {"noise", Outcome::Answered, Defect::None, true, 3, true, "stray bytes"},
};

} // namespace

void TestFrameTrace::saysWhatIsWrong_data()
{
    addRows(kWrong);
}

void TestFrameTrace::saysWhatIsWrong()
{
    const auto &wrong = currentRow(kWrong);
    const bool refused = wrong.outcome == Outcome::Refused;
    ExchangeReport report = view::report(readRequest(), QByteArray(), wrong.outcome);
    report.reply.answer = !wrong.answers ? QByteArray() : refused ? refusal() : readAnswer();
    report.reply.defect = wrong.defect;
    report.reply.strayBytes = wrong.stray;
    report.reply.note = QLatin1String(wrong.defect == Defect::Other ? "a reason" : "");
    report.good = wrong.good;
    ask(readRequest());
    m_recorder->noteEnd(report);
    m_recorder->flush();
    QVERIFY2(text(1, FrameModel::Result).startsWith(QLatin1String(wrong.words)),
             qPrintable(text(1, FrameModel::Result)));
    // By its sign and its ground, too.
    QVERIFY(m_model->index(1, FrameModel::Result).data(Qt::DecorationRole).isValid());
    QVERIFY(m_model->index(1, FrameModel::Time).data(Qt::BackgroundRole).isValid());
    QVERIFY(!m_model->index(0, FrameModel::Time).data(Qt::BackgroundRole).isValid());
    QCOMPARE(m_recorder->faulty(), 1);
    QCOMPARE(text(1, FrameModel::Way), QLatin1String(!wrong.answers ? "<- nothing"
                                                     : refused      ? "<- refusal"
                                                                    : "<- answer"));
}

void TestFrameTrace::marksWhatIsSentAgain()
{
    ExchangeReport first = report(readRequest(), {}, Outcome::TimedOut);
    first.final = false;
    ask(readRequest());
    m_recorder->noteEnd(first);
    exchange(readRequest(), readAnswer());
    exchange(readRequest(), readAnswer()); // the next round
    m_recorder->flush();
    QCOMPARE(text(0, FrameModel::Result), QString());
    QCOMPARE(text(2, FrameModel::Result), QLatin1String("sent again"));
    QCOMPARE(text(4, FrameModel::Result), QString());
}

void TestFrameTrace::leavesOpenWhatNobodyWaitedFor()
{
    ask(readRequest());
    m_recorder->flush();
    exchange(readRequest("0099"), readAnswer());
    exchange(readRequest(), readAnswer());
    m_recorder->flush();
    QCOMPARE(text(0, FrameModel::Result), QLatin1String("ended without a result"));
    QCOMPARE(row(0).answer, -1);
    QCOMPARE(text(3, FrameModel::Result), QLatin1String("sent again"));
    QCOMPARE(row(3).answer, 4);
    QCOMPARE(m_recorder->total(), 3);
}

// A fence goes out between a question whose answer was not believed, and the question once more.
void TestFrameTrace::aQuestionOnceMoreIsNoFault()
{
    ask(readRequest());
    m_recorder->noteDoubted(1, readAnswer(), 7);
    ask(readRequest("0099"));
    ExchangeReport fence = report(readRequest("0099"), readAnswer());
    fence.purpose = Purpose::Fence;
    m_recorder->noteEnd(fence);
    exchange(readRequest(), readAnswer());
    m_recorder->flush();
    QCOMPARE(m_recorder->faulty(), 0);
    QCOMPARE(row(0).answer, 1);
    QCOMPARE(text(0, FrameModel::Result), QString());
    QCOMPARE(text(1, FrameModel::Result), QLatin1String("asked once more"));
    QCOMPARE(text(1, FrameModel::Kind), QLatin1String("read"));
    QCOMPARE(text(1, FrameModel::Response), QLatin1String("7.0 ms"));
    QVERIFY(m_model->index(1, 0).data(Qt::ToolTipRole).toString().contains(QLatin1String("copy")));
    QCOMPARE(text(3, FrameModel::Result), QLatin1String("good"));
    QCOMPARE(row(4).answer, 5);
    QCOMPARE(text(4, FrameModel::Result), QString());
    m_recorder->clear();
    m_recorder->noteDoubted(1, readAnswer(), 7); // of a request that is gone
    m_recorder->flush();
    QCOMPARE(m_model->rowCount(), 0);
}

// No fence behind the doubt is answered, and then the request does not go out again.
void TestFrameTrace::endsWhatIsNotSentAgain()
{
    ask(readRequest());
    m_recorder->noteDoubted(1, readAnswer(), 7);
    exchange(readRequest("0099"), {}, Outcome::TimedOut);
    ExchangeReport last = report(readRequest(), {}, Outcome::TimedOut);
    last.reply.tookMs = 0; // since the last fence was sent
    m_recorder->noteEnd(last);
    m_recorder->flush();
    QCOMPARE(row(4).request, 0);
    QCOMPARE(row(0).answer, 4);
    QVERIFY(row(4).timeNs > row(0).timeNs);
    QCOMPARE(m_recorder->total(), 2);
    exchange(readRequest(), readAnswer());                    // the next round
    m_recorder->noteEnd(report(readRequest(), readAnswer())); // of a request that is gone
    m_recorder->flush();
    QCOMPARE(row(6).request, 5);
    QCOMPARE(row(7).request, -1);
}

void TestFrameTrace::tiesALateAnswerToWhatWasAsked()
{
    exchange(readRequest("0010", "02"), {}, Outcome::TimedOut);
    exchange(readRequest(), {}, Outcome::TimedOut);
    m_recorder->flush();
    exchange(readRequest("0020"), readAnswer());
    m_recorder->noteLate(1, readAnswer("00070008"), 300);
    m_recorder->noteLate(3, readAnswer("00070008", "03"), 300);
    m_recorder->flush();
    QCOMPARE(row(6).request, 2);
    QCOMPARE(row(2).late, 6);
    QCOMPARE(text(6, FrameModel::Result), QLatin1String("too late"));
    QCOMPARE(text(6, FrameModel::Response), QLatin1String("300.0 ms"));
    QVERIFY(text(6, FrameModel::Meaning).contains(QLatin1String("D_W:10*2 = 7")));
    QCOMPARE(row(7).request, -1); // nobody asked station 3
    QVERIFY(!text(7, FrameModel::Meaning).isEmpty());
    ask(readRequest("0030"));
    m_recorder->noteDoubted(1, readAnswer(), 7);
    m_recorder->noteLate(1, readAnswer("00070008"), 0);
    QCOMPARE(m_recorder->total(), 5);
    m_recorder->flush();
    QCOMPARE(row(8).late, 10);
}

void TestFrameTrace::knowsSignsOfLife()
{
    ask(readRequest());
    m_recorder->flush();
    ExchangeReport fence = report(readRequest(), readAnswer());
    fence.purpose = Purpose::Fence;
    m_recorder->noteEnd(fence);
    m_recorder->flush();
    QCOMPARE(text(0, FrameModel::Kind), QLatin1String("sign of life"));
    QCOMPARE(text(1, FrameModel::Kind), QLatin1String("sign of life"));
}

void TestFrameTrace::endsWithTheSession()
{
    QCOMPARE(m_line->prepare(), QString());
    monitor({"D_W:100"});
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder->total() > 5, 60000);
    QVERIFY(!m_recorder->lineName().isEmpty());
    m_line->close();
    m_recorder->flush();
    const int rows = m_model->rowCount();
    for (int i = 0; i + 1 < rows; ++i) {
        QVERIFY(row(i).request == i ? row(i).kind != FrameKind::Other : row(i).request == i - 1);
    }
    monitor({"D_W:100"});
    QTRY_VERIFY_WITH_TIMEOUT(m_model->rowCount() > rows + 4, 60000);
}

void TestFrameTrace::isToldOfDoubts()
{
    QCOMPARE(m_line->prepare(), QString());
    monitor({"D_W:1000", "D_W:2000"}); // both are 0
    const auto isTold = [this] {
        const QModelIndexList cells =
            m_model->match(m_model->index(0, FrameModel::Result), Qt::DisplayRole,
                           QLatin1String("asked once more"));
        return !cells.isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isTold(), 60000);
    QCOMPARE(m_recorder->faulty(), 0);
}

void TestFrameTrace::clears()
{
    exchange(readRequest(), {}, Outcome::TimedOut);
    m_recorder->flush();
    ask(readRequest());
    m_recorder->clear();
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_recorder->total(), 0);
    QCOMPARE(m_recorder->faulty(), 0);
    m_recorder->noteEnd(report(readRequest(), readAnswer())); // of a request that is gone
    exchange(readRequest("0020"), readAnswer());
    m_recorder->flush();
    QCOMPARE(m_model->rowCount(), 3);
    QCOMPARE(row(0).request, -1);
    QVERIFY(text(2, FrameModel::Meaning).contains(QLatin1String("D_W:20*2 = 1")));
}

QTEST_MAIN(TestFrameTrace)
#include "test_frame_trace.moc"
