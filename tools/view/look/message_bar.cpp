#include "view/look/message_bar.h"

#include "view/look/colours.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace cnet::view {

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent)
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
    auto *row = new QHBoxLayout(this);
    row->addWidget(m_text, 1);
    row->addWidget(m_close, 0, Qt::AlignTop);
    connect(m_close, &QToolButton::clicked, this, &MessageBar::clear);
    hide();
}

void MessageBar::tell(const QString &text, const QString &advice)
{
    QPalette own = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    own.setColor(QPalette::Window, washColour(Tone::Bad, own));
    own.setColor(QPalette::WindowText, own.color(QPalette::Text));
    setPalette(own);
    m_text->setText(advice.isEmpty() ? text : text + QLatin1Char('\n') + advice);
    show();
}

void MessageBar::clear()
{
    m_text->clear();
    hide();
}

QString MessageBar::text() const
{
    return m_text->text();
}

} // namespace cnet::view
