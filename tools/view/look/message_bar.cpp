#include "view/look/message_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace cnet::view {

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent)
    , m_row(new QHBoxLayout(this))
    , m_text(new QLabel)
    , m_close(new QToolButton)
{
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setAccessibleName(tr("Message"));
    m_close->setText(tr("Close"));
    m_close->setAccessibleName(tr("Close the message"));
    m_close->setAutoRaise(true);
    m_row->addWidget(m_text, 1);
    m_row->addWidget(m_close, 0, Qt::AlignTop);
    connect(m_close, &QToolButton::clicked, this, &MessageBar::clear);
    hide();
}

void MessageBar::tell(const QString &text, const QString &advice)
{
    m_said = advice.isEmpty() ? text : text + QLatin1Char('\n') + advice;
    if (m_buttons.isEmpty()) {
        m_asked.clear();
    }
    show(Tone::Bad);
}

void MessageBar::ask(const QString &text, const QVector<Answer> &answers)
{
    clear();
    for (const Answer &answer : answers) {
        auto *button = new QPushButton(answer.text);
        const auto action = answer.action;
        connect(button, &QPushButton::clicked, this, [this, action] {
            clear();
            action();
        });
        m_buttons.append(button);
        m_row->insertWidget(m_row->count() - 1, button, 0, Qt::AlignTop);
    }
    m_asked = text;
    show(Tone::Waiting);
}

void MessageBar::show(Tone tone)
{
    QPalette own = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    own.setColor(QPalette::Window, washColour(tone, own));
    own.setColor(QPalette::WindowText, own.color(QPalette::Text));
    setPalette(own);
    const bool areBoth = !m_said.isEmpty() && !m_asked.isEmpty();
    m_text->setText(areBoth ? m_said + QLatin1String("\n\n") + m_asked : m_said + m_asked);
    QFrame::show();
}

void MessageBar::clear()
{
    for (QPushButton *button : qAsConst(m_buttons)) {
        button->hide();
        button->deleteLater(); // it may be the one that was clicked
    }
    m_buttons.clear();
    m_said.clear();
    m_asked.clear();
    m_text->clear();
    hide();
}

QString MessageBar::text() const
{
    return m_text->text();
}

} // namespace cnet::view
