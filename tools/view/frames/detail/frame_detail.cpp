#include "view/frames/detail/frame_detail.h"

#include "view/look/quality_look.h"

#include "host/decode/frame_text.h"
#include "host/wire/frame_words.h"

#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>

namespace cnet::view {

namespace {

enum FieldColumn { Name, Says, At, Hex, Characters };

constexpr int kBytesInList = 32;

QString placeText(const FrameField &field)
{
    return field.length < 2 ? QString::number(field.offset)
                            : QString::fromLatin1("%1-%2")
                                  .arg(field.offset)
                                  .arg(field.offset + field.length - 1);
}

} // namespace

FrameDetail::FrameDetail(QWidget *parent)
    : QWidget(parent)
    , m_headline(new QLabel)
    , m_fields(new QTreeWidget)
    , m_bytes(new ByteView)
{
    m_headline->setTextFormat(Qt::PlainText);
    m_headline->setWordWrap(true);
    m_headline->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_headline->setAccessibleName(tr("The frame in words"));
    m_fields->setAccessibleName(tr("Fields of the frame"));
    m_fields->setHeaderLabels(
        {tr("Field"), tr("Meaning"), tr("Byte"), tr("Hexadecimal"), tr("Characters")});
    m_fields->setRootIsDecorated(false);
    m_fields->setUniformRowHeights(true);
    auto *const split = new QSplitter(Qt::Horizontal);
    split->addWidget(m_fields);
    split->addWidget(m_bytes);
    split->setChildrenCollapsible(false);
    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(m_headline);
    rows->addWidget(split, 1);
    connect(m_fields, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        m_bytes->select(m_fields->indexOfTopLevelItem(item));
    });
    connect(m_bytes, &ByteView::fieldClicked, this, [this](int field) {
        m_fields->setCurrentItem(m_fields->topLevelItem(field));
        m_fields->setFocus();
    });
    clear();
}

void FrameDetail::setFrame(const QString &headline, const DecodedFrame &frame)
{
    m_headline->setText(headline);
    m_fields->clear();
    const bool empty = frame.bytes.isEmpty();
    m_bytes->setFrame(empty ? DecodedFrame() : frame);
    if (!empty) {
        for (const FrameField &field : frame.fields) {
            addField(frame, field);
        }
        fitColumns();
    }
}

void FrameDetail::addField(const DecodedFrame &frame, const FrameField &field)
{
    const QByteArray bytes = frame.bytes.mid(field.offset, field.length);
    const QByteArray start = bytes.left(kBytesInList);
    const QString more = start.size() < bytes.size() ? QLatin1String(" ...") : QString();
    auto *const item = new QTreeWidgetItem(m_fields);
    item->setText(Name, field.name);
    item->setText(Says, field.fault.isEmpty() ? field.meaning
                        : field.meaning.isEmpty()
                            ? field.fault
                            : field.meaning + QLatin1String("; ") + field.fault);
    item->setText(At, placeText(field));
    item->setText(Hex, hexText(start) + more);
    item->setText(Characters, visibleText(start) + more);
    if (!field.fault.isEmpty()) {
        item->setIcon(Name, qualityIcon(Quality::NoAnswer, palette()));
    }
}

void FrameDetail::fitColumns()
{
    const int most = fontMetrics().averageCharWidth() * 40;
    for (int column = 0; column < m_fields->columnCount(); ++column) {
        m_fields->resizeColumnToContents(column);
        m_fields->setColumnWidth(column, qMin(m_fields->columnWidth(column), most));
    }
}

void FrameDetail::clear()
{
    setFrame(tr("Select a frame to see what its bytes mean."), DecodedFrame());
}

} // namespace cnet::view
