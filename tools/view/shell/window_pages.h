#pragma once

#include "view/connect/connect_page.h"
#include "view/frames/frames_page.h"
#include "view/recipes/recipes_page.h"
#include "view/simulator/simulator_page.h"
#include "view/stations/stations_page.h"
#include "view/tags/watched_tags.h"
#include "view/trend/trend_page.h"
#include "view/values/values_page.h"

#include <QMap>
#include <QTabWidget>

namespace cnet::view {

/** The pages of a window, over one line and one list of tags, and what goes from one to another. */
class WindowPages : public QTabWidget
{
    Q_OBJECT

public:
    explicit WindowPages(QWidget *parent = nullptr);
    ~WindowPages() override;

    Line &line() { return m_line; }
    ConnectPage &connectPage() { return *m_connect; }
    ValuesPage &values() { return *m_values; }
    TrendPage &trend() { return *m_trend; }

    /** All pages in the order of their tabs. */
    QVector<Page *> all() const;

    /** What a project keeps of each page, by names that stay. */
    QMap<QString, QJsonObject> saved() const;
    /** @param states what is missing leaves its page as it is */
    void restore(const QMap<QString, QJsonObject> &states);

    /** The press line that is simulated, with its tags and some traces, running. */
    void openDemo();

    /** What is wrong with the driver; empty: it works. */
    QString driverError() const { return m_driverError; }

Q_SIGNALS:
    void troubled(const QString &text, const QString &advice);
    void told(const QString &text);
    /** What saved() gives is different now. */
    void changed();

private:
    void add(Page *page, const char *name);
    void leaveDemo();

    Line m_line;
    QString m_driverError; ///< of the line's driver, which is loaded before anything uses it
    WatchedTags m_tags;
    QMap<QString, Page *> m_byName;
    ConnectPage *m_connect;
    ValuesPage *m_values;
    TrendPage *m_trend;
    bool m_isRestoring = false;
    bool m_isDemo = false; ///< the tags are those of openDemo(), and no other
};

} // namespace cnet::view
