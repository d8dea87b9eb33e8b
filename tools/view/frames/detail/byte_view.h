#pragma once

#include "host/decode/decoded_frame.h"

#include <QAbstractScrollArea>

#include <vector>

namespace cnet::view {

/**
 * The bytes of a frame in hexadecimal and as characters, each field in a box under its name. What
 * it shows people also reach as a list: see FrameDetail.
 */
class ByteView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit ByteView(QWidget *parent = nullptr);

    /** @param frame explained with all its fields */
    void setFrame(const DecodedFrame &frame);

    /** Highlights a field and brings it into view. @param field index; -1: none */
    void select(int field);
    int selected() const { return m_selected; }

    /** Where a field begins, in the viewport. @param field index; empty where it has no place */
    QRect placeOf(int field) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void fieldClicked(int field);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    /** What fits on a line of a field. */
    struct Box
    {
        int field = 0;
        int offset = 0; ///< of its first byte in the frame
        int length = 0;
        QRect place; ///< from the top of the content
    };

    void layOut();
    void addBoxes(int field, QPoint &corner);
    void paintBox(QPainter &painter, const Box &box) const;
    QString label(const Box &box) const;
    QString hint(int field) const;
    int boxAt(const QPoint &point) const;
    int scrolled() const;

    DecodedFrame m_frame;
    std::vector<Box> m_boxes;
    int m_selected = -1;
    QFont m_fixed;
    int m_cell = 1; ///< width of a byte
    int m_lineHeight = 1;
    int m_pad = 1;
};

} // namespace cnet::view
