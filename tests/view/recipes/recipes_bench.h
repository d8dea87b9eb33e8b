#pragma once

#include "plc/stations/bus.h"
#include "view/recipes/question_bar.h"
#include "view/recipes/recipes_page.h"
#include "view/support/child_called.h"
#include "view/support/files.h"

#include <QAction>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>

namespace cnet::view {

using Kind = RecipeTransfer::Kind;

const QString kBracket = QLatin1String(EXAMPLES "/bracket.csv");
const QString kCover = QLatin1String(EXAMPLES "/cover.csv");

/** A page with a line to a simulated PLC, and a folder for its files. */
struct Bench
{
    Line line;
    WatchedTags tags{line};
    RecipesPage page{tags};
    QSignalSpy troubles{&page, &Page::troubled};
    QSignalSpy tolds{&page, &Page::told};
    QSignalSpy changes{&page, &Page::changed};
    QTemporaryDir folder;

    Bench()
    {
        if (!line.prepare().isEmpty()) {
            qFatal("there is no driver");
        }
    }

    /** Connects to a station of its own. @param baud 0: at once */
    bool connectTo(int baud = 0, int station = 1)
    {
        Connection connection;
        connection.address.line.baud = baud;
        connection.station = station;
        line.open(connection);
        return QTest::qWaitFor([this] { return line.isOpen(); }, 60000);
    }
    plc::Unit &unit(int station = 1) { return *line.simulator()->find(station); }

    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }
    /** A file with this content. */
    QString file(const QByteArray &content) const
    {
        put(path("r.csv"), content);
        return path("r.csv");
    }
    bool open(const QByteArray &content) { return page.openFile(file(content)); }

    QTableView &table() const { return *page.findChild<QTableView *>(); }
    QString at(int row, int column) const
    {
        return table().model()->index(row, column).data().toString();
    }
    void type(int row, const char *text) const
    {
        table().model()->setData(table().model()->index(row, RecipeModel::kValue),
                                 QLatin1String(text));
    }
    /** The state of all rows, each one once. */
    QSet<QString> states() const
    {
        QSet<QString> states;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            states.insert(at(row, RecipeModel::kState));
        }
        return states;
    }
    QAction *action(const char *text) const { return childCalled<QAction>(page, text); }
    QString trouble() const
    {
        return troubles.isEmpty() ? QString() : troubles.last().first().toString();
    }
    bool isRunning() const { return !page.findChild<QProgressBar *>()->parentWidget()->isHidden(); }
    bool run(Kind kind)
    {
        return page.startTransfer(kind) && QTest::qWaitFor([this] { return !isRunning(); }, 60000);
    }
    QPushButton *answer(const char *text) const
    {
        for (QPushButton *const button :
             page.findChild<QuestionBar *>()->findChildren<QPushButton *>()) {
            if (!button->isHidden() && // of an earlier question
                button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                return button;
            }
        }
        return nullptr;
    }
    QString question() const { return page.findChild<QuestionBar *>()->question(); }
};

} // namespace cnet::view
