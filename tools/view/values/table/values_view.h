#pragma once

#include "view/values/table/values_filter.h"

#include <QTableView>
#include <QTimer>

namespace cnet::view {

/** The table itself. What ages or fades is painted anew only where it is seen. */
class ValuesView : public QTableView
{
    Q_OBJECT

public:
    /** @param model what `shown` shows; both must outlive this object */
    ValuesView(ValuesModel &model, ValuesFilter &shown, QWidget *parent = nullptr);

    /** Rows that are selected, as they stand from top to bottom; of `shown`. */
    QList<int> selectedRows() const;

    /** Names of the values that are selected; of the current one where none is. */
    QStringList selectedNames() const;

    /** Makes a value the current one, and brings it into sight. @return false: it is not shown */
    bool reveal(const QString &name);

    /** Opens the editor for the value of the current row. */
    void editValue() { edit(currentIndex(), EditKeyPressed, nullptr); }

    /** The selected rows as they are seen, with their headings, columns divided by tabs. */
    QString selectedText() const;

    /** Ids of the columns from left to right. */
    QStringList order() const;
    /** @param ids those that are not among them come behind, as in a new table */
    void setOrder(const QStringList &ids);

    /** True while a changed value is not wholly faded. */
    bool isFading() const { return m_fading.isActive(); }

Q_SIGNALS:
    /** Somebody wants to change a value that can only be read. */
    void readOnlyTouched(const QString &name);

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setSizes();
    QString nameOf(const QModelIndex &index) const;
    void beginFading();
    void fade();
    void paintColumn(ValueColumn column);
    void keepPlace();
    void findPlace();

    ValuesModel &m_model;
    ValuesFilter &m_shown;
    QTimer m_ageing;
    QTimer m_fading;
    QString m_currentName; ///< while rows are set up anew
    QStringList m_selectedNames;
    int m_top = 0;
};

} // namespace cnet::view
