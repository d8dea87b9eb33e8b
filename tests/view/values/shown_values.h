#pragma once

#include "values_fixture.h"
#include "view/values/list/tag_entry.h"
#include "view/values/table/values_view.h"
#include "view/values/values_page.h"

#include "support/text.h"
#include "view/support/shown.h"

#include <QLineEdit>

namespace cnet::view {

/** The page of values in a window. */
class ShownValues
{
protected:
    bool show()
    {
        m_plant = std::make_unique<ValuesFixture>();
        m_page = std::make_unique<ValuesPage>(m_plant->tags());
        return showActive(*m_page, {1000, 500});
    }
    void close()
    {
        m_page.reset();
        m_plant.reset();
    }

    ValuesView *view() const { return m_page->findChild<ValuesView *>(); }
    TagEntry *entry() const { return m_page->findChild<TagEntry *>(); }
    QStringList names() const { return m_plant->names(); }
    void type(const char *text)
    {
        entry()->field().clear();
        QTest::keyClicks(&entry()->field(), latin(text));
        QTest::keyClick(&entry()->field(), Qt::Key_Return);
    }

    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<ValuesPage> m_page;
};

} // namespace cnet::view
