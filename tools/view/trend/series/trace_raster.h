#pragma once

#include "view/trend/series/trace_strokes.h"

#include <QColor>
#include <QImage>
#include <QRect>

#include <vector>

class QPainter;

namespace cnet::view {

/** How strokes are drawn. */
struct TracePen
{
    enum class Width { One, Two };
    enum class Edges { Sharp, Smooth }; ///< of slopes

    QColor colour;
    Width width = Width::One;
    Edges edges = Edges::Sharp;

    /** Below a lane. */
    QColor fillColour() const;
};

/** Draws strokes where columns and rows are the painter's coordinates. */
void paintStrokes(QPainter &painter, const TraceStrokes &strokes, const TracePen &pen);

/**
 * Many traces on their way to a painter: a byte a pixel, column by column, so that an upright line
 * is a run of bytes. That takes a fraction of the time of as many lines drawn by a painter,
 * whatever their length. Later traces cover earlier ones, and all of them what lies below lanes.
 */
class TraceRaster
{
public:
    /** Forgets what it has and begins a picture of these columns and rows. @param owner whose
     * traces come */
    void begin(const void *owner, const QRect &pixels);

    /** True between begin() and paint() for an owner and pixels. */
    bool isBegun(const void *owner, const QRect &pixels) const;

    /** @return false: it has no room for more traces, and this is not in it */
    bool add(const TraceStrokes &strokes, const TracePen &pen);

    /** Draws them, where columns and rows are the painter's coordinates, and ends the picture. */
    void paint(QPainter &painter);

private:
    struct Slopes
    {
        std::vector<QLineF> lines;
        TracePen pen;
    };
    uchar *columnAt(int x);
    void fillRect(const QRect &rect, uchar colour);
    void fillBelow(const QRect &rect, uchar colour);
    void toImage();

    const void *m_owner = nullptr;
    QRect m_pixels;
    int m_columnBytes = 0;
    std::vector<uchar> m_bytes;   ///< columns of indexes of m_colours
    std::vector<QRgb> m_colours;  ///< premultiplied; the first is nothing
    std::vector<Slopes> m_slopes; ///< drawn by the painter
    QImage m_image;
};

} // namespace cnet::view
