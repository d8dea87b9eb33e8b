#pragma once

#include "view/look/page.h"
#include "view/recipes/sheet/differences_filter.h"
#include "view/recipes/sheet/recipe_model.h"
#include "view/recipes/sheet/recipe_transfer.h"
#include "view/tags/watched_tags.h"

#include <QJsonArray>

class QAction;
class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTableView;

namespace cnet::view {

class MistakesView;
class QuestionBar;
class WrapBar;

/**
 * A recipe file beside what the PLC has: edited word by word, compared, written with verification.
 * Edits that are not saved are part of saved(), and so of a project.
 */
class RecipesPage : public Page
{
    Q_OBJECT

public:
    /** @param tags must outlive this page; their line is the one that recipes go over */
    explicit RecipesPage(WatchedTags &tags, QWidget *parent = nullptr);
    ~RecipesPage() override;

    QString title() const override;
    QJsonObject saved() const override;
    void restore(const QJsonObject &state) override;

    /**
     * Opens a file. With unsaved edits it asks what becomes of them, and returns.
     * @return false: another one is shown still, or its mistakes; troubled() said why, or a
     * question waits
     */
    bool openFile(const QString &path);

    /** Whether a file that somebody else has changed since it was read is replaced. */
    enum class Overwrite { Never, Always };

    /**
     * Saves what is shown, and goes on with that file.
     * @return false: nothing was written; troubled() said why, or a question waits
     */
    bool saveFile(const QString &path, Overwrite overwrite = Overwrite::Never);

    /** Of the file; empty: none was opened. */
    QString path() const { return m_path; }
    /** There are edits that no file has. */
    bool hasUnsavedEdits() const;

    /**
     * Reads the PLC or writes to it.
     * @return false: it cannot be done; troubled() said why
     */
    bool startTransfer(RecipeTransfer::Kind kind);
    void cancelTransfer();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void makeActions();
    QAction *makeAction(WrapBar &bar, const QString &text, const QString &tip,
                        const QKeySequence &keys, void (RecipesPage::*then)());
    void makeTable();
    void layOut(WrapBar *bar);
    void wire();

    void chooseOpen();
    void chooseSave();
    void save();
    void readAgain();
    void compare();
    void take();
    void write();
    void undo();
    void redo();
    void copy();
    void paste();
    void showDifferences();

    using Plc = QPair<QString, int>; ///< its link, and the station
    Plc plc() const;
    RecipeReading reading() const;
    bool readFile(const QString &path);
    void showSheet(const RecipeSheet &sheet);
    void sizeColumns();
    void closeFile();
    void restoreEdits(const QJsonArray &edits);
    bool isChangedOnDisk(const QString &path) const;
    void selectRow(int row);

    bool canTransfer(RecipeTransfer::Kind kind);
    bool endEditing();
    bool readdress();
    bool canWrite();
    /** Names all that the answer is for. */
    QString writeQuestion() const;
    void sessionBegan();
    void sessionEnds();
    void progress(int done, int total);
    void end(const TransferOutcome &outcome);
    void endRead(const TransferOutcome &outcome);
    void endWrite(const TransferOutcome &outcome);
    void conclude(const QString &text, const QString &advice = QString());

    void nameRows();
    void refresh();
    void updateSummary();
    void showTyped(const QString &mistake);

    WatchedTags &m_tags;
    RecipeModel m_model;
    DifferencesFilter m_rows;
    RecipeTransfer m_transfer;
    QString m_path;
    QByteArray m_onDisk;    ///< what the file held when it was read or written
    QJsonArray m_unapplied; ///< edits of a project whose file cannot be read yet
    Plc m_plcOf;            ///< which the last transfer was with
    QString m_plcAt;        ///< when
    QString m_outcome;      ///< of the last transfer, for people
    bool m_isBad = false;   ///< m_outcome tells of trouble

    QStackedWidget *m_stack;
    QWidget *m_empty;
    QTableView *m_table;
    MistakesView *m_mistakes;
    QuestionBar *m_question;
    QLabel *m_summary;
    QWidget *m_progressRow;
    QLabel *m_doing;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
    QAction *m_open = nullptr;
    QAction *m_readAgain = nullptr;
    QAction *m_save = nullptr;
    QAction *m_saveAs = nullptr;
    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QAction *m_compare = nullptr;
    QAction *m_take = nullptr;
    QAction *m_write = nullptr;
    QAction *m_onlyDifferences = nullptr;
};

} // namespace cnet::view
