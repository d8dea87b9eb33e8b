#include "view/shell/state_label.h"

#include "view/look/quality_look.h"

#include <QEvent>

namespace cnet::view {

namespace {

constexpr int kMostCharacters = 80; // of the words; the tool tip has all of them

/** What a value would be like now. */
Quality qualityOf(const Line &line)
{
    if (line.isOpen()) {
        return Quality::Good;
    }
    if (line.isLent()) {
        return Quality::Waiting;
    }
    if (line.session() == nullptr) {
        return Quality::NeverRead;
    }
    return line.session()->lineError().isEmpty() ? Quality::Waiting : Quality::LineDown;
}

} // namespace

StateLabel::StateLabel(const Line &line, QWidget *parent)
    : QToolButton(parent)
    , m_line(line)
{
    setAutoRaise(true);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setFocusPolicy(Qt::TabFocus);
    connect(&line, &Line::stateChanged, this, &StateLabel::look);
    look();
}

void StateLabel::changeEvent(QEvent *event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange) {
        look();
    }
}

void StateLabel::look()
{
    const Quality quality = qualityOf(m_line);
    QPalette own = parentWidget() != nullptr ? parentWidget()->palette() : QPalette();
    own.setColor(QPalette::ButtonText, toneColour(toneOf(quality), own));
    setPalette(own);
    setIcon(qualityIcon(quality, own));
    const QString words = m_line.session() == nullptr
                              ? m_line.stateText()
                              : tr("%1: %2").arg(m_line.connection().text(), m_line.stateText());
    setToolTip(words);
    setAccessibleName(tr("Connection: %1").arg(words));
    setText(words.size() <= kMostCharacters
                ? words
                : words.left(kMostCharacters - 3) + QLatin1String("..."));
}

} // namespace cnet::view
