#include "view/values/values_page.h"

#include "view/values/list/group_tree.h"
#include "view/values/list/mistake_list.h"
#include "view/values/list/tag_entry.h"
#include "view/values/list/tag_list.h"
#include "view/values/table/values_view.h"

#include "host/tag/typed_item.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSet>
#include <QTimer>

#include <utility>

namespace cnet::view {

namespace {

constexpr int kMostValues = 200000;
constexpr int kTagsAtOnce = 1000; ///< of a file are watched in the turn that reads it
constexpr int kNextTurnMs = 1;    ///< with 0, events that wait would come after it

} // namespace

ValuesPage::ValuesPage(WatchedTags &tags, QWidget *parent)
    : Page(parent)
    , m_tags(tags)
    , m_model(new ValuesModel(tags, this))
    , m_shown(new ValuesFilter(*m_model, this))
    , m_list(new TagList(tags, this))
    , m_filter(new QLineEdit)
    , m_entry(new TagEntry(tags))
    , m_mistakes(new MistakeList)
    , m_groups(new GroupTree)
    , m_view(new ValuesView(*m_model, *m_shown))
    , m_count(new QLabel)
    , m_menu(new QMenu(this))
{
    makeLayout();
    makeActions();
    wire();
    m_groups->setTags(tags.tags());
    showCount();
}

// The view uses the models, which go first otherwise.
ValuesPage::~ValuesPage()
{
    m_groups->disconnect(this);
    delete m_view;
}

QString ValuesPage::title() const
{
    return tr("&Values");
}

QUndoStack &ValuesPage::undoStack() const
{
    return m_list->undoStack();
}

void ValuesPage::wire()
{
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown->setWords(text);
        showCount();
        Q_EMIT changed();
    });
    connect(m_groups, &GroupTree::groupChosen, this, [this](const QString &group) {
        m_shown->setGroup(group);
        showCount();
        Q_EMIT changed();
    });
    connect(m_entry, &TagEntry::entered, this, &ValuesPage::addTag);
    connect(m_entry, &TagEntry::lookedFor, this, [this](const QString &name) {
        if (!m_view->reveal(name)) {
            Q_EMIT told(tr("%1 is in the table, and the filter hides it").arg(name));
        } else {
            m_view->setFocus(Qt::OtherFocusReason);
        }
    });
    connect(m_view, &ValuesView::readOnlyTouched, this,
            [this](const QString &name) { Q_EMIT told(tr("%1 can only be read").arg(name)); });
    connect(&m_tags, &WatchedTags::tagsChanged, this, [this] {
        m_refused = QJsonObject();
        m_groups->setTags(m_tags.tags());
        showCount();
        Q_EMIT changed();
    });
    connect(m_shown, &QAbstractItemModel::rowsInserted, this, &ValuesPage::showCount);
    connect(m_shown, &QAbstractItemModel::rowsRemoved, this, &ValuesPage::showCount);
    const QHeaderView *const header = m_view->horizontalHeader();
    connect(header, &QHeaderView::sectionResized, this, [this, header](int column) {
        // The last one is as wide as is left, which is nobody's choice.
        if (header->visualIndex(column) < header->count() - 1) {
            Q_EMIT changed();
        }
    });
    connect(header, &QHeaderView::sectionMoved, this, &ValuesPage::changed);
    connect(header, &QHeaderView::sortIndicatorChanged, this, &ValuesPage::changed);
}

void ValuesPage::showCount()
{
    const int all = m_model->rowCount();
    const int shown = m_shown->rowCount();
    m_count->setText(shown == all ? tr("Values: %1").arg(all)
                                  : tr("Values: %1 of %2").arg(shown).arg(all));
}

void ValuesPage::setTags(const TagSet &tags)
{
    m_opened.reset();
    m_list->reset(tags);
    m_entry->setKnown(tags);
    m_mistakes->clear();
    m_refused = QJsonObject();
}

void ValuesPage::addTag(const Tag &tag)
{
    QString error;
    if (!m_list->add(tag, error)) {
        Q_EMIT troubled(error, QString());
        return;
    }
    const QString name = tagText(tag, 0);
    if (!m_view->reveal(name)) {
        Q_EMIT told(tr("%1 is in the table now, and the filter hides it").arg(name));
        return;
    }
    m_view->setFocus(Qt::OtherFocusReason); // F2 and T are for what has just come
}

// Each tag may have thousands of values, and a file of a few bytes many such tags.
bool ValuesPage::isRoomFor(const QVector<Tag> &tags)
{
    qint64 values = 0;
    for (const Tag &tag : tags) {
        values += tag.count;
    }
    if (values > kMostValues) {
        Q_EMIT troubled(tr("These tags have more values than the table takes: %1, and it takes %2")
                            .arg(values)
                            .arg(kMostValues),
                        tr("Divide the file."));
    }
    return values <= kMostValues;
}

bool ValuesPage::openFile(const QString &path)
{
    TagDocument document = m_list->document();
    const DocumentResult result = document.open(path, m_tags.reading());
    const QString name = QFileInfo(path).fileName();
    if (!result.file) {
        Q_EMIT troubled(result.error, result.advice);
        return false;
    }
    if (!result.isDone) {
        m_mistakes->tell(tr("%1 was not opened, the table is as it was. Mistakes: %2")
                             .arg(name, QString::number(result.file->mistakes().count())),
                         result.file->mistakes());
        return false;
    }
    if (!isRoomFor(result.file->tags())) {
        return false;
    }
    m_mistakes->clear();
    const TagSet tags(result.file->tags());
    m_opened = Opened{tags, document};
    if (tags.all().size() <= kTagsAtOnce) {
        watchOpened();
    } else {
        QTimer::singleShot(kNextTurnMs, this, &ValuesPage::watchOpened);
    }
    return true;
}

void ValuesPage::watchOpened()
{
    const auto opened = std::exchange(m_opened, std::nullopt);
    if (opened) { // else others came in between
        m_list->open(opened->tags, opened->document);
        m_entry->setKnown(opened->tags);
        const QString name = QFileInfo(opened->document.path()).fileName();
        Q_EMIT told(
            tr("Tags read from %1: %2").arg(name, QString::number(opened->tags.all().size())));
    }
}

bool ValuesPage::saveFile(const QString &path)
{
    const QVector<Tag> named = namedTags(m_tags.tags().all());
    const DocumentResult result = m_list->document().save(path, named, m_tags.reading());
    if (!result.isDone) {
        Q_EMIT troubled(result.error, result.advice);
        return false;
    }
    const int given = m_list->nameAll();
    const QString name = QFileInfo(path).fileName();
    const QString done = tr("Tags saved in %1: %2").arg(name, QString::number(named.size()));
    Q_EMIT told(given == 0
                    ? done
                    : tr("%1. Those without a name got one: %2").arg(done, QString::number(given)));
    return true;
}

void ValuesPage::askOpen()
{
    auto *const dialog = new QFileDialog(this, tr("Open tags"), m_list->document().path(),
                                         tr("Tag files (*.csv);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &ValuesPage::openFile);
    dialog->open();
}

void ValuesPage::askSave()
{
    auto *const dialog = new QFileDialog(this, tr("Save tags"), m_list->document().path(),
                                         tr("Tag files (*.csv);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QLatin1String("csv"));
    connect(dialog, &QFileDialog::fileSelected, this, &ValuesPage::saveFile);
    dialog->open();
}

void ValuesPage::save()
{
    const QString path = m_list->document().path();
    if (path.isEmpty()) {
        askSave();
    } else {
        saveFile(path);
    }
}

void ValuesPage::removeSelected()
{
    QSet<int> tags;
    const QList<int> rows = m_view->selectedRows();
    for (const int row : rows) {
        tags.insert(m_model->row(m_shown->mapToSource(m_shown->index(row, 0)).row()).tag);
    }
    m_list->remove(QVector<int>(tags.cbegin(), tags.cend()));
}

void ValuesPage::copySelected()
{
    QApplication::clipboard()->setText(m_view->selectedText());
}

void ValuesPage::showTrend()
{
    const QStringList names = m_view->selectedNames();
    if (!names.isEmpty()) {
        Q_EMIT trendWanted(names);
    }
}

} // namespace cnet::view
