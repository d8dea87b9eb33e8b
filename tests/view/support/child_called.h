#pragma once

#include <QtWidgets/QWidget>

namespace cnet::view {

/** A button or an action inside a widget. @param text without the mark of its key */
template <typename Child>
Child *childCalled(const QWidget &widget, const char *text)
{
    const auto children = widget.findChildren<Child *>();
    for (Child *const child : children) {
        if (child->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
            return child;
        }
    }
    return nullptr;
}

} // namespace cnet::view
