#pragma once

#include "host/text/finding.h"

#include <QFrame>

class QLabel;
class QTreeWidget;

namespace cnet::view {

/** What is wrong with a file, line by line, in the page; hidden while there is nothing. */
class MistakeList : public QFrame
{
    Q_OBJECT

public:
    explicit MistakeList(QWidget *parent = nullptr);

    /** @param heading "tags.csv was not opened: 3 mistakes" */
    void tell(const QString &heading, const Findings &mistakes);
    void clear();

    QString heading() const;
    /** A row for each mistake: line, column, field, what is wrong. */
    const QTreeWidget &rows() const { return *m_rows; }

private:
    void copy() const;

    QLabel *m_heading;
    QTreeWidget *m_rows;
};

} // namespace cnet::view
