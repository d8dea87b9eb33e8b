#pragma once

#include <QStyledItemDelegate>

namespace cnet::view {

/**
 * Edits a value of a recipe. What is no value is marked while it is typed, with what is expected,
 * and does not become one: neither by Enter nor by leaving the field.
 */
class RecipeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

Q_SIGNALS:
    /** What is wrong with what is being typed; empty: nothing. */
    void typed(const QString &mistake) const;
};

} // namespace cnet::view
