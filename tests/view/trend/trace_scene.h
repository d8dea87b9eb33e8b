#pragma once

#include "view/trend/series/trace_item.h"

#include <qwt_scale_map.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <vector>

namespace cnet::view {

constexpr QRgb kGround = 0xffffffff;
constexpr int kWidth = 400;
constexpr int kHeight = 200;

inline QwtScaleMap mapOf(double s1, double s2, double p1, double p2)
{
    QwtScaleMap map;
    map.setScaleInterval(s1, s2);
    map.setPaintInterval(p1, p2);
    return map;
}

/** A picture of a part of time and of values, in which a trace is black. */
struct Scene
{
    QwtScaleMap x = mapOf(0, kWidth - 1, 0, kWidth - 1);
    QwtScaleMap y = mapOf(0, kHeight - 1, kHeight - 1, 0);
    QRect canvas{0, 0, kWidth, kHeight};
    QImage image = emptyImage();

    static QImage emptyImage()
    {
        QImage image(kWidth, kHeight, QImage::Format_RGB32);
        image.fill(kGround);
        return image;
    }

    void draw(const TraceItem &item)
    {
        QPainter painter(&image);
        item.draw(&painter, x, y, canvas);
    }

    bool isPainted(int column, int row) const { return image.pixel(column, row) != kGround; }

    /** The rows that are painted in a column. */
    std::vector<int> rows(int column) const
    {
        std::vector<int> rows;
        for (int row = 0; row < image.height(); ++row) {
            if (isPainted(column, row)) {
                rows.push_back(row);
            }
        }
        return rows;
    }

    int columnOf(qint64 atMs) const
    {
        return static_cast<int>(std::floor(x.transform(static_cast<double>(atMs)) + 0.5));
    }
    int rowOf(double value) const { return static_cast<int>(std::floor(y.transform(value) + 0.5)); }
};

} // namespace cnet::view
