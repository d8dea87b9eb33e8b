#include "view/values/table/value_editor.h"

#include "view/look/colours.h"

#include <QLabel>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace cnet::view {

ValueEditor::ValueEditor(Check check, QWidget *parent)
    : QLineEdit(parent)
    , m_check(std::move(check))
    , m_label(new QLabel(parent))
{
    setFrame(false);
    setAutoFillBackground(true);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_label->setAutoFillBackground(true);
    m_label->setBackgroundRole(QPalette::Window); // the parent is a view, which has others
    m_label->setForegroundRole(QPalette::WindowText);
    m_label->setFrameShape(QFrame::Box);
    m_label->setMargin(fontMetrics().descent());
    m_label->hide();
    connect(this, &QLineEdit::textChanged, this, &ValueEditor::review);
    review();
}

ValueEditor::~ValueEditor()
{
    delete m_label;
}

void ValueEditor::review()
{
    QString reason;
    m_reason = m_check(text(), reason) ? QString() : reason;
    const QWidget *const ground = parentWidget();
    QPalette own = ground != nullptr ? ground->palette() : palette();
    if (!m_reason.isEmpty()) {
        own.setColor(QPalette::Base, washColour(Tone::Bad, own));
        own.setColor(QPalette::Text, toneColour(Tone::Bad, own));
    }
    setPalette(own);
    setAccessibleDescription(m_reason);
    placeReason();
}

void ValueEditor::placeReason()
{
    if (m_label == nullptr) {
        return;
    }
    m_label->setVisible(!m_reason.isEmpty() && isVisible() && !text().isEmpty());
    if (m_reason.isEmpty() || parentWidget() == nullptr) {
        return;
    }
    QPalette own = parentWidget()->palette();
    own.setColor(QPalette::Window, washColour(Tone::Bad, own));
    own.setColor(QPalette::WindowText, toneColour(Tone::Bad, own));
    m_label->setPalette(own);
    m_label->setText(m_reason);
    const QRect room = parentWidget()->rect();
    const int wanted = fontMetrics().averageCharWidth() * 60;
    const int width = std::min(wanted, room.width());
    const int height = m_label->heightForWidth(width);
    const int left = std::clamp(x(), 0, std::max(0, room.width() - width));
    const bool fitsUnder = geometry().bottom() + 1 + height <= room.height();
    const int top = fitsUnder ? geometry().bottom() + 1 : y() - height;
    m_label->setGeometry(left, top, width, height);
    m_label->raise();
}

void ValueEditor::moveEvent(QMoveEvent *event)
{
    QLineEdit::moveEvent(event);
    placeReason();
}

void ValueEditor::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    placeReason();
}

ChoiceEditor::ChoiceEditor(QWidget *parent)
    : QComboBox(parent)
{}

void ChoiceEditor::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace cnet::view
