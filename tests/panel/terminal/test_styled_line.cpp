#include "panel/terminal/styled_line.h"

#include <QtTest>

using namespace cnet::panel;

class TestStyledLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsCells();
    void tellsWhereLinesDiffer_data();
    void tellsWhereLinesDiffer();
    void emphasisEndsWithTheBytes();
};

namespace {

StyledLine example()
{
    StyledLine line;
    line.append(QLatin1String("ab"));
    line.append(QLatin1String("cd"), Emphasis::Changed);
    line.append(QLatin1String("ef"), Emphasis::Bad);
    line.append(QLatin1String("gh"));
    return line;
}

} // namespace

void TestStyledLine::fillsCells()
{
    StyledLine line;
    line.appendCell(QLatin1String("ab"), 4, Emphasis::Bad);
    line.appendCell(QLatin1String("abcdef"), 4);
    line.appendCell(QLatin1String("lost"), 0);
    QCOMPARE(line.text(), QLatin1String("ab  abcd"));
    QVERIFY(line.emphasisAt(1) == Emphasis::Bad);
    QVERIFY(line.emphasisAt(2) == Emphasis::None);
    line.truncate(3);
    QCOMPARE(line.text(), QLatin1String("ab "));
    QCOMPARE(line.bytes(0, 3, Colours::None), QByteArray("\x1b[1mab\x1b[m "));
}

void TestStyledLine::tellsWhereLinesDiffer_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("emphasis"); // of its third and fourth character
    QTest::addColumn<QString>("same"); // of each column
    QTest::newRow("alike") << "abcdefgh" << 2 << "........";
    QTest::newRow("text") << "abcxefgh" << 2 << "...x....";
    QTest::newRow("emphasis") << "abcdefgh" << 3 << "..xx....";
    QTest::newRow("shorter") << "abcd" << 2 << "....xxxx";
}

void TestStyledLine::tellsWhereLinesDiffer()
{
    QFETCH(QString, text);
    QFETCH(int, emphasis);
    StyledLine line;
    line.append(text.left(2));
    line.append(text.mid(2, 2), static_cast<Emphasis>(emphasis));
    line.append(text.mid(4, 2), Emphasis::Bad);
    line.append(text.mid(6));
    QString same;
    for (int column = 0; column < 8; ++column) {
        QCOMPARE(line.isSameAt(column, example()), example().isSameAt(column, line));
        same += QLatin1Char(line.isSameAt(column, example()) ? '.' : 'x');
    }
    QTEST(same, "same");
    QCOMPARE(line == example(), !same.contains(QLatin1Char('x')));
}

// A line that is cut anywhere leaves the terminal as it was.
void TestStyledLine::emphasisEndsWithTheBytes()
{
    const StyledLine line = example();
    QCOMPARE(line.bytes(0, 8, Colours::Some), QByteArray("ab\x1b[7mcd\x1b[m\x1b[1;31mef\x1b[mgh"));
    QCOMPARE(line.bytes(0, 8, Colours::None), QByteArray("ab\x1b[7mcd\x1b[m\x1b[1mef\x1b[mgh"));
    QCOMPARE(line.bytes(3, 4, Colours::None), QByteArray("\x1b[7md\x1b[m"));
    QCOMPARE(line.bytes(3, 3, Colours::None), QByteArray());
}

QTEST_APPLESS_MAIN(TestStyledLine)
#include "test_styled_line.moc"
