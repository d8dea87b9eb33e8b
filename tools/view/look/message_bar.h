#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

namespace cnet::view {

/** What went wrong and what to do about it, over the page and out of its way; hidden while empty.
 */
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget *parent = nullptr);

    /** Takes the place of the message before. @param advice what to do; may be empty */
    void tell(const QString &text, const QString &advice = QString());
    void clear();

    QString text() const;

private:
    QLabel *m_text;
    QToolButton *m_close;
};

} // namespace cnet::view
