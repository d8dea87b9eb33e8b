#pragma once

#include "view/frames/detail/byte_view.h"

#include <QLabel>
#include <QTreeWidget>
#include <QWidget>

namespace cnet::view {

/** One frame: what it is, its fields as a list, and its bytes with the fields over them. */
class FrameDetail : public QWidget
{
    Q_OBJECT

public:
    explicit FrameDetail(QWidget *parent = nullptr);

    /**
     * @param headline what it is and what became of it
     * @param frame explained with all its fields; without bytes where nothing came
     */
    void setFrame(const QString &headline, const DecodedFrame &frame);

    /** Says how to get something to see here. */
    void clear();

    QString headline() const { return m_headline->text(); }

    // The parts, for whoever arranges them.

    QTreeWidget &fields() const { return *m_fields; }
    ByteView &bytes() const { return *m_bytes; }

private:
    void addField(const DecodedFrame &frame, const FrameField &field);
    void fitColumns();

    QLabel *m_headline;
    QTreeWidget *m_fields;
    ByteView *m_bytes;
};

} // namespace cnet::view
