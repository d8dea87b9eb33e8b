#pragma once

#include <QFrame>

#include <functional>

class QHBoxLayout;
class QLabel;

namespace cnet::view {

/** A question over a page that waits for its answer and stops nothing else; hidden while none is
 * asked. Esc takes it away. */
class QuestionBar : public QFrame
{
    Q_OBJECT

public:
    explicit QuestionBar(QWidget *parent = nullptr);

    struct Answer
    {
        QString text; ///< of its button, with a mnemonic
        std::function<void()> then;
    };

    /** Takes the place of the question before. @param answers the safest one first */
    void ask(const QString &question, const QVector<Answer> &answers);
    void clear();

    /** Empty: none is asked. */
    QString question() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *m_question;
    QHBoxLayout *m_row;
    QList<QWidget *> m_buttons;
};

} // namespace cnet::view
