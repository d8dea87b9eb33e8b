#include "view/frames/capture_bar.h"

#include "view/look/colours.h"

#include <QAction>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QSignalBlocker>

namespace cnet::view {

CaptureBar::CaptureBar(QAction &live, QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel)
    , m_lineLabel(new QLabel(tr("Li&ne:")))
    , m_lines(new QComboBox)
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAccessibleName(tr("File that is shown"));
    m_lineLabel->setBuddy(m_lines);
    m_lines->setAccessibleName(tr("Line of the file"));
    auto *const back = new QToolButton;
    back->setDefaultAction(&live);
    auto *const row = new QHBoxLayout(this);
    row->addWidget(m_text, 1);
    row->addWidget(m_lineLabel);
    row->addWidget(m_lines);
    row->addWidget(back);
    connect(m_lines, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &CaptureBar::lineChosen);
    takeLook();
    hide();
}

void CaptureBar::setFile(const QString &path, const QStringList &lines)
{
    const QSignalBlocker quiet(m_lines);
    m_path = path;
    m_lines->clear();
    m_lines->addItems(lines);
    m_lines->setVisible(lines.size() > 1);
    m_lineLabel->setVisible(lines.size() > 1);
    setToolTip(QDir::toNativeSeparators(path).toHtmlEscaped());
}

void CaptureBar::setCount(int exchanges)
{
    m_text->setText(
        tr("File %1: %2").arg(QFileInfo(m_path).fileName(), tr("%n exchanges", "", exchanges)));
}

void CaptureBar::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_taking) {
        takeLook();
    }
}

void CaptureBar::takeLook()
{
    m_taking = true;
    QPalette own = parentWidget() != nullptr ? parentWidget()->palette() : palette();
    own.setColor(QPalette::Window, washColour(Tone::Waiting, own));
    own.setColor(QPalette::WindowText, own.color(QPalette::Text));
    setPalette(own);
    m_taking = false;
}

} // namespace cnet::view
