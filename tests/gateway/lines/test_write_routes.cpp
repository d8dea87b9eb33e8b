#include "gateway/lines/write_routes.h"
#include "gateway/support/written_line.h"

#include <host/time/system_clock.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** Requests go from the recorder's thread to the lines, and answers back. */
class TestWriteRoutes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void bringsARequestToItsLine();
    void refusesAnUnknownLine();
    void answersWhatNobodyCanCarryOutAnyMore();
    void isOffWithoutRules();

private:
    void ask(const WriteRequest &request) const
    {
        QMetaObject::invokeMethod(
            m_asker.get(), [this, request] { Q_EMIT m_recorder->asked(request); },
            Qt::QueuedConnection);
    }
    QStringList answers() const
    {
        QStringList texts;
        for (const WriteAnswer &answer : m_answers) {
            texts.append(textOf(answer));
        }
        return texts;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QObject> m_asker; ///< on the recorder's thread, as a sink is
    std::unique_ptr<RecorderThread> m_recorder;
    std::unique_ptr<WriteRoutes> m_routes;
    std::unique_ptr<WrittenLine> m_line;
    QVector<WriteAnswer> m_answers;
};

void TestWriteRoutes::init()
{
    m_answers.clear();
    m_directory = std::make_unique<QTemporaryDir>();
    GatewayConfig config;
    config.ledger.path = m_directory->filePath(QLatin1String("ledger"));
    config.audit.path = m_directory->filePath(QLatin1String("writes.jsonl"));
    config.lines.append(LineConfig());
    config.lines.first().writes = writeRules();
    m_recorder =
        std::make_unique<RecorderThread>(config, SystemClock::instance(), [](const QString &) {});
    m_asker = std::make_unique<QObject>();
    m_recorder->host(*m_asker);
    m_line = std::make_unique<WrittenLine>();
    m_routes = std::make_unique<WriteRoutes>(
        auditFor(config), *m_recorder, SystemClock::instance(), [](const QString &) {},
        [this](const QString &line) {
            return line == QLatin1String("press") ? m_line->writer.get() : nullptr;
        });
    m_routes->add(*m_line->writer);
    connect(
        m_recorder.get(), &RecorderThread::answering, this,
        [this](const WriteAnswer &answer) { m_answers.append(answer); }, Qt::QueuedConnection);
    QVERIFY(m_recorder->start().isNone());
    m_line->open();
}

void TestWriteRoutes::cleanup()
{
    m_routes.reset();
    m_recorder.reset();
    m_asker.reset();
    m_line.reset();
}

// The line's time is a virtual one: it is far behind the system's, and nothing is late on it.
void TestWriteRoutes::bringsARequestToItsLine()
{
    ask(requestOf("1", "speed", "12.5"));
    QTRY_VERIFY_WITH_TIMEOUT((m_line->plant.run(10), m_answers.size() == 1), 10000);
    QCOMPARE(answers(), QStringList(QLatin1String("1 taken [12.5]")));
    QCOMPARE(m_line->plant.word(10), 125);
}

void TestWriteRoutes::refusesAnUnknownLine()
{
    WriteRequest request = requestOf("1", "speed", "12.5");
    request.line = QLatin1String("oven");
    ask(request);
    QTRY_COMPARE_WITH_TIMEOUT(
        answers(), QStringList(QLatin1String("1 refused: there is no line 'oven'")), 10000);
}

// Some are with the line, some on their way to it, some come later still.
void TestWriteRoutes::answersWhatNobodyCanCarryOutAnyMore()
{
    ask(requestOf("1", "speed", "1"));
    QTRY_VERIFY_WITH_TIMEOUT(m_line->take().isEmpty() && QFile::exists(m_directory->filePath(
                                                             QLatin1String("writes.jsonl"))),
                             10000);
    ask(requestOf("2", "count", "2"));
    m_line->writer->end(QLatin1String("closed"));
    m_line->plant.session->close();
    m_routes->stop();
    ask(requestOf("3", "count", "3"));
    QCOMPARE(m_recorder->stop(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_answers.size(), 3, 10000);
    for (const WriteAnswer &answer : qAsConst(m_answers)) {
        QVERIFY2(answer.outcome == WriteAnswer::Outcome::Refused, qPrintable(textOf(answer)));
    }
    QCOMPARE(m_line->plant.word(10), 0);
    QCOMPARE(m_line->plant.word(11), 0);
}

void TestWriteRoutes::isOffWithoutRules()
{
    GatewayConfig config;
    config.lines.append(LineConfig());
    QVERIFY(!auditFor(config));
    m_routes->setAudit(auditFor(config));
    ask(requestOf("1", "speed", "1"));
    QTRY_COMPARE_WITH_TIMEOUT(
        answers(), QStringList(QLatin1String("1 refused: nothing may be written from outside")),
        10000);
}

QTEST_GUILESS_MAIN(TestWriteRoutes)
#include "test_write_routes.moc"
