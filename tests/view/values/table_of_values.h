#pragma once

#include "values_fixture.h"
#include "view/values/table/values_model.h"

#include "support/text.h"

#include <QAbstractItemModelTester>

namespace cnet::view {

inline QString shown(const QAbstractItemModel &model, int row, ValueColumn column)
{
    return model.index(row, static_cast<int>(column)).data().toString();
}

/** The tags of the fixture in a table. */
class TableOfValues
{
protected:
    void begin()
    {
        m_plant = std::make_unique<ValuesFixture>();
        m_plant->tags().setTags(m_plant->read(kTags));
        m_model = std::make_unique<ValuesModel>(m_plant->tags());
        m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
    }
    void end()
    {
        m_tester.reset();
        m_model.reset();
        m_plant.reset();
    }

    void openAndRead(int intervalMs = 1, int timeoutMs = 0)
    {
        m_plant->open(intervalMs, timeoutMs);
        QTRY_VERIFY_WITH_TIMEOUT(m_plant->isRead(), kPatienceMs);
    }
    QModelIndex cell(int row, ValueColumn column) const
    {
        return m_model->index(row, static_cast<int>(column));
    }
    QString shown(int row, ValueColumn column) const { return view::shown(*m_model, row, column); }
    bool write(int row, const char *text)
    {
        return m_model->setData(cell(row, ValueColumn::Value), latin(text), Qt::EditRole);
    }
    WriteStage stage(int row) const { return m_model->row(row).write.stage; }

    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<ValuesModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

} // namespace cnet::view
