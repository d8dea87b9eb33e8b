#pragma once

#include "view/shell/main_window.h"
#include "view/shell/start.h"

#include <QObject>
#include <QPointer>
#include <QVector>

namespace cnet::view {

/** All windows of the program. They share the user's list of recent files and nothing else. */
class Windows : public QObject
{
    Q_OBJECT

public:
    /** @param recent must outlive this object */
    explicit Windows(const RecentFiles &recent, QObject *parent = nullptr);
    ~Windows() override;

    /** Shows one more window, with nothing in it. */
    MainWindow &add();

    /** The first window, with what the start asks for. */
    MainWindow &begin(const Start &start);

    /** Those that are open. */
    QVector<MainWindow *> all() const;

private:
    const RecentFiles &m_recent;
    QVector<QPointer<MainWindow>> m_windows;
};

} // namespace cnet::view
