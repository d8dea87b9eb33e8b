#include "view/recipes/question_bar.h"

#include "view/look/colours.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace cnet::view {

QuestionBar::QuestionBar(QWidget *parent)
    : QFrame(parent)
    , m_question(new QLabel(this))
    , m_row(new QHBoxLayout(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_question->setWordWrap(true);
    m_question->setTextFormat(Qt::PlainText);
    m_row->addWidget(m_question, 1);
    hide();
}

void QuestionBar::ask(const QString &question, const QVector<Answer> &answers)
{
    clear();
    QPalette own = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    own.setColor(QPalette::Window, washColour(Tone::Doubtful, own));
    own.setColor(QPalette::WindowText, own.color(QPalette::Text));
    setPalette(own);
    m_question->setText(question);
    for (const Answer &answer : answers) {
        auto *const button = new QPushButton(answer.text, this);
        button->setAutoDefault(true);
        button->setAccessibleDescription(question);
        connect(button, &QPushButton::clicked, this, [this, then = answer.then] {
            clear();
            if (then) {
                then();
            }
        });
        m_row->addWidget(button);
        m_buttons.append(button);
    }
    show();
    if (!m_buttons.isEmpty()) {
        m_buttons.first()->setFocus();
    }
}

void QuestionBar::clear()
{
    m_question->clear();
    for (QWidget *const button : m_buttons) {
        button->hide();
        button->deleteLater(); // it may be the one whose click this is
    }
    m_buttons.clear();
    hide();
}

void QuestionBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        clear();
    } else {
        QFrame::keyPressEvent(event);
    }
}

QString QuestionBar::question() const
{
    return m_question->text();
}

} // namespace cnet::view
