#pragma once

#include "view/look/page.h"
#include "view/tags/watched_tags.h"
#include "view/values/list/tag_document.h"

#include <QStringList>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QUndoStack;

namespace cnet::view {

class GroupTree;
class MistakeList;
class TagEntry;
class TagList;
class ValuesFilter;
class ValuesModel;
class ValuesView;

/** The values that are watched as a table, to be looked at, written, and put together. */
class ValuesPage : public Page
{
    Q_OBJECT

public:
    /** @param tags must outlive this object */
    explicit ValuesPage(WatchedTags &tags, QWidget *parent = nullptr);
    ~ValuesPage() override;

    QString title() const override;
    QJsonObject saved() const override;
    void restore(const QJsonObject &state) override;

    /** Watches these instead; that cannot be undone. @param tags whose addresses were checked */
    void setTags(const TagSet &tags);

    /**
     * Watches the tags of a file, many of them in the next turn of the event loop. One with
     * mistakes changes nothing, and they are listed.
     * @return false: it was not opened
     */
    bool openFile(const QString &path);

    /** Writes the tags to a file; those without a name get one. @return false: see troubled() */
    bool saveFile(const QString &path);

    /** What is done and undone here. */
    QUndoStack &undoStack() const;

Q_SIGNALS:
    /** Somebody wants to see these as traces. @param names as in the table, one or more */
    void trendWanted(const QStringList &names);

private:
    void makeLayout();
    void makeActions();
    QAction *addTo(QMenu *menu, const QString &text, const QKeySequence &keys,
                   void (ValuesPage::*what)());
    void wire();
    void askOpen();
    void askSave();
    void save();
    void removeSelected();
    void copySelected();
    void showTrend();
    void editCurrent();
    void resetExtremes();
    void sortAsListed();
    void findFilter();
    void findEntry();
    void watchOpened();
    bool isRoomFor(const QVector<Tag> &tags);
    void addTag(const Tag &tag);
    void showCount();
    bool restoreTags(const QJsonObject &state);
    void refuse(const QJsonObject &state);
    void restoreLook(const QJsonObject &state);

    /** Tags of a file that was read. */
    struct Opened
    {
        TagSet tags;
        TagDocument document;
    };

    WatchedTags &m_tags;
    std::optional<Opened> m_opened; ///< until they are watched
    QJsonObject m_refused;          ///< tags of a project that cannot be used; it keeps them
    ValuesModel *m_model;
    ValuesFilter *m_shown;
    TagList *m_list;
    QLineEdit *m_filter;
    TagEntry *m_entry;
    MistakeList *m_mistakes;
    GroupTree *m_groups;
    ValuesView *m_view;
    QLabel *m_count;
    QMenu *m_menu;
};

} // namespace cnet::view
