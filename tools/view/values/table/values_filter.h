#pragma once

#include "view/values/table/values_model.h"

#include <QSortFilterProxyModel>
#include <QStringList>

namespace cnet::view {

/** The rows of the table that somebody wants to see, in the order wanted. */
class ValuesFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /** @param model must outlive this object */
    explicit ValuesFilter(ValuesModel &model, QObject *parent = nullptr);

    /** Shows rows that have all of these words in their name, group, description or quality; upper
     * and lower case are the same. @param words separated by blanks; empty: all rows */
    void setWords(const QString &words);
    QString words() const { return m_words.join(QLatin1Char(' ')); }

    /** Shows rows of a group and the groups in it. @param group empty: of all */
    void setGroup(const QString &group);
    const QString &group() const { return m_group; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    int compareNames(const ValueRow &left, const ValueRow &right) const;

    ValuesModel &m_model;
    QStringList m_words; ///< in lower case
    QString m_group;
    QHash<int, QString> m_qualities; ///< their words in lower case
};

} // namespace cnet::view
