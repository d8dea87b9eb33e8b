#pragma once

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QStringList>
#include <QToolButton>

namespace cnet::view {

/** Says which file is shown in place of the line, and leads back to it. Hidden while none is. */
class CaptureBar : public QFrame
{
    Q_OBJECT

public:
    /** @param live leads back; must outlive this object */
    explicit CaptureBar(QAction &live, QWidget *parent = nullptr);

    /** @param path of the file @param lines names of those in it, at least one */
    void setFile(const QString &path, const QStringList &lines);

    /** What the chosen line holds. */
    void setCount(int exchanges);

    QString text() const { return m_text->text(); }
    QComboBox &lines() const { return *m_lines; }

Q_SIGNALS:
    /** Somebody chose another line. @param line index */
    void lineChosen(int line);

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeLook();

    QLabel *m_text;
    QLabel *m_lineLabel;
    QComboBox *m_lines;
    QString m_path;
    bool m_taking = false;
};

} // namespace cnet::view
