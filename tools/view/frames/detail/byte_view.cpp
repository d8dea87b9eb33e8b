#include "view/frames/detail/byte_view.h"

#include "view/look/colours.h"
#include "view/look/fixed_font.h"

#include "host/wire/frame_words.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace cnet::view {

namespace {

// Of a byte that is no character, which its number above tells.
constexpr QChar kNoCharacter(0x00b7);
constexpr int kRowsOfBox = 3; // name, hexadecimal, characters

QString character(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x20 && code < 0x7f ? QString(QLatin1Char(byte)) : QString(kNoCharacter);
}

} // namespace

ByteView::ByteView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // the list of fields has the same for the keyboard
    setAccessibleName(tr("Bytes of the frame"));
    layOut();
}

void ByteView::setFrame(const DecodedFrame &frame)
{
    m_frame = frame;
    m_selected = -1;
    verticalScrollBar()->setValue(0);
    layOut();
}

void ByteView::select(int field)
{
    m_selected = field;
    const QRect place = placeOf(field);
    if (!place.isEmpty()) {
        QScrollBar *const bar = verticalScrollBar();
        const int over = place.bottom() + m_pad - viewport()->height();
        bar->setValue(bar->value() + (place.top() < 0 ? place.top() - m_pad : std::max(over, 0)));
    }
    viewport()->update();
}

QRect ByteView::placeOf(int field) const
{
    const auto box = std::find_if(m_boxes.begin(), m_boxes.end(),
                                  [field](const Box &its) { return its.field == field; });
    return box == m_boxes.end() ? QRect() : box->place.translated(0, -scrolled());
}

QSize ByteView::sizeHint() const
{
    const int bytes = 16;
    const int lines = 3;
    return {m_cell * bytes, (m_lineHeight * kRowsOfBox + 3 * m_pad) * lines};
}

int ByteView::scrolled() const
{
    return verticalScrollBar()->value();
}

void ByteView::layOut()
{
    m_fixed = fixedFont(font());
    const QFontMetrics metrics(m_fixed);
    m_lineHeight = std::max(metrics.height(), fontMetrics().height());
    m_pad = std::max(2, m_lineHeight / 5);
    m_cell = metrics.horizontalAdvance(QLatin1String("00 "));
    m_boxes.clear();
    QPoint corner(m_pad, m_pad);
    for (int field = 0; field < m_frame.fields.size(); ++field) {
        addBoxes(field, corner);
    }
    const int height = m_boxes.empty() ? 0 : m_boxes.back().place.bottom() + m_pad;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(m_lineHeight);
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    viewport()->update();
}

// From left to right like words on a page; a field that is longer than a line goes on in the next.
void ByteView::addBoxes(int field, QPoint &corner)
{
    const FrameField &its = m_frame.fields.at(field);
    const int lineWidth = viewport()->width() - 2 * m_pad;
    const int most = std::max(1, (lineWidth - 2 * m_pad) / m_cell);
    const int height = kRowsOfBox * m_lineHeight + 2 * m_pad;
    int done = 0;
    do {
        Box box;
        box.field = field;
        box.offset = its.offset + done;
        box.length = std::min(its.length - done, most);
        done += box.length;
        const int name = fontMetrics().horizontalAdvance(label(box));
        const int width = std::max(name, box.length * m_cell) + 2 * m_pad;
        if (corner.x() > m_pad && corner.x() + width > lineWidth) {
            corner = QPoint(m_pad, corner.y() + height + m_pad);
        }
        box.place = QRect(corner, QSize(width, height));
        corner.rx() += width + m_pad;
        m_boxes.push_back(box);
    } while (done < its.length);
}

QString ByteView::label(const Box &box) const
{
    const FrameField &its = m_frame.fields.at(box.field);
    if (box.offset != its.offset) {
        return QLatin1String("...");
    }
    return its.fault.isEmpty() ? its.name : QLatin1String("! ") + its.name;
}

bool ByteView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip) {
        return QAbstractScrollArea::viewportEvent(event);
    }
    const auto *const help = static_cast<QHelpEvent *>(event);
    const int box = boxAt(help->pos());
    QToolTip::showText(help->globalPos(),
                       box < 0 ? QString() : hint(m_boxes.at(static_cast<std::size_t>(box)).field),
                       this);
    return true;
}

QString ByteView::hint(int field) const
{
    const FrameField &its = m_frame.fields.at(field);
    const QString text =
        its.meaning.isEmpty() ? its.name : its.name + QLatin1String(": ") + its.meaning;
    return its.fault.isEmpty() ? text : text + QLatin1Char('\n') + its.fault;
}

void ByteView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    for (Box box : m_boxes) {
        box.place.translate(0, -scrolled());
        if (box.place.intersects(event->rect())) {
            paintBox(painter, box);
        }
    }
}

void ByteView::paintBox(QPainter &painter, const Box &box) const
{
    const bool chosen = box.field == m_selected;
    const bool faulty = !m_frame.fields.at(box.field).fault.isEmpty();
    const QColor ink = palette().color(chosen ? QPalette::HighlightedText : QPalette::Text);
    const QColor ground = chosen   ? palette().color(QPalette::Highlight)
                          : faulty ? washColour(Tone::Bad, palette())
                                   : palette().color(QPalette::AlternateBase);
    painter.setPen(faulty ? toneColour(Tone::Bad, palette()) : palette().color(QPalette::Mid));
    painter.setBrush(ground);
    painter.drawRect(box.place.adjusted(0, 0, -1, -1));
    painter.setPen(ink);
    painter.setFont(font());
    QRect row(box.place.left() + m_pad, box.place.top() + m_pad, box.place.width(), m_lineHeight);
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, label(box));
    painter.setFont(m_fixed);
    row.translate(0, m_lineHeight);
    const QByteArray bytes = m_frame.bytes.mid(box.offset, box.length);
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, hexText(bytes));
    row.translate(0, m_lineHeight);
    row.setWidth(m_cell);
    for (const char byte : bytes) {
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, character(byte));
        row.translate(m_cell, 0);
    }
}

void ByteView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

void ByteView::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::PaletteChange) {
        layOut();
    }
}

void ByteView::mousePressEvent(QMouseEvent *event)
{
    const int box = boxAt(event->pos());
    if (box >= 0 && event->button() == Qt::LeftButton) {
        Q_EMIT fieldClicked(m_boxes.at(static_cast<std::size_t>(box)).field);
    }
}

int ByteView::boxAt(const QPoint &point) const
{
    const QPoint at = point + QPoint(0, scrolled());
    const auto box = std::find_if(m_boxes.begin(), m_boxes.end(),
                                  [at](const Box &its) { return its.place.contains(at); });
    return box == m_boxes.end() ? -1 : static_cast<int>(box - m_boxes.begin());
}

} // namespace cnet::view
