#pragma once

#include "host/statistics/statistics.h"

#include <QWidget>

#include <optional>

class QLabel;
class QProgressBar;

namespace cnet::view {

class Sparkline;

/** What a load means to people: "busy", with the percent. @param percent 0 or more */
QString loadWords(double percent);

/** How busy the line is: a bar with percent and words, and the last minutes as a small line. */
class LineLoad : public QWidget
{
    Q_OBJECT

public:
    explicit LineLoad(QWidget *parent = nullptr);

    /** Once a second. @param nowMs on the session's clock */
    void take(const Statistics &statistics, qint64 nowMs);

    /** Once a second while there is no line that is open. */
    void takeNothing();

    /** Another line: what was before says nothing about it. */
    void clear();

    QString words() const;
    const Sparkline &history() const { return *m_history; }

private:
    void describeHistory();

    QProgressBar *m_bar;
    QLabel *m_words;
    Sparkline *m_history;
    bool m_inPercent = true; ///< the history; otherwise in bytes a second
};

} // namespace cnet::view
