#include "view/shell/window_pages.h"

#include "host/tagfile/tag_file.h"

#include <QFile>
#include <QTabBar>

namespace cnet::view {

WindowPages::WindowPages(QWidget *parent)
    : QTabWidget(parent)
    , m_driverError(m_line.prepare())
    , m_tags(m_line)
    , m_connect(new ConnectPage(m_line))
    , m_values(new ValuesPage(m_tags))
    , m_trend(new TrendPage(m_tags))
{
    auto *stations = new StationsPage(m_line);
    setAccessibleName(tr("Pages"));
    tabBar()->setAccessibleName(accessibleName());
    tabBar()->setAcceptDrops(true); // tags of the values go to the trend
    tabBar()->setChangeCurrentOnDrag(true);
    add(m_connect, "connect");
    add(m_values, "values");
    add(m_trend, "trend");
    add(new FramesPage(m_line), "frames");
    add(stations, "stations");
    add(new RecipesPage(m_tags), "recipes");
    add(new SimulatorPage(m_line), "simulator");
    connect(m_values, &ValuesPage::trendWanted, this, [this](const QStringList &names) {
        m_trend->addTraces(names);
        setCurrentWidget(m_trend);
        m_trend->setFocus();
        Q_EMIT told(tr("Drawn in the trend: %1").arg(names.join(QLatin1String(", "))));
    });
    connect(stations, &StationsPage::connectWanted, m_connect, &ConnectPage::connectTo);
    connect(&m_tags, &WatchedTags::tagsChanged, this, [this] { m_isDemo = false; });
    connect(&m_line, &Line::sessionBegan, this, [this] {
        if (m_isDemo && m_line.connection().kind != Connection::Kind::Simulator) {
            leaveDemo();
        }
    });
}

WindowPages::~WindowPages()
{
    // The pages let go of the session, and then of the tags and the line, which go before them
    // otherwise.
    m_line.close();
    while (count() > 0) {
        delete widget(0);
    }
}

QVector<Page *> WindowPages::all() const
{
    QVector<Page *> pages;
    for (int i = 0; i < count(); ++i) {
        pages.append(qobject_cast<Page *>(widget(i)));
    }
    return pages;
}

QMap<QString, QJsonObject> WindowPages::saved() const
{
    QMap<QString, QJsonObject> states;
    for (auto page = m_byName.begin(); page != m_byName.end(); ++page) {
        states.insert(page.key(), page.value()->saved());
    }
    return states;
}

void WindowPages::restore(const QMap<QString, QJsonObject> &states)
{
    m_isRestoring = true;
    // In the order of the tabs: the trend finds the tags of the values.
    for (Page *page : all()) {
        page->restore(states.value(m_byName.key(page)));
    }
    m_isRestoring = false;
    m_isDemo = false;
}

void WindowPages::openDemo()
{
    m_isRestoring = true;
    QFile file(QLatin1String(":/press.csv"));
    if (file.open(QIODevice::ReadOnly)) {
        m_values->setTags(TagSet(TagFile::parse(file.readAll(), m_tags.reading()).tags()));
    }
    m_trend->addTraces({QLatin1String("press.pressure"), QLatin1String("press.temperature"),
                        QLatin1String("press.speed_actual")});
    m_connect->connectTo(Connection());
    setCurrentWidget(m_values);
    m_values->setFocus();
    m_isRestoring = false;
    m_isDemo = true;
}

// Another PLC has other values at these addresses, and their names would mislead.
void WindowPages::leaveDemo()
{
    m_values->setTags(TagSet());
    m_trend->traces().clear();
    Q_EMIT told(tr("The values of the press line are put away; it is still in the Help menu"));
}

void WindowPages::add(Page *page, const char *name)
{
    // Their letters are those of the menus and of fields, which would fight over them.
    const int at = addTab(page, page->title().remove(QLatin1Char('&')));
    setTabToolTip(at, QString::fromLatin1("Ctrl+%1").arg(at + 1));
    m_byName.insert(QLatin1String(name), page);
    connect(page, &Page::troubled, this, &WindowPages::troubled);
    connect(page, &Page::told, this, &WindowPages::told);
    connect(page, &Page::changed, this, [this] {
        if (!m_isRestoring) {
            Q_EMIT changed();
        }
    });
}

} // namespace cnet::view
