#pragma once

#include "view/connect/line.h"

#include <QToolButton>

namespace cnet::view {

/**
 * The state of the line, always to be seen: a sign, words and a colour. A click leads to where it
 * can be changed.
 */
class StateLabel : public QToolButton
{
    Q_OBJECT

public:
    /** @param line must outlive this object */
    explicit StateLabel(const Line &line, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void look();

    const Line &m_line;
};

} // namespace cnet::view
