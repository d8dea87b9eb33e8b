#pragma once

#include <QAccessible>
#include <QAccessibleInterface>
#include <QLabel>
#include <QStringList>
#include <QWidget>

namespace cnet::view {

/** Parts of other fields, which speak for them. */
inline bool isPart(const QWidget &field)
{
    static const char *const kWholes[] = {"QComboBox", "QAbstractSpinBox", "QAbstractScrollArea",
                                          "QTabWidget", "QLineEdit"};
    for (const char *whole : kWholes) {
        if (field.parentWidget() == nullptr ||
            (field.parentWidget()->inherits(whole) && !field.inherits("QAbstractItemView"))) {
            return true;
        }
    }
    return field.inherits("QComboBoxListView") || field.inherits("QScrollBar") ||
           field.inherits("QLabel") || field.isWindow() ||
           field.objectName().startsWith(QLatin1String("qt_"));
}

/** Fields that the keyboard reaches and a screen reader has no word for, each as "class name". */
inline QStringList unnamedFields(const QWidget &widget, int &count)
{
    QStringList unnamed;
    const auto fields = widget.findChildren<QWidget *>();
    for (QWidget *field : fields) {
        if (field->focusPolicy() == Qt::NoFocus || isPart(*field)) {
            continue;
        }
        ++count;
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(field);
        if (spoken == nullptr || spoken->text(QAccessible::Name).isEmpty()) {
            unnamed.append(
                QString::fromLatin1("%1 %2 in %3")
                    .arg(QLatin1String(field->metaObject()->className()), field->objectName(),
                         QLatin1String(field->parentWidget()->metaObject()->className())));
        }
    }
    return unnamed;
}

} // namespace cnet::view
