#include <QtTest/QtTest>

#include "model/model_check.h"
#include "model/operation_mix.h"
#include "support/columns.h"

// The driver against a model that was written from the rules alone. A row that fails prints its
// shortest sequence, which can be pasted as a row of `rules`.

namespace {

constexpr int kSeeds = 10;
constexpr int kSteps = 60;

} // namespace

class SchedulerModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rules_data()
    {
        const Columns<QString> row("steps");
        row("nothing to do", "send; answer 0; send");
        row("eleven writes, one cyclic read between the tenth and the last",
            "monitor 1/D_W:0*1; write 1/TX:0*11 value 1 tag 2");
        row("eleven writes and nothing monitored: one rest", "write 1/TX:0*11 value 1 tag 2");
        row("a fourth one-off read waits for a cyclic read",
            "monitor 1/D_W:0*1; once 1/D_W:0*181 bits 0 tag 1; send; answer 1; send; answer 2; "
            "send; "
            "answer 3; send; answer 4; send");
        row("a write goes before a one-off read",
            "once 1/D_W:0*1 bits 0 tag 0; write 1/D_W:0*1 value 1 tag 0; send; answer 0; send");
        row("a recipe write goes before a recipe read",
            "recipe 7@0=1/D_W:0*1; ask read 1; ask write 1; send; answer 0; send; answer 0; send");
        row("a handshake goes before a recipe",
            "recipe 7@0=1/D_W:0*1; ask write 1; handshake 1; send; answer 0; handshake 0; send");
        row("a recipe without blocks repeats the last job",
            "monitor 1/D_W:0*1; send; answer 0; ask read 1; send; answer 1; send");
        row("a recipe without blocks after a start repeats nothing",
            "monitor 1/D_W:0*1; send; ask read 1; start 7#0#0#3#60; send");
        row("a recipe without blocks repeats the handshake",
            "start 7#0#0#1#60; handshake 1; send; answer 0; handshake 0; ask read 1; send");
        row("a recipe goes on behind the block that a start cut off",
            "recipe 7@0=1/D_W:0*1 7@1=2/D_W:0*1; ask read 1; send; answer 1; start 7#0#0#3#60; "
            "send");
        row("a recipe keeps the tag of the job before it",
            "monitor 1/D_W:0*1; recipe 7@0=1/D_W:0*1; send; answer 0; ask read 1; send");
        row("a failed recipe begins at its first block",
            "start 7#0#0#1#60; recipe 7@0=1/D_W:0*1 7@1=2/D_W:0*1; ask write 1; send; answer 0; "
            "send; "
            "answer 0 silent; ask write 1; send");
        row("three bad answers, and the counter starts again",
            "monitor 1/D_W:0*1 2/D_W:0*1; send; answer 0 silent; send; answer 0 check; send; "
            "answer 0 refused; send; answer 0 short; send; answer 0 long; answer 5; send");
        row("the station of an answer is not compared",
            "monitor 1/D_W:0*1; send; answer 5 foreign");
        row("the first write is not folded, the second one is",
            "write 1/D_W:0*1 value 1 tag 1; write 1/D_W:0*1 value 2 tag 2; "
            "write 1/D_W:0*1 value 3 tag 3");
        row("a list holds 513 writes, the last of which is displaced",
            "write 1/TX:0*448 value 1 tag 0; write 1/CX:0*66 value 1 tag 0");
        row("the end is told of the one-off read queued last",
            "once 1/D_W:0*61 bits 0 tag 0; send; answer 0; send; answer 0");
        row("a failed one-off read drops those behind it",
            "start 7#0#0#1#60; once 1/D_W:0*1 bits 0 tag 0; once 1/D_W:1*1 bits 0 tag 0; send; "
            "answer 0 silent; send");
        row("a one-off read that ends still stands first while its end is told",
            "once 1/D_W:0*1 bits 0 tag 0; once 1/D_W:1*1 bits 0 tag 0; once 1/D_W:0*1 bits 0 tag "
            "0; "
            "within once 1/D_W:1*1 bits 0 tag 9; send; answer 0");
        row("a one-off read asked for while another one's failure is told is dropped with it",
            "start 7#0#0#1#60; once 1/D_W:0*1 bits 0 tag 0; within once 1/D_W:1*1 bits 0 tag 0; "
            "send; "
            "answer 0 silent; send");
        row("a write that ends still stands first while its end is told",
            "monitor 1/M_bit:0*1; write 1/M_bit:0*1 value 1 tag 0; write 1/D_W:0*1 value 1 tag 1; "
            "within write 1/D_W:0*1 value 2 tag 2; send; answer 0");
        row("a bit written from within the callback of another one's write is sent, and lost here",
            "monitor 1/M_W:0*1; within write 1/M_bit:1*1 value 1 tag 0; write 1/M_bit:0*1 value 5 "
            "tag "
            "0; look 1/M_W:0*1; send; answer 0; send; answer 0; look 1/M_W:0*1");
        row("a word written from within its own callback is sent last, and lost here",
            "monitor 1/D_W:0*1; within write 1/D_W:0*1 value 2 tag 0; write 1/D_W:0*1 value 1 tag "
            "0; "
            "look 1/D_W:0*1; send; answer 0; send; answer 0; look 1/D_W:0*1");
        row("without words in a block keys and items stay apart, and contacts alone are written",
            "start 7#0#0#3#0; monitor 1/D_W:0*9 1/D_W:3*1 1/TX:4*1; recipe 7@0=1/D_W:0*70 "
            "7@70=1/D_W:"
            "70*1; write 1/D_W:0*1 value 1 tag 0; write 1/M_bit:0*1 value 1 tag 0; write 1/TX:0*2 "
            "value 1 tag 0; once 1/D_W:0*1 bits 0 tag 0; send; answer 0; send; answer 0; send; "
            "answer "
            "3; send; answer 4; send; answer 5; ask write 1; send; answer 0; send; answer 0");
        row("writes that stay in the cache may be longer than a request",
            "start 7#1#0#3#60; monitor 1/D_W:599*1; write 1/D_W:0*600 value 5 tag 0; write "
            "1/M_bit:0*1025 value 5 tag 0; look 1/D_W:0*512; look 1/D_W:512*88; look "
            "1/M_bit:1020*5");
        row("a bit written again from within its own write's callback stays pending",
            "monitor 1/M_bit:1*1; send; answer 2; within write 1/M_bit:1*1 value 0 tag 0; "
            "write 1/M_bit:1*1 value 0 tag 0; send; answer 0");
        row("a failed word tells of its watched bits that were not written",
            "start 7#0#0#1#60; monitor 1/D_bit:0*16; write 1/D_W:0*1 value 5 tag 0; send; "
            "answer 0 silent");
        row("a start forgets what was bad, what was counted and what is due",
            "monitor 1/D_W:0*1; send; answer 0 silent; send; answer 0 silent; write 1/TX:0*9 value "
            "1 "
            "tag 0; handshake 1; start 7#0#0#3#60; once 1/D_W:0*181 bits 0 tag 0; send; "
            "answer 0 silent; send; answer 1; send; answer 1");
        row("a start forgets the writes sent since the last cyclic read",
            "write 1/TX:0*4 value 1 tag 0; send; answer 0; send; answer 0; send; answer 0; "
            "start 7#0#0#3#60; once 1/D_W:0*1 bits 0 tag 0; send");
        row("a written word stays as written while writes wait",
            "monitor 1/D_W:0*1; once 1/D_W:0*1 bits 0 tag 0; send; write 1/D_W:0*1 value 1 tag 0; "
            "answer 2; look 1/D_W:0*1");
        row("a second write of a bit keeps it pending over the first one's end",
            "monitor 1/M_bit:0*16; write 1/M_bit:0*2 value 9 tag 0; write 1/M_bit:0*2 value 1 tag "
            "0; "
            "send; answer 0; answer 0; look 1/M_bit:0*2; send; answer 0; answer 0");
        row("a pending bit outlives a change of the monitored addresses",
            "write 1/D_bit:0*2 value 0 tag 0; send; answer 0; monitor 1/D_W:0*1; answer 0");
        row("a write to an unknown register holds up the next",
            "monitor 1/D_W:0*1; write 1/X_W:0*1 value 1 tag 0; write 1/D_W:0*1 value 1 tag 0; "
            "send; "
            "send; send; send; send; send; send; send; send; send; send; answer 0; send");
    }

    void rules()
    {
        QFETCH(QString, steps);
        const auto sequence = model::sequenceOf(steps.toStdString());
        QVERIFY(sequence.has_value());
        for (const auto threads : {model::HostThreads::One, model::HostThreads::Several}) {
            const std::string what = model::disagreementOf(*sequence, threads);
            QVERIFY2(what.empty(), what.c_str());
        }
    }

    void randomOperations_data()
    {
        const Columns<int, int> row("mix", "seed");
        for (std::size_t i = 0; i < model::Mix::all().size(); ++i) {
            for (int seed = 1; seed <= kSeeds; ++seed) {
                const QString name = QString::fromLatin1("%1, seed %2")
                                         .arg(QString::fromLatin1(model::Mix::all()[i].name))
                                         .arg(seed);
                row(name.toLatin1().constData(), static_cast<int>(i), seed);
            }
        }
    }

    void randomOperations()
    {
        QFETCH(int, mix);
        QFETCH(int, seed);
        const std::string what = model::disagreementOf(
            model::randomSequence(model::Mix::all()[static_cast<std::size_t>(mix)],
                                  static_cast<std::uint32_t>(seed), kSteps),
            seed % 2 == 0 ? model::HostThreads::One : model::HostThreads::Several);
        QVERIFY2(what.empty(), what.c_str());
    }
};

QTEST_APPLESS_MAIN(SchedulerModelTest)
#include "test_scheduler_model.moc"
