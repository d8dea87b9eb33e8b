#include "view/look/fixed_font.h"
#include "view/look/message_bar.h"
#include "view/look/quality_look.h"
#include "view/look/readable_palette.h"
#include "view/look/wrap_bar.h"

#include <QAction>
#include <QPushButton>
#include <QSet>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

#include <cmath>

using namespace cnet;
using namespace cnet::view;

namespace {

const Quality kQualities[] = {Quality::NeverRead,   Quality::Good,    Quality::Waiting,
                              Quality::Implausible, Quality::Stale,   Quality::Refused,
                              Quality::NoAnswer,    Quality::LineDown};

QPalette paletteWith(QRgb base, QRgb text)
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(base));
    palette.setColor(QPalette::Text, QColor(text));
    return palette;
}

double luminance(const QColor &colour)
{
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) +
           0.0722 * part(colour.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const double light = qMax(luminance(one), luminance(other));
    const double dark = qMin(luminance(one), luminance(other));
    return (light + 0.05) / (dark + 0.05);
}

/** What is drawn of it, without its colour. */
QImage shapeOf(Quality quality)
{
    QImage image = qualityIcon(quality, QPalette()).pixmap(32, 32).toImage();
    return image.convertToFormat(QImage::Format_Alpha8);
}

} // namespace

/** Colours, signs and the bar for messages. */
class TestLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void disabledTextIsReadable();
    void isReadable_data();
    void isReadable();
    void tellsQualitiesApart();
    void signsAreSeenInChosenRows();
    void wrapsWhatHasNoRoom();
    void fixedLettersAreAsLarge();
    void saysAndGoes();
    void asks();
};

void TestLook::disabledTextIsReadable()
{
    QPalette dark;
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::Base}) {
        dark.setColor(role, QColor(42, 46, 50));
    }
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        dark.setColor(role, QColor(240, 240, 240));
        dark.setColor(QPalette::Disabled, role, QColor(36, 40, 43));
    }
    const QPalette mended = withReadableDisabled(dark);
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        const QColor &text = mended.color(QPalette::Disabled, role);
        QVERIFY(contrast(text, QColor(42, 46, 50)) > 3);
        QVERIFY(text != mended.color(QPalette::Active, role)); // it still looks disabled
        QCOMPARE(mended.color(QPalette::Active, role), dark.color(QPalette::Active, role));
    }
    QVERIFY(withReadableDisabled(mended) == mended);
}

void TestLook::isReadable_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << paletteWith(0xffffff, 0x202020);
    QTest::newRow("dark") << paletteWith(0x202326, 0xf0f0f0);
}

void TestLook::isReadable()
{
    QFETCH(QPalette, palette);
    const QColor &base = palette.color(QPalette::Base);
    const QColor &text = palette.color(QPalette::Text);
    for (const Tone tone : {Tone::Good, Tone::Waiting, Tone::Doubtful, Tone::Bad, Tone::Idle}) {
        QVERIFY2(contrast(toneColour(tone, palette), base) >= 4.5,
                 qPrintable(QString::number(int(tone))));
        QVERIFY2(contrast(text, washColour(tone, palette)) >= 4.5,
                 qPrintable(QString::number(int(tone))));
    }
    QSet<QRgb> traces;
    for (int i = 0; i < 10; ++i) {
        traces.insert(traceColour(i, palette).rgb());
        QVERIFY2(contrast(traceColour(i, palette), base) >= 3, qPrintable(QString::number(i)));
    }
    QCOMPARE(int(traces.size()), 10);
}

void TestLook::tellsQualitiesApart()
{
    QSet<QString> words;
    QVector<QImage> shapes;
    for (const Quality quality : kQualities) {
        words.insert(qualityWords(quality));
        const QImage shape = shapeOf(quality);
        if (!shapes.contains(shape)) {
            shapes.append(shape);
        }
    }
    QCOMPARE(int(words.size()), 8);
    QCOMPARE(int(shapes.size()), 5); // one for each tone
    QVERIFY(shapeOf(Quality::Good) != shapeOf(Quality::NoAnswer));
}

void TestLook::signsAreSeenInChosenRows()
{
    QPalette palette;
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    const QImage sign =
        qualityIcon(Quality::Good, palette).pixmap(32, 32, QIcon::Selected).toImage();
    QCOMPARE(sign.pixelColor(13, 24), QColor(Qt::white)); // the foot of the tick
}

void TestLook::wrapsWhatHasNoRoom()
{
    WrapBar bar;
    QList<QAction *> actions;
    for (int i = 0; i < 12; ++i) {
        actions.append(new QAction(QLatin1String("Something to do"), &bar));
    }
    bar.add(actions.mid(0, 6));
    bar.addSeparator();
    bar.add(actions.mid(6));
    const QSize row = bar.sizeHint();
    const int narrow = row.width() / 3;
    QCOMPARE(bar.heightForWidth(row.width()), row.height());
    QVERIFY(bar.heightForWidth(narrow) >= 3 * row.height());
    QVERIFY(bar.minimumSizeHint().width() < narrow);
    bar.resize(narrow, bar.heightForWidth(narrow));
    bar.show();
    const auto buttons = bar.findChildren<QToolButton *>();
    QCOMPARE(int(buttons.size()), 12);
    for (const QToolButton *button : buttons) {
        QVERIFY(bar.rect().contains(button->geometry()));
    }
}

void TestLook::fixedLettersAreAsLarge()
{
    QFont large;
    large.setPointSize(23);
    QCOMPARE(fixedFont(large).pointSize(), 23);
    large.setPixelSize(40);
    QCOMPARE(QFontInfo(fixedFont(large)).pixelSize(), 40);
}

void TestLook::saysAndGoes()
{
    QWidget window;
    MessageBar bar;
    bar.setParent(&window);
    window.show();
    QVERIFY(!bar.isVisible());
    bar.tell(QLatin1String("The line is lost."), QLatin1String("Check the cable."));
    QVERIFY(bar.isVisible());
    QCOMPARE(bar.text(), QLatin1String("The line is lost.\nCheck the cable."));
    QTest::mouseClick(bar.findChild<QToolButton *>(), Qt::LeftButton);
    QVERIFY(!bar.isVisible());
    QCOMPARE(bar.text(), QString());
}

void TestLook::asks()
{
    QWidget window;
    MessageBar bar;
    bar.setParent(&window);
    window.show();
    QString answered;
    const auto answer = [&answered](const char *text) {
        return MessageBar::Answer{QString::fromLatin1(text),
                                  [&answered, text] { answered = QLatin1String(text); }};
    };
    bar.ask(QLatin1String("Save it?"), {answer("Yes"), answer("No")});
    QCOMPARE(int(bar.buttons().size()), 2);
    QTest::mouseClick(bar.buttons().at(1), Qt::LeftButton);
    QCOMPARE(answered, QLatin1String("No"));
    QVERIFY(!bar.isVisible());
    QVERIFY(bar.buttons().isEmpty());
    // A question waits below another message.
    bar.ask(QLatin1String("Save it?"), {answer("Yes")});
    bar.tell(QLatin1String("The line is lost."));
    QCOMPARE(bar.text(), QLatin1String("The line is lost.\n\nSave it?"));
    QCOMPARE(answered, QLatin1String("No"));
    QTest::mouseClick(bar.buttons().first(), Qt::LeftButton);
    QCOMPARE(answered, QLatin1String("Yes"));
}

QTEST_MAIN(TestLook)
#include "test_look.moc"
