#include <QtTest/QtTest>

#include <algorithm>

#include "model/operation_mix.h"
#include "model/sequence_shrink.h"
#include "support/columns.h"

using model::Act;
using model::Operation;
using model::Sequence;

namespace {

int countOf(const Sequence &sequence, Act act)
{
    return static_cast<int>(
        std::count_if(sequence.begin(), sequence.end(),
                      [act](const Operation &operation) { return operation.act == act; }));
}

/** A silent answer somewhere behind a write. */
bool writeThenSilence(const Sequence &sequence)
{
    bool written = false;
    for (const Operation &operation : sequence) {
        written = written || operation.act == Act::Write;
        if (written && operation.act == Act::Answer && operation.fault == model::Fault::Silent) {
            return true;
        }
    }
    return false;
}

bool threeReadings(const Sequence &sequence)
{
    return countOf(sequence, Act::ReadOnce) >= 3;
}

bool wideRange(const Sequence &sequence)
{
    for (const Operation &operation : sequence) {
        for (const model::Range &range : operation.ranges) {
            if (operation.act == Act::Monitor && range.count >= 5 && range.start >= 3) {
                return true;
            }
        }
    }
    return false;
}

using Check = bool (*)(const Sequence &);

} // namespace

Q_DECLARE_METATYPE(Check)

class SequenceShrinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatDoesNotMatterGoes_data()
    {
        const Columns<Check, QString> row("fails", "shortest");
        row("two steps in order", Check(writeThenSilence),
            "write 1/D_W:0*0 value 0 tag 0; answer 0 silent");
        row("three of a kind", Check(threeReadings),
            "once 1/D_W:0*0 bits 0 tag 0; "
            "once 1/D_W:0*0 bits 0 tag 0; "
            "once 1/D_W:0*0 bits 0 tag 0");
        row("a number at its limit", Check(wideRange), "monitor 1/D_W:3*5");
    }

    void whatDoesNotMatterGoes()
    {
        QFETCH(Check, fails);
        QFETCH(QString, shortest);
        model::Mix mix = model::Mix::all().back();
        mix.badPercent = 60;
        const Sequence sequence = model::randomSequence(mix, 11, 400);
        QVERIFY(fails(sequence));
        const Sequence found = model::shrink(sequence, fails);
        QCOMPARE(QString::fromStdString(model::textOf(found)), shortest);
    }

    void onlyAsOftenAsAllowed()
    {
        const Sequence sequence = model::randomSequence(model::Mix::all().back(), 11, 100);
        int asked = 0;
        const auto always = [&asked](const Sequence &) {
            ++asked;
            return false;
        };
        QCOMPARE(model::shrink(sequence, always, 25).size(), sequence.size());
        QCOMPARE(asked, 25);
    }
};

QTEST_APPLESS_MAIN(SequenceShrinkTest)
#include "test_sequence_shrink.moc"
