#pragma once

#include "host/text/finding.h"

#include <QVector>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QTreeWidget;

namespace cnet::view {

/** A file that could not be read: its mistakes, and each of them in its place. */
class MistakesView : public QWidget
{
    Q_OBJECT

public:
    explicit MistakesView(QWidget *parent = nullptr);

    /**
     * @param name of the file
     * @param content what it holds
     * @param mistakes in the order of the file
     */
    void showFile(const QString &name, const QByteArray &content, const QVector<Finding> &mistakes);
    void clear();

private:
    void markAll();
    void goTo(int mistake);

    QVector<Finding> m_mistakes;
    QLabel *m_title;
    QTreeWidget *m_list;
    QPlainTextEdit *m_text;
};

} // namespace cnet::view
