#include "recipes_bench.h"
#include "view/support/local_port.h"

#include "host/wire/frame_words.h"

#include <QLabel>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace cnet::view {

namespace {

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

/** Recipes on their way to a PLC and back. */
class TestRecipesTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAndVerifies()
    {
        Bench bench;
        QVERIFY(bench.connectTo());
        QVERIFY(bench.page.openFile(kCover));
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
        QVERIFY(bench.page.openFile(kBracket));
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
        const QString path = bench.file("register,address,count\nD_W,300,2\n");
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
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2,3\n"));
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
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2,3\n"));
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
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2,3\n"));
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
        QVERIFY(bench.open(longRecipe(2000)));
        QSet<QByteArray> blocks; // one of them may go out twice
        QObject::connect(bench.line.session(), &Session::requestSent, &bench.page,
                         [&blocks](const QByteArray &frame) {
                             if (isWriteRequest(frame)) {
                                 blocks.insert(frame);
                             }
                         });
        QVERIFY(bench.page.startTransfer(Kind::Write));
        QTRY_COMPARE_WITH_TIMEOUT(static_cast<int>(blocks.size()), 2, 60000);
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
        bench.line.open(connectionTo(server.serverPort()));
        QTRY_VERIFY_WITH_TIMEOUT(bench.line.isOpen(), 60000);
        QVERIFY(bench.page.openFile(kBracket));
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
        QVERIFY(bench.open(longRecipe(500)));
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
        QVERIFY(bench.open(longRecipe(1000)));
        QVERIFY(bench.page.startTransfer(Kind::Write));
        QVERIFY(!bench.page.startTransfer(Kind::Compare));
        QVERIFY(!bench.page.openFile(kBracket));
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
            QVERIFY(page.openFile(kBracket));
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
        QVERIFY(bench.open("register,address,value\nD_W,300,1,2\n"));
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
        QVERIFY(bench.page.openFile(kBracket));
        QVERIFY(bench.run(Kind::Compare));
        QVERIFY(!bench.at(0, RecipeModel::kPlc).isEmpty());
        QVERIFY(bench.connectTo());
        QVERIFY(!bench.at(0, RecipeModel::kPlc).isEmpty());
        const auto summary = [&bench] {
            QStringList texts;
            for (const QLabel *const label : bench.page.findChildren<QLabel *>()) {
                texts.append(label->text());
            }
            return texts.join(QLatin1Char('\n'));
        };
        QVERIFY(bench.run(Kind::Write));
        QVERIFY2(summary().contains(QLatin1String("written and verified")), qPrintable(summary()));
        QVERIFY(bench.connectTo(0, 2)); // of the same link
        QVERIFY(!summary().contains(QLatin1String("written and verified")));
        bench.line.open(connectionTo(1));
        QVERIFY(bench.at(0, RecipeModel::kPlc).isEmpty());
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestRecipesTransfer)
#include "test_recipes_transfer.moc"
