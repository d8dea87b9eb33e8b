#include "gateway/support/written_line.h"
#include "support/rows.h"

#include <host/tag/tag_values.h>
#include <host/tag/value_format.h>

using namespace cnet;
using namespace cnet::gateway;

/** What becomes of requests on a line in virtual time. */
class TestLineWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesAndReadsBack_data();
    void takesAndReadsBack();
    void refusesWhatIsNotAllowed();
    void refusesWhileTheLineIsDown();
    void refusesWhileTheStationIsSilent();
    void saysWhatThePlcRefuses();
    void saysThatNobodyKnows();
    void saysThatThePlcHoldsSomethingElse();
    void saysThatItCouldNotBeReadBack();
    void knowsNothingAfterACut();
    void laterOnesTakeThePlaceOfEarlier();
    void takesBackWhatTheSessionHasNotSent();
    void answersAllAtTheEnd();
    void answersAllWhenItGoes();
};

namespace {

struct Taken
{
    const char *what;
    const char *tag;
    const char *value;
    const char *isNow;
};

const Taken kTaken[] = {
    {"a scaled number", "speed", "12.5", "12.5"},
    {"rounded to its step", "speed", "12.54", "12.5"},
    {"a value of an array", "zones[3]", "-0.1", "-0.1"},
    {"64 bits", "big", "18446744073709551615", "18446744073709551615"},
    {"a bit of a word", "flag", "true", "1"},
    {"a contact", "lamp", "on", "true"},
    {"a text", "name", "a,b", "\"a,b\""},
    {"a float", "ratio", "12.3", "12.3"},
    {"of another station", "other", "7", "7"},
};

} // namespace

void TestLineWriter::takesAndReadsBack_data()
{
    addRows(kTaken);
}

void TestLineWriter::takesAndReadsBack()
{
    const Taken &row = currentRow(kTaken);
    WrittenLine line;
    line.open();
    const QStringList answers = line.askAndWait("1", row.tag, row.value);
    QCOMPARE(answers,
             QStringList(QString::fromLatin1("1 taken [%1]").arg(QLatin1String(row.isNow))));
    QCOMPARE(line.takeWrites().size(), 1);
    const QString name = QString::fromLatin1(row.tag).section(QLatin1Char('['), 0, 0);
    const int tag = line.tags->tags().indexOf(name);
    const QVector<TagValue> now = readTag(line.tags->tags().all().at(tag), line.tags->state(tag));
    QCOMPARE(typedText(line.tags->tags().all().at(tag), now.last().value),
             QLatin1String(row.isNow));
}

void TestLineWriter::refusesWhatIsNotAllowed()
{
    WrittenLine line(writeRules({ruleOf("speed")}));
    line.open();
    QCOMPARE(line.askAndWait("1", "count", "1"),
             texts({"1 refused: count may not be written from outside"}));
    QCOMPARE(line.askAndWait("2", "speed", "121"),
             texts({"2 refused: speed: 121 is above the maximum of speed, which is 120"}));
    QCOMPARE(line.takeWrites(), QStringList());
}

void TestLineWriter::refusesWhileTheLineIsDown()
{
    WrittenLine line;
    line.ask("1", "speed", "1");
    QCOMPARE(line.take(), texts({"1 refused: the line is down; nothing was sent"})); // at once
    line.open();
    line.plant.line->breakDown();
    line.ask("2", "speed", "1");
    QCOMPARE(line.take(), texts({"2 refused: the line is down; nothing was sent"}));
    line.plant.run(10000);
    QCOMPARE(line.takeWrites(), QStringList());
    QCOMPARE(line.askAndWait("3", "speed", "1"), texts({"3 taken [1.0]"}));
}

void TestLineWriter::refusesWhileTheStationIsSilent()
{
    WrittenLine line;
    line.open();
    line.plant.silence(2);
    line.plant.run(10000);
    line.ask("1", "other", "1");
    QCOMPARE(line.take(), texts({"1 refused: station 2 does not answer; nothing was sent"}));
    QCOMPARE(line.askAndWait("2", "speed", "1"), texts({"2 taken [1.0]"}));
    line.plant.takeFrames();
    line.plant.silence(2, false);
    line.plant.run(60000);
    QCOMPARE(line.takeWrites(), QStringList());
    QCOMPARE(line.askAndWait("3", "other", "1"), texts({"3 taken [1]"}));
}

void TestLineWriter::saysWhatThePlcRefuses()
{
    WrittenLine line;
    line.open();
    QCOMPARE(line.askAndWait("1", "far", "1"),
             texts({"1 refused: refused: 1132, no such device, or address outside the device"}));
}

void TestLineWriter::saysThatNobodyKnows()
{
    WrittenLine line;
    line.open();
    line.plant.line->swallows = isWrite;
    const QStringList answers = line.askAndWait("1", "speed", "1", 20000);
    QCOMPARE(answers.size(), 1);
    QVERIFY2(answers.first().startsWith(
                 QLatin1String("1 no answer: it was sent and not confirmed (no answer)")),
             qPrintable(answers.first()));
    QVERIFY(!line.takeWrites().isEmpty());
}

void TestLineWriter::saysThatThePlcHoldsSomethingElse()
{
    WrittenLine line;
    line.open();
    line.plant.line->beforeAnswer = [&line](plc::Unit &) {
        if (line.plant.word(10) == 500) {
            line.plant.setWord(10, 300); // a program that does not like it
        }
    };
    QCOMPARE(line.askAndWait("1", "speed", "50"),
             texts({"1 no answer: the PLC confirmed it and holds something else [30.0]"}));
}

void TestLineWriter::saysThatItCouldNotBeReadBack()
{
    WrittenLine line;
    line.open();
    line.plant.line->swallows = [&line](const QByteArray &) { return line.plant.word(10) == 500; };
    const QStringList answers = line.askAndWait("1", "speed", "50", 20000);
    QCOMPARE(answers, texts({"1 no answer: the PLC confirmed it, and it could not be read back "
                             "(no answer)"}));
}

void TestLineWriter::knowsNothingAfterACut()
{
    WrittenLine line;
    line.open();
    line.ask("1", "speed", "50");
    QVERIFY(line.plant.clock.runUntil([&line] { return line.plant.word(10) == 500; }, 1000));
    line.ask("2", "count", "5");
    line.plant.line->breakDown();
    line.plant.run(1);
    QCOMPARE(line.take(), texts({"1 no answer: it was sent and not confirmed (the line is down)",
                                 "2 refused: the line is down; nothing was sent"}));
    line.plant.run(60000);
    QCOMPARE(line.take(), QStringList());
    QCOMPARE(line.plant.word(11), 0);
}

void TestLineWriter::laterOnesTakeThePlaceOfEarlier()
{
    WrittenLine line;
    line.open();
    line.ask("1", "count", "1");
    line.ask("2", "speed", "1");
    line.ask("3", "zones[0]", "1");
    line.ask("4", "zones[1]", "1"); // another value
    line.ask("5", "speed", "2");
    line.ask("6", "speed", "121"); // it is refused, and takes nobody's place
    line.plant.run(3000);
    QCOMPARE(line.take(),
             texts({"2 superseded: a later request for the same value took its place",
                    "6 refused: speed: 121 is above the maximum of speed, which is 120",
                    "1 taken [1]", "3 taken [1.0]", "4 taken [1.0]", "5 taken [2.0]"}));
    QCOMPARE(line.takeWrites().size(), 4);
    QCOMPARE(line.plant.word(10), 20);
}

// The session has the first one, and a request is out: it has not sent it yet.
void TestLineWriter::takesBackWhatTheSessionHasNotSent()
{
    WrittenLine line;
    line.open();
    line.ask("1", "speed", "1");
    line.ask("2", "speed", "2");
    QCOMPARE(line.take(),
             texts({"1 superseded: a later request for the same value took its place"}));
    line.plant.run(3000);
    QCOMPARE(line.take(), texts({"2 taken [2.0]"}));
    QCOMPARE(line.takeWrites().size(), 1);
    // What went out is waited for.
    line.ask("3", "speed", "3");
    QVERIFY(line.plant.clock.runUntil([&line] { return line.plant.word(10) == 30; }, 1000));
    line.ask("4", "speed", "4");
    line.plant.run(3000);
    QCOMPARE(line.take(), texts({"3 taken [3.0]", "4 taken [4.0]"}));
}

void TestLineWriter::answersAllAtTheEnd()
{
    WrittenLine line;
    line.open();
    line.ask("1", "speed", "50");
    QVERIFY(line.plant.clock.runUntil([&line] { return line.plant.word(10) == 500; }, 1000));
    line.ask("2", "count", "5");
    line.writer->end(QLatin1String("over"));
    QCOMPARE(line.take(), texts({"2 refused: over"}));
    line.plant.session->close();
    const QStringList sent = line.take();
    QCOMPARE(sent.size(), 1);
    QVERIFY2(sent.first().startsWith(QLatin1String("1 no answer: ")), qPrintable(sent.first()));
    line.ask("3", "count", "6");
    QCOMPARE(line.take(), texts({"3 refused: over"}));
}

void TestLineWriter::answersAllWhenItGoes()
{
    WrittenLine line;
    line.open();
    QVector<WriteAnswer> answers;
    QObject::connect(line.writer.get(), &LineWriter::answered, line.plant.session.get(),
                     [&answers](const WriteAnswer &answer) { answers.append(answer); });
    line.ask("1", "speed", "50");
    QVERIFY(line.plant.clock.runUntil([&line] { return line.plant.word(10) == 500; }, 1000));
    line.ask("2", "count", "5");
    line.writer.reset();
    QCOMPARE(answers.size(), 2);
    QVERIFY(answers.first().outcome == WriteAnswer::Outcome::Refused);
    QVERIFY(answers.last().outcome == WriteAnswer::Outcome::NoAnswer);
    line.plant.run(10000);
    QCOMPARE(line.plant.word(11), 0);
}

QTEST_GUILESS_MAIN(TestLineWriter)
#include "test_line_writer.moc"
