#pragma once

#include "view/support/files.h"
#include "view/trend/trend_actions.h"
#include "view/trend/trend_page.h"
#include "view/values/values_fixture.h"

#include <QTemporaryDir>

#include <memory>

namespace cnet::view {

/// In words that the simulated press leaves alone.
constexpr const char *kDrawn = "name,register,address,type,count,scale,unit,min,max\n"
                               "speed,D_W,1000,u16,1,0.1,1/min,0,120\n"
                               "level,D_W,1001,i16,1,,mm,,\n"
                               "zones,D_W,1010,u16,3,,,,\n"
                               "lamp,M_bit,200.0,bool,1,,,,\n"
                               "alarm,D_W,1020,bit3,1,,,,\n"
                               "job,D_W,1030,string4,1,,,,\n";

/// @param text with blanks between the names
inline QStringList names(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/** The page of the trend in a window, and a folder for its files. */
class ShownTrend
{
protected:
    bool show()
    {
        m_plant = std::make_unique<ValuesFixture>();
        m_plant->tags().setTags(m_plant->read(kDrawn));
        m_page = std::make_unique<TrendPage>(m_plant->tags());
        m_troubled = std::make_unique<QSignalSpy>(m_page.get(), &Page::troubled);
        m_folder = std::make_unique<QTemporaryDir>();
        m_page->resize(1000, 700);
        m_page->show();
        return QTest::qWaitForWindowExposed(m_page.get(), 60000);
    }
    void close()
    {
        m_page.reset();
        m_plant.reset();
    }

    void open() { m_plant->open(); }
    /** Reads all of them, and then for long no more: nothing is stale on the slowest machine. */
    void openOnce() { m_plant->open(kPatienceMs); }
    void setWord(int address, quint16 value) { m_plant->setWord(address, value); }
    WatchedTags &tags() const { return m_plant->tags(); }
    TraceStore &store(const char *name)
    {
        return *m_page->traces().at(m_page->traces().indexOf(QString::fromLatin1(name))).store;
    }
    double last(const char *name)
    {
        const TraceStore &all = store(name);
        return all.sample(all.entries() - 1).value;
    }
    QString trouble() const
    {
        return m_troubled->isEmpty() ? QString() : m_troubled->last().first().toString();
    }
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    std::unique_ptr<ValuesFixture> m_plant;
    std::unique_ptr<TrendPage> m_page;
    std::unique_ptr<QSignalSpy> m_troubled;
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace cnet::view
