#pragma once

#include "view/look/colours.h"

#include <QFrame>

#include <QVector>

#include <functional>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace cnet::view {

/** What went wrong and what to do about it, over the page and out of its way; hidden while empty.
 */
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget *parent = nullptr);

    /**
     * Takes the place of the message before; a question waits below it for its answer.
     * @param advice what to do; may be empty
     */
    void tell(const QString &text, const QString &advice = QString());
    void clear();

    /** One of the answers to a question: a button, which also takes the message away. */
    struct Answer
    {
        QString text; ///< with a mnemonic
        std::function<void()> action;
    };
    /** Asks without being in the way of anything. Closing the message is no answer. */
    void ask(const QString &text, const QVector<Answer> &answers);

    QString text() const;
    /** Of the question that is asked. */
    const QVector<QPushButton *> &buttons() const { return m_buttons; }

private:
    void show(Tone tone);

    QHBoxLayout *m_row;
    QVector<QPushButton *> m_buttons;
    QString m_said;
    QString m_asked;
    QLabel *m_text;
    QToolButton *m_close;
};

} // namespace cnet::view
