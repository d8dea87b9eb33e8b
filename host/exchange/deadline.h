#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace cnet {

/**
 * A single-shot timer for what hardly ever happens: it is set and called off again with every
 * request. That costs no more than noting the time; the timer behind it runs on, and looks for
 * itself what is due when it strikes. To be used on its own thread.
 */
class Deadline : public QObject
{
    Q_OBJECT

public:
    explicit Deadline(QObject *parent = nullptr);

    /** @param ms milliseconds from now, 0 or more; an earlier deadline is forgotten */
    void set(int ms);

    /** passed() does not follow any more; without effect where no deadline is set. */
    void callOff() { m_set = false; }

Q_SIGNALS:
    /** Once for each deadline that was neither called off nor set anew. */
    void passed();

private:
    void look();

    QElapsedTimer m_clock;
    QTimer m_timer;
    bool m_set = false;
    qint64 m_dueMs = 0;     ///< when the deadline passes
    qint64 m_strikesMs = 0; ///< when the timer strikes, if it runs
};

} // namespace cnet
