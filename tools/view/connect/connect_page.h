#pragma once

#include "view/connect/line.h"
#include "view/connect/line_test.h"
#include "view/connect/link_form.h"
#include "view/look/page.h"

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace cnet::view {

/** Where one chooses what to talk to, tries it and connects. */
class ConnectPage : public Page
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit ConnectPage(Line &line, QWidget *parent = nullptr);

    QString title() const override;
    QJsonObject saved() const override;
    /** Puts it into the fields; whoever wants to connect calls connectNow(). */
    void restore(const QJsonObject &state) override;

    /** Fills in the fields and connects. */
    void connectTo(const Connection &connection);

    /** Connects to what the fields say, if they are good. */
    void connectNow();

    /** What was connected to last, the newest first. The simulator is always offered. */
    void setRecent(const QVector<Connection> &recent);

Q_SIGNALS:
    /** Somebody connects to this now. */
    void connecting(const cnet::view::Connection &connection);

private:
    QWidget *makeButtons();
    QWidget *makeRecent();
    /** By this window: it talks, or scans. */
    bool isLineInUse() const;
    void test();
    void choose(const QListWidgetItem *item);
    void showState();

    Line &m_line;
    QVector<Connection> m_recent;
    LineTest m_lineTest;
    LinkForm *m_form;
    QLabel *m_result;
    QLabel *m_state;
    QLabel *m_next; ///< what to do now
    QListWidget *m_list;
    QPushButton *m_connect;
    QPushButton *m_disconnect;
    QPushButton *m_test;
};

} // namespace cnet::view
