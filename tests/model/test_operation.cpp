#include <QtTest/QtTest>

#include "model/operation.h"
#include "model/operation_mix.h"

class OperationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsReadBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("steps");

        const auto row = [](const char *text, int steps) {
            QTest::newRow(text) << QString::fromLatin1(text) << steps;
        };
        row("", 0);
        row("send", 1);
        row("send; answer 5; send; answer 6 check", 4);
        row("start 7#0#0#3#60", 1);
        row("start 7#0#0#3#60 without lock", 1);
        row("listen 0; handshake 1; buffer 5", 3);
        row("monitor", 1);
        row("monitor 1/D_W:100*6 257/M_bit:48*3", 1);
        row("recipe 7@0=1/D_W:10*2 0@12=1/T_W:12*3", 1);
        row("ask write 1; ask read 2", 2);
        row("write 1/M_bit:53*1 value 3 tag 9", 1);
        row("write 1/D_W:0*-1 value 3 tag 9", 1);
        row("once 1/D_W:100*2 bits -1 tag 9", 1);
        row("look 1/TX:100*2", 1);
        row("within once 1/D_W:100*2 bits 0 tag 9; within listen 0", 2);
    }

    void textIsReadBack()
    {
        QFETCH(QString, text);
        QFETCH(int, steps);
        const auto sequence = model::sequenceOf(text.toStdString());
        QVERIFY(sequence.has_value());
        QCOMPARE(static_cast<int>(sequence->size()), steps);
        QCOMPARE(QString::fromStdString(model::textOf(*sequence)), text);
    }

    void wrongTextIsNoSequence_data()
    {
        QTest::addColumn<QString>("text");

        for (const char *text :
             {"go", "send; go", "answer 1 loud", "monitor 1/D_W", "monitor D_W:1*1",
              "recipe 1/D_W:1*1", "write 1/D_W:1*1", "write 1/D_W:1*1 value 2",
              "once 1/D_W:1*1 tag 2", "ask twice 1", "start 7#0#0#3#60 with lock", "handshake",
              "answer", "start", "ask write", "send 5", "look 1/D_W:1*1 5", "within",
              "within send"}) {
            QTest::newRow(text) << QString::fromLatin1(text);
        }
    }

    void wrongTextIsNoSequence()
    {
        QFETCH(QString, text);
        QVERIFY(!model::sequenceOf(text.toStdString()).has_value());
    }

    void randomSequencesAreReadBack_data()
    {
        QTest::addColumn<int>("mix");

        for (std::size_t i = 0; i < model::Mix::all().size(); ++i) {
            QTest::newRow(model::Mix::all()[i].name) << static_cast<int>(i);
        }
    }

    void randomSequencesAreReadBack()
    {
        QFETCH(int, mix);
        const auto sequence =
            model::randomSequence(model::Mix::all()[static_cast<std::size_t>(mix)], 7, 300);
        QVERIFY(sequence.size() >= 300);
        const std::string text = model::textOf(sequence);
        const auto again = model::sequenceOf(text);
        QVERIFY2(again.has_value(), text.c_str());
        QCOMPARE(again->size(), sequence.size());
        QCOMPARE(QString::fromStdString(model::textOf(*again)), QString::fromStdString(text));
    }

    void sameSeedGivesSameSteps()
    {
        const model::Mix &mix = model::Mix::all().back();
        const auto text = [&mix](std::uint32_t seed) {
            return model::textOf(model::randomSequence(mix, seed, 100));
        };
        QVERIFY(text(3) == text(3));
        QVERIFY(text(3) != text(4));
    }
};

QTEST_APPLESS_MAIN(OperationTest)
#include "test_operation.moc"
