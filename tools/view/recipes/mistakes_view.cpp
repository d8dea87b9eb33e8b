#include "view/recipes/mistakes_view.h"

#include "view/look/colours.h"
#include "view/look/fixed_font.h"
#include "view/look/quality_look.h"

#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTextBlock>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace cnet::view {

namespace {

// More text than anybody looks through; beyond it mistakes are listed only.
constexpr int kMostShown = 1024 * 1024;

// A zero byte ends text for some of Qt.
QString shownText(const QByteArray &content)
{
    QString text = QString::fromUtf8(content.left(kMostShown));
    text.replace(QChar(0), QChar(QChar::ReplacementCharacter));
    text.remove(QLatin1Char('\r'));
    // Each of these would begin a line that other programs do not count.
    text.replace(QChar(QChar::ParagraphSeparator), QLatin1Char(' '));
    text.replace(QChar(QChar::LineSeparator), QLatin1Char(' '));
    return text;
}

} // namespace

MistakesView::MistakesView(QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel(this))
    , m_list(new QTreeWidget(this))
    , m_text(new QPlainTextEdit(this))
{
    m_title->setWordWrap(true);
    m_title->setTextFormat(Qt::PlainText);
    m_list->setHeaderLabels({tr("Line"), tr("Column"), tr("Mistake")});
    m_list->setRootIsDecorated(false);
    m_list->setAccessibleName(tr("Mistakes of the file"));
    m_list->setWordWrap(true);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(fixedFont(font()));
    m_text->setAccessibleName(tr("The file, with its mistakes marked"));
    m_text->setTabChangesFocus(true);
    connect(m_list, &QTreeWidget::currentItemChanged, this,
            [this] { goTo(m_list->indexOfTopLevelItem(m_list->currentItem())); });
    auto *const both = new QSplitter(Qt::Vertical, this);
    both->addWidget(m_list);
    both->addWidget(m_text);
    both->setStretchFactor(1, 2);
    auto *const column = new QVBoxLayout(this);
    column->addWidget(m_title);
    column->addWidget(both, 1);
}

void MistakesView::showFile(const QString &name, const QByteArray &content,
                            const QVector<Finding> &mistakes)
{
    clear();
    m_mistakes = mistakes;
    m_title->setText(
        tr("%1 has mistakes. Correct them in an editor, then read it again.").arg(name));
    m_text->setPlainText(shownText(content));
    for (const Finding &mistake : mistakes) {
        auto *const line = new QTreeWidgetItem(
            m_list, {QString::number(mistake.line), QString::number(mistake.column), mistake.text});
        line->setIcon(2, qualityIcon(Quality::Refused, palette()));
        line->setToolTip(2, mistake.text);
    }
    m_list->resizeColumnToContents(0);
    m_list->resizeColumnToContents(1);
    markAll();
    m_list->setCurrentItem(m_list->topLevelItem(0));
    goTo(0);
}

void MistakesView::clear()
{
    m_mistakes.clear();
    m_list->clear();
    m_text->setExtraSelections({});
    m_text->clear();
    m_title->clear();
}

void MistakesView::markAll()
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const Finding &mistake : m_mistakes) {
        const QTextBlock block = m_text->document()->findBlockByNumber(mistake.line - 1);
        if (block.isValid()) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = QTextCursor(block);
            mark.format.setBackground(washColour(Tone::Bad, palette()));
            mark.format.setProperty(QTextFormat::FullWidthSelection, true);
            marks.append(mark);
        }
    }
    m_text->setExtraSelections(marks);
}

void MistakesView::goTo(int mistake)
{
    if (mistake < 0 || mistake >= m_mistakes.size()) {
        return;
    }
    const Finding &place = m_mistakes.at(mistake);
    const QTextBlock block = m_text->document()->findBlockByNumber(place.line - 1);
    if (!block.isValid()) {
        return;
    }
    QTextCursor cursor(block);
    const int most = std::max(0, block.length() - 1);
    cursor.setPosition(block.position() + std::clamp(place.column - 1, 0, most));
    cursor.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    m_text->setTextCursor(cursor);
    m_text->centerCursor();
}

} // namespace cnet::view
