#pragma once

#include "view/values/table/values_model.h"

#include <QStyledItemDelegate>

namespace cnet::view {

/**
 * Shows values, with a wash behind those that have just changed, and edits them. Only Enter writes:
 * who clicks elsewhere, or into an open list, has not decided to move a machine.
 */
class ValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /** @param model what the view shows, maybe through a proxy; must outlive this object */
    explicit ValueDelegate(ValuesModel &model, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    bool eventFilter(QObject *object, QEvent *event) override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    bool handleKey(QWidget *editor, int key);
    void enter(QWidget *editor);

    ValuesModel &m_model;
};

/** Texts that a value of a tag is chosen from; empty where it is typed. */
QStringList choicesOf(const Tag &tag);

} // namespace cnet::view
