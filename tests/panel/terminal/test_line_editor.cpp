#include "panel/terminal/line_editor.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestLineEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void types_data();
    void types();
    void boundsItsLength();
    void startsAnew();
};

void TestLineEditor::types_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("last"); // event of the last key, or of the end of the input
    using Event = LineEditor::Event;
    const auto row = [](const char *name, const QByteArray &keys, const char *text, Event last) {
        QTest::newRow(name) << keys << QString::fromLatin1(text) << static_cast<int>(last);
    };
    row("letters", "D_W:1=2", "D_W:1=2", Event::Changed);
    row("Enter", "a\r", "a", Event::Entered);
    row("line feed", "a\n", "a", Event::Entered);
    row("Enter alone", "\r", "", Event::Entered);
    row("backspace", "abc\x7f", "ab", Event::Changed);
    row("Ctrl-H", "abc\x08", "ab", Event::Changed);
    row("backspace on nothing", "\x7f", "", Event::Changed);
    row("Ctrl-U", "abc\x15", "", Event::Changed);
    row("Esc", "abc\x1b", "abc", Event::Cancelled);
    row("Esc and a letter", "abc\x1bx", "abc", Event::Cancelled);
    row("cursor key", "abc\x1b[A", "abc", Event::None);
    row("cursor key of another mode", "abc\x1bOB", "abc", Event::None);
    row("key with parameters", "abc\x1b[15;2~", "abc", Event::None);
    row("letter behind a cursor key", "abc\x1b[Ad", "abcd", Event::Changed);
    row("other control character", "a\x01", "a", Event::None);
    row("tabulator", "a\t", "a", Event::None);
    row("letters of other scripts", "a\xC3\xA4", "a", Event::None);
    row("zero", QByteArray("a\0", 2), "a", Event::None);
}

void TestLineEditor::types()
{
    QFETCH(QByteArray, keys);
    LineEditor editor;
    LineEditor::Event last = LineEditor::Event::None;
    for (const char key : keys) {
        last = editor.feed(key);
    }
    const LineEditor::Event end = editor.endOfInput();
    last = end == LineEditor::Event::None ? last : end;
    QTEST(editor.text(), "text");
    QTEST(static_cast<int>(last), "last");
}

void TestLineEditor::boundsItsLength()
{
    LineEditor editor;
    for (int i = 0; i < LineEditor::kLongestLine; ++i) {
        QVERIFY(editor.feed('x') == LineEditor::Event::Changed);
    }
    QVERIFY(editor.feed('x') == LineEditor::Event::None);
    QCOMPARE(static_cast<int>(editor.text().size()), LineEditor::kLongestLine);
}

void TestLineEditor::startsAnew()
{
    LineEditor editor;
    for (const char key : QByteArray("abc\x1b[")) {
        editor.feed(key);
    }
    editor.clear();
    QVERIFY(editor.feed('x') == LineEditor::Event::Changed);
    QCOMPARE(editor.text(), QLatin1String("x"));
}

QTEST_APPLESS_MAIN(TestLineEditor)
#include "test_line_editor.moc"
