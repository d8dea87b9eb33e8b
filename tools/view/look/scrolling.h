#pragma once

#include <QScrollArea>

namespace cnet::view {

/** Small windows and large fonts scroll what does not fit. @param content is the area's from now on
 */
inline QScrollArea *scrolling(QWidget *content)
{
    auto *area = new QScrollArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    // The ground is that of the tab.
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return area;
}

} // namespace cnet::view
