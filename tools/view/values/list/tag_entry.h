#pragma once

#include "view/tags/watched_tags.h"

#include <QWidget>

class QCompleter;
class QLabel;
class QLineEdit;
class QPushButton;
class QStringListModel;

namespace cnet::view {

/**
 * A line that takes "D_W:100@u16*0.1", the same with a name in front, "oil.level=D_W:100", or the
 * name of a tag, and says while one types what is wrong with it.
 */
class TagEntry : public QWidget
{
    Q_OBJECT

public:
    /** @param tags must outlive this object */
    explicit TagEntry(WatchedTags &tags, QWidget *parent = nullptr);

    /** Tags of the last file, which their names bring back. */
    void setKnown(const TagSet &known);

    QLineEdit &field() const { return *m_field; }
    /** What is said under the line; empty: nothing is wrong. */
    QString error() const;

Q_SIGNALS:
    /** Somebody wants to watch this; none of its name is watched yet. */
    void entered(const cnet::Tag &tag);
    /** Somebody typed the name of a tag that is watched. */
    void lookedFor(const QString &name);

private:
    struct Reading
    {
        std::optional<Tag> tag;
        QString found; ///< name of a tag that is watched
        QString error;
    };

    Reading read(const QString &text) const;
    std::optional<Tag> readItem(const QString &text, QString &error) const;
    bool isBegin(const QString &text) const;
    void review();
    void enter();
    void listWords();

    WatchedTags &m_tags;
    TagSet m_known;
    QLineEdit *m_field;
    QPushButton *m_add;
    QLabel *m_error;
    QStringListModel *m_words;
};

} // namespace cnet::view
