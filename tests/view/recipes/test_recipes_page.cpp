#include "plc/stations/bus.h"
#include "support/full_disk.h"
#include "view/recipes/question_bar.h"
#include "view/recipes/recipes_page.h"
#include "view/support/unnamed_fields.h"

#include "host/wire/frame_words.h"

#include <QAction>
#include <QClipboard>
#include <QJsonArray>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#include <functional>

namespace cnet::view {

namespace {

using Kind = RecipeTransfer::Kind;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

/** A machine whose program does this before each request. */
class Program : public plc::Scenario
{
public:
    explicit Program(std::function<void(plc::Memory &)> step)
        : m_step(std::move(step))
    {}
    void advance(plc::Memory &memory, qint64 /*nowMs*/) override { m_step(memory); }

private:
    std::function<void(plc::Memory &)> m_step;
};

QByteArray longRecipe(int words)
{
    QByteArray content = "register,address,count,value\n";
    for (int i = 0; i < words; i += 10) {
        content += "D_W," + QByteArray::number(1000 + i) + ",10,1,2,3,4,5,6,7,8,9,10\n";
    }
    return content;
}

} // namespace

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
    QString file(const char *name, const QByteArray &content) const
    {
        put(path(name), content);
        return path(name);
    }

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
    QAction *action(const char *text) const
    {
        for (QAction *const action : page.actions()) {
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                return action;
            }
        }
        return nullptr;
    }
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
            if (!button->isHidden() &&
                button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                return button;
            }
        }
        return nullptr;
    }
    QString question() const { return page.findChild<QuestionBar *>()->question(); }
};

class TestRecipesPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyItSaysWhatToDo()
    {
        Bench bench;
        QString all;
        for (const QLabel *label : bench.page.findChildren<QLabel *>()) {
            all += label->text();
        }
        QVERIFY(all.contains(QLatin1String("No recipe is open.")));
        QVERIFY(!bench.page.startTransfer(Kind::Compare));
        QCOMPARE(bench.trouble(), QLatin1String("No recipe is open."));
        for (const char *name : {"Save", "Compare with PLC", "Write to PLC", "Undo"}) {
            QVERIFY2(!bench.action(name)->isEnabled(), name);
        }
        QVERIFY(!bench.page.saveFile(bench.path("new.csv")));
    }

    void theKeyboardAndScreenReadersFindEverything()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        int count = 0;
        QCOMPARE(unnamedFields(bench.page, count), QStringList());
        QVERIFY(count >= 3);
        QSet<QString> keys;
        for (const QAction *action : bench.page.actions()) {
            QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
            keys.insert(action->shortcut().toString());
        }
        QCOMPARE(keys.size(), bench.page.actions().size());
    }

    void writesAndVerifies()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/cover.csv")));
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.tolds.last().first().toString(),
                 QLatin1String("11 words were written and verified."));
        QCOMPARE(bench.states(), QSet<QString>{QLatin1String("verified")});
        QCOMPARE(bench.unit().station.memory().word('D', 201).value_or(0),
                 static_cast<quint16>(180));
        QVERIFY(bench.troubles.isEmpty());
    }

    void comparesSideBySide()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(bench.run(Kind::Write));
        bench.type(1, "301");
        bench.type(10, "0x0101");
        QVERIFY(bench.run(Kind::Compare));
        QCOMPARE(bench.tolds.last().first().toString(),
                 QLatin1String("2 words differ from the PLC."));
        QCOMPARE(bench.at(1, RecipeModel::kPlc), QLatin1String("300"));
        QCOMPARE(bench.at(10, RecipeModel::kPlc), QLatin1String("0x0100"));
        QCOMPARE(bench.at(1, RecipeModel::kState), QLatin1String("differs"));
        bench.action("Only differences")->trigger();
        QCOMPARE(bench.table().model()->rowCount(), 2);
        QCOMPARE(bench.at(1, RecipeModel::kAddress), QLatin1String("1/D_W:150"));
    }

    void takesFromThePlc()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        bench.unit().station.memory().setWord('D', 300, 77);
        bench.unit().station.memory().setWord('D', 301, 0xFFFF);
        const QString path = bench.file("r.csv", "register,address,count\nD_W,300,2\n");
        QVERIFY(bench.page.openFile(path));
        QVERIFY(!bench.page.startTransfer(Kind::Write));
        QVERIFY2(bench.trouble().contains(QLatin1String("1/D_W:300 has no value")),
                 qPrintable(bench.trouble()));
        QVERIFY(bench.run(Kind::Take));
        QCOMPARE(bench.tolds.last().first().toString(),
                 QLatin1String("2 values were taken from the PLC."));
        QVERIFY(bench.page.hasUnsavedEdits());
        QVERIFY(bench.page.saveFile(path));
        QCOMPARE(bytesOf(path), QByteArray("register,address,count,value\nD_W,300,2,77,65535\n"));
        bench.action("Undo")->trigger();
        QCOMPARE(bench.at(0, RecipeModel::kValue), QString());
        QVERIFY(bench.page.hasUnsavedEdits());
    }

    void marksWhatThePlcDoesNotKeep()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        bench.unit().scenario =
            std::make_shared<Program>([](plc::Memory &memory) { memory.setWord('D', 301, 5); });
        QVERIFY(
            bench.page.openFile(bench.file("r.csv", "register,address,value\nD_W,300,1,2,3\n")));
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.trouble(), QLatin1String("Written, but 1 words are not what was written."));
        QCOMPARE(bench.at(0, RecipeModel::kState), QLatin1String("verified"));
        QVERIFY(bench.at(1, RecipeModel::kState).startsWith(QLatin1String("mismatch: ")));
        QCOMPARE(bench.at(1, RecipeModel::kPlc), QLatin1String("5"));
        QVERIFY(!bench.table()
                     .model()
                     ->index(1, RecipeModel::kState)
                     .data(Qt::DecorationRole)
                     .isNull());
    }

    void tellsWhatWasRefused()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        plc::Fault fault = plc::usualFault(plc::FaultKind::Refuse);
        bench.unit().faults.add(fault);
        QVERIFY(
            bench.page.openFile(bench.file("r.csv", "register,address,value\nD_W,300,1,2,3\n")));
        QVERIFY(bench.run(Kind::Write));
        QVERIFY2(bench.trouble().contains(QLatin1String("not written as a whole")) &&
                     bench.trouble().contains(QLatin1String("refused")),
                 qPrintable(bench.trouble()));
        QVERIFY(bench.at(0, RecipeModel::kState).startsWith(QLatin1String("not confirmed: ")));
        QVERIFY(bench.run(Kind::Take));
        QVERIFY2(bench.trouble().startsWith(QLatin1String("0 of 3 words were read: refused")),
                 qPrintable(bench.trouble()));
        QVERIFY(!bench.page.hasUnsavedEdits());
        bench.unit().faults.clear();
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.states(), QSet<QString>{QLatin1String("verified")});
    }

    // Once the refusal is over what the PLC holds is read all the same.
    void readsBackWhatWasNotWritten()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        plc::Fault fault = plc::usualFault(plc::FaultKind::Refuse);
        bool isFaulty = false;
        bench.unit().station.memory().setWord('D', 301, 2);
        QVERIFY(
            bench.page.openFile(bench.file("r.csv", "register,address,value\nD_W,300,1,2,3\n")));
        QObject::connect(bench.line.session(), &Session::requestSent, &bench.page,
                         [&](const QByteArray &frame) {
                             // Of a write only; the read back is to succeed.
                             bench.unit().faults.clear();
                             if (frame.toLower().contains("wsb")) {
                                 isFaulty = true;
                                 bench.unit().faults.add(fault);
                             }
                         });
        QVERIFY(bench.run(Kind::Write));
        QVERIFY(isFaulty);
        QVERIFY(bench.at(0, RecipeModel::kState).startsWith(QLatin1String("not written: ")));
        QCOMPARE(bench.at(0, RecipeModel::kPlc), QLatin1String("0"));
        QCOMPARE(bench.at(1, RecipeModel::kState), QLatin1String("verified"));
    }

    void aSessionThatEndsLosesNothing()
    {
        Bench bench;
        QVERIFY(bench.connectTo(9600));
        QVERIFY(bench.page.openFile(bench.file("r.csv", longRecipe(2000))));
        int blocks = 0;
        QObject::connect(bench.line.session(), &Session::requestSent, &bench.page,
                         [&blocks](const QByteArray &frame) { blocks += isWriteRequest(frame); });
        QVERIFY(bench.page.startTransfer(Kind::Write));
        QTRY_COMPARE_WITH_TIMEOUT(blocks, 2, 60000);
        const int taken = bench.page.findChild<QProgressBar *>()->value();
        QVERIFY(taken > 0);
        bench.line.close();
        QVERIFY(!bench.isRunning());
        QVERIFY2(bench.trouble().contains(QLatin1String("the connection was ended")),
                 qPrintable(bench.trouble()));
        QVERIFY(bench.at(0, RecipeModel::kState)
                    .startsWith(QLatin1String("written, not read back: the connection")));
        QVERIFY(bench.at(taken, RecipeModel::kState).startsWith(QLatin1String("not confirmed: ")));
        QVERIFY(bench.at(2 * taken, RecipeModel::kState).startsWith(QLatin1String("not sent: ")));
        QVERIFY(bench.at(1999, RecipeModel::kState).startsWith(QLatin1String("not sent: ")));
        QVERIFY(!bench.page.startTransfer(Kind::Compare));
        QVERIFY2(bench.trouble().contains(QLatin1String("not connected")),
                 qPrintable(bench.trouble()));
        QVERIFY(bench.connectTo());
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.states(), QSet<QString>{QLatin1String("verified")});
    }

    void aLineThatBreaksLosesNothing()
    {
        Bench bench;
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
            QTcpSocket *const socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, &server, [&server, socket] {
                server.close(); // it does not come back
                socket->abort();
            });
        });
        Connection connection;
        connection.kind = Connection::Kind::Tcp;
        connection.address.kind = LinkAddress::Kind::Tcp;
        connection.address.host = QLatin1String("127.0.0.1");
        connection.address.port = server.serverPort();
        bench.line.open(connection);
        QTRY_VERIFY_WITH_TIMEOUT(bench.line.isOpen(), 60000);
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(bench.run(Kind::Write));
        QVERIFY2(bench.trouble().contains(QLatin1String("0 of 11 words are in the PLC")),
                 qPrintable(bench.trouble()));
        // It broke at the sign of life.
        QVERIFY(bench.at(0, RecipeModel::kState).startsWith(QLatin1String("not sent: ")));
        QVERIFY(!bench.page.startTransfer(Kind::Write));
        QVERIFY2(bench.trouble().contains(QLatin1String("lost: ")), qPrintable(bench.trouble()));
    }

    void aReadingEndsWithItsSession()
    {
        Bench bench;
        QVERIFY(bench.connectTo(9600));
        QVERIFY(bench.page.openFile(bench.file("r.csv", longRecipe(500))));
        QVERIFY(bench.page.startTransfer(Kind::Take));
        bench.line.close();
        QVERIFY(!bench.isRunning());
        QVERIFY(bench.trouble().startsWith(QLatin1String("0 of 500 words were read: ")));
        QVERIFY(!bench.page.hasUnsavedEdits());
    }

    void isCancelled()
    {
        Bench bench;
        QVERIFY(bench.connectTo(9600));
        QVERIFY(bench.page.openFile(bench.file("r.csv", longRecipe(1000))));
        QVERIFY(bench.page.startTransfer(Kind::Write));
        QVERIFY(!bench.page.startTransfer(Kind::Compare));
        QVERIFY(!bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(!bench.page.saveFile(bench.path("r.csv")));
        bench.type(0, "9"); // locked
        const auto *bar = bench.page.findChild<QProgressBar *>();
        QTRY_VERIFY_WITH_TIMEOUT(bar->value() > 0, 60000);
        bar->parentWidget()->findChild<QPushButton *>()->click();
        QTRY_VERIFY_WITH_TIMEOUT(!bench.isRunning(), 60000);
        QVERIFY2(bench.trouble().contains(QLatin1String("cancelled")), qPrintable(bench.trouble()));
        QVERIFY(bench.at(0, RecipeModel::kState).startsWith(QLatin1String("written, not read")));
        QVERIFY(bench.at(999, RecipeModel::kState).startsWith(QLatin1String("not sent")));
        QVERIFY(!bench.page.hasUnsavedEdits());
        bench.type(0, "9");
        QVERIFY(bench.page.hasUnsavedEdits());
    }

    void aPageMayGoWhileItWrites()
    {
        Line line;
        QCOMPARE(line.prepare(), QString());
        WatchedTags tags(line);
        Connection connection;
        connection.address.line.baud = 9600;
        line.open(connection);
        QTRY_VERIFY_WITH_TIMEOUT(line.isOpen(), 60000);
        {
            RecipesPage page(tags);
            QVERIFY(page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
            QVERIFY(page.startTransfer(Kind::Write));
        }
        ReadJob *const job = line.session()->read({});
        QSignalSpy finished(job, &Job::finished);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    }

    void anotherStationTakesWhatNamesNone()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(bench.file("r.csv", "register,address,value\nD_W,300,1,2\n")));
        bench.type(0, "8");
        QVERIFY(bench.connectTo(0, 3));
        QCOMPARE(bench.at(1, RecipeModel::kAddress), QLatin1String("3/D_W:301"));
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("8"));
        QVERIFY(bench.run(Kind::Write));
        QCOMPARE(bench.unit(3).station.memory().word('D', 300).value_or(0),
                 static_cast<quint16>(8));
    }

    void whatAnotherPlcHadIsForgotten()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(bench.run(Kind::Compare));
        QVERIFY(!bench.at(0, RecipeModel::kPlc).isEmpty());
        QVERIFY(bench.connectTo());
        QVERIFY(!bench.at(0, RecipeModel::kPlc).isEmpty());
        Connection other;
        other.kind = Connection::Kind::Tcp;
        other.address.kind = LinkAddress::Kind::Tcp;
        other.address.host = QLatin1String("127.0.0.1");
        other.address.port = 1;
        bench.line.open(other);
        QVERIFY(bench.at(0, RecipeModel::kPlc).isEmpty());
    }

    void showsMistakesInTheirPlaces()
    {
        Bench bench;
        const QString path =
            bench.file("r.csv", "register,address,value\nD_W,300,70000\nD_W,x,2\n");
        QVERIFY(!bench.page.openFile(path));
        QVERIFY2(bench.trouble().contains(QLatin1String("has mistakes: 2:9: ")),
                 qPrintable(bench.trouble()));
        const auto *list = bench.page.findChild<QTreeWidget *>();
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->topLevelItem(1)->text(0), QLatin1String("3"));
        QCOMPARE(list->topLevelItem(1)->text(1), QLatin1String("5"));
        auto *text = bench.page.findChild<QPlainTextEdit *>();
        QCOMPARE(text->textCursor().selectedText(), QLatin1String("70000"));
        list->topLevelItem(1)->treeWidget()->setCurrentItem(list->topLevelItem(1));
        QCOMPARE(text->textCursor().selectedText(), QLatin1String("x"));
        QVERIFY(!bench.page.startTransfer(Kind::Write));
        put(path, "register,address,value\nD_W,300,7\n");
        bench.action("Read again")->trigger();
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("7"));
    }

    void aFileThatCannotBeReadChangesNothing()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(!bench.page.openFile(bench.path("none.csv")));
        QVERIFY(!bench.page.openFile(bench.folder.path()));
        QCOMPARE(bench.troubles.count(), 2);
        QCOMPARE(bench.page.path(), QLatin1String(EXAMPLES "/bracket.csv"));
        QCOMPARE(bench.table().model()->rowCount(), 11);
    }

    void asksBeforeEditsAreLost()
    {
        Bench bench;
        const QString path = bench.file("r.csv", "register,address,value\nD_W,300,1\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        QVERIFY(!bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        QVERIFY(bench.question().contains(path));
        QVERIFY(bench.connectTo(9600));
        QVERIFY(bench.page.startTransfer(Kind::Compare));
        bench.answer("Open without saving")->click(); // not now
        QVERIFY(bench.trouble().contains(QLatin1String("a transfer is running")));
        QCOMPARE(bench.page.path(), path);
        bench.line.close();
        QVERIFY(!bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        bench.answer("Keep editing")->click();
        QVERIFY(bench.question().isEmpty());
        QCOMPARE(bench.page.path(), path);
        QVERIFY(!bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        bench.answer("Save, then open")->click();
        QCOMPARE(bench.page.path(), QLatin1String(EXAMPLES "/bracket.csv"));
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "3");
        QVERIFY(!bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        bench.answer("Open without saving")->click();
        QCOMPARE(bench.page.path(), QLatin1String(EXAMPLES "/bracket.csv"));
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
    }

    void asksBeforeOthersLoseTheirWork()
    {
        Bench bench;
        const QString path = bench.file("r.csv", "register,address,value\nD_W,300,1\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        put(path, "register,address,value\nD_W,300,99\n");
        QVERIFY(!bench.page.saveFile(path));
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,99\n"));
        bench.answer("Replace it")->click();
        QCOMPARE(bytesOf(path), QByteArray("register,address,value\nD_W,300,2\n"));
        QVERIFY(!bench.page.hasUnsavedEdits());
        bench.type(0, "4");
        QVERIFY(bench.page.saveFile(path)); // its own change is no question
    }

    void aFullDiskLosesNothing()
    {
        Bench bench;
        const QByteArray before = "register,address,value\nD_W,300,1\n";
        const QString path = bench.file("r.csv", before);
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        {
            const FullDisk full(10);
            QVERIFY(!bench.page.saveFile(path));
        }
        QVERIFY(bench.trouble().startsWith(QLatin1String("Cannot write ")));
        QCOMPARE(bytesOf(path), before);
        QVERIFY(bench.page.hasUnsavedEdits());
        QVERIFY(bench.page.saveFile(path));
        QVERIFY(!bench.page.hasUnsavedEdits());
    }

    void halfARowIsNotSaved()
    {
        Bench bench;
        const QString path = bench.file("r.csv", "register,address,count,value\nD_W,300,2,\n");
        QVERIFY(bench.page.openFile(path));
        bench.type(0, "2");
        QVERIFY(!bench.page.saveFile(path));
        QVERIFY2(bench.trouble().contains(QLatin1String("1/D_W:300")), qPrintable(bench.trouble()));
        bench.type(1, "3");
        QVERIFY(bench.page.saveFile(path));
        QCOMPARE(bytesOf(path), QByteArray("register,address,count,value\nD_W,300,2,2,3\n"));
    }

    void aProjectKeepsEditsToo()
    {
        Bench bench;
        const QString path = bench.file("r.csv", "register,address,count,value\nD_W,300,2,1,2\n");
        QVERIFY(bench.page.openFile(path));
        bench.action("Only differences")->trigger();
        bench.changes.clear();
        bench.type(1, "0xFFFF");
        QCOMPARE(bench.changes.count(), 1);
        const QJsonObject state = bench.page.saved();
        Bench other;
        other.page.restore(state);
        QCOMPARE(other.page.path(), path);
        QVERIFY(other.page.hasUnsavedEdits());
        QCOMPARE(other.at(1, RecipeModel::kValue), QLatin1String("65535"));
        QVERIFY(other.action("Only differences")->isChecked());
        QCOMPARE(other.page.saved(), state);
        other.action("Undo")->trigger();
        QVERIFY(!other.page.hasUnsavedEdits());
        put(path, "register,address,count,value\nD_W,400,1,1\n");
        Bench third;
        third.page.restore(state);
        QVERIFY2(third.trouble().contains(QLatin1String("do not fit")),
                 qPrintable(third.trouble()));
        QVERIFY(!third.page.hasUnsavedEdits());
    }

    void aProjectGoesOnNamingAFileThatIsAway()
    {
        Bench bench;
        const QString path = bench.path("later.csv");
        const QJsonObject state{{QLatin1String("file"), path},
                                {QLatin1String("onlyDifferences"), false}};
        bench.page.restore(state);
        QCOMPARE(bench.troubles.count(), 1);
        QCOMPARE(bench.page.saved(), state);
        put(path, "register,address,value\nD_W,300,1\n");
        bench.action("Read again")->trigger();
        QCOMPARE(bench.at(0, RecipeModel::kValue), QLatin1String("1"));
    }

    void restoresFromRubbish()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        const QJsonObject before = bench.page.saved();
        bench.page.restore({});
        bench.page.restore({{QLatin1String("file"), 7},
                            {QLatin1String("onlyDifferences"), QLatin1String("yes")},
                            {QLatin1String("edits"), QLatin1String("x")}});
        QCOMPARE(bench.page.saved(), before);
        QJsonObject state = before;
        state.insert(QLatin1String("edits"),
                     QJsonArray{7, QJsonObject(),
                                QJsonObject{{QLatin1String("address"), QLatin1String("1/D_W:201")},
                                            {QLatin1String("value"), 65536}},
                                QJsonObject{{QLatin1String("address"), QLatin1String("1/D_W:202")},
                                            {QLatin1String("value"), 5}}});
        bench.page.restore(state);
        QCOMPARE(bench.at(1, RecipeModel::kValue), QLatin1String("300"));
        QCOMPARE(bench.at(2, RecipeModel::kValue), QLatin1String("5"));
    }

    void copiesAndPastes()
    {
        Bench bench;
        QVERIFY(bench.page.openFile(QLatin1String(EXAMPLES "/bracket.csv")));
        const auto trigger = [&](int action) { bench.table().actions().at(action)->trigger(); };
        bench.table().setCurrentIndex(bench.table().model()->index(1, RecipeModel::kValue));
        QGuiApplication::clipboard()->setText(QLatin1String("11\t0x12\n13\n"));
        trigger(1);
        QCOMPARE(bench.at(1, RecipeModel::kValue), QLatin1String("11"));
        QCOMPARE(bench.at(2, RecipeModel::kValue), QLatin1String("18"));
        QCOMPARE(bench.at(3, RecipeModel::kValue), QLatin1String("13"));
        bench.table().selectionModel()->select(
            QItemSelection(bench.table().model()->index(1, RecipeModel::kAddress),
                           bench.table().model()->index(2, RecipeModel::kValue)),
            QItemSelectionModel::ClearAndSelect);
        trigger(0);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QLatin1String("1/D_W:201\tspeed\t11\n1/D_W:202\tpressure\t18"));
        QGuiApplication::clipboard()->setText(QLatin1String("fast"));
        trigger(1);
        QVERIFY(bench.trouble().contains(QLatin1String("'fast'")));
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipesPage)
#include "test_recipes_page.moc"
