#pragma once

#include <QLayout>
#include <QVector>
#include <QWidget>

class QAction;

namespace cnet::view {

/**
 * What can be done on a page, side by side, in as many rows as it takes: none of it is hidden,
 * whatever the font.
 */
class WrapBar : public QWidget
{
    Q_OBJECT

public:
    explicit WrapBar(QWidget *parent = nullptr);

    /** Adds a button for each. */
    void add(const QList<QAction *> &actions);
    /** Adds a field. */
    void add(QWidget *field);
    void addSeparator();
};

/** Places items from left to right, and in the next row what has no room. */
class WrapLayout : public QLayout
{
public:
    explicit WrapLayout(QWidget *parent);
    ~WrapLayout() override;

    void addItem(QLayoutItem *item) override { m_items.append(item); }
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem *itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem *takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect &rect) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;

private:
    enum class Moving { No, Yes };

    /** @return the height that they take */
    int place(const QRect &rect, Moving moving) const;

    QVector<QLayoutItem *> m_items;
};

} // namespace cnet::view
