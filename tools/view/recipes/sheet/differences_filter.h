#pragma once

#include "view/recipes/sheet/recipe_model.h"

#include <QSortFilterProxyModel>

namespace cnet::view {

/** All rows of a recipe, or those that the PLC is not known to have. */
class DifferencesFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit DifferencesFilter(RecipeModel &model, QObject *parent = nullptr)
        : QSortFilterProxyModel(parent)
        , m_model(model)
    {
        setSourceModel(&model);
    }

    enum class Shown { All, Differences };
    void setShown(Shown shown)
    {
        m_shown = shown;
        invalidateFilter();
    }

protected:
    // Before anything was compared there is nothing to leave out.
    bool filterAcceptsRow(int row, const QModelIndex & /*parent*/) const override
    {
        return m_shown == Shown::All || !m_model.isCompared() ||
               m_model.index(row, 0).data(RecipeModel::kDifferentRole).toBool();
    }

private:
    RecipeModel &m_model;
    Shown m_shown = Shown::All;
};

} // namespace cnet::view
