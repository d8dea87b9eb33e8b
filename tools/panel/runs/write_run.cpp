#include "panel/runs/write_run.h"

#include "panel/system/exit_code.h"
#include "panel/runs/one_off.h"
#include "panel/output/read_output.h"
#include "host/jobs/writer.h"

#include <algorithm>

namespace cnet::panel {

namespace {

QVector<Item> itemsOf(const QVector<Assignment> &assignments)
{
    QVector<Item> items;
    for (const Assignment &assignment : assignments) {
        items.append(assignment.item);
    }
    return items;
}

// The parts of a running write and what they tell one another.
class WriteSession
{
public:
    WriteSession(const DriverFunctions &driver, const LinkSettings &link,
                 const QVector<Assignment> &assignments, Messages &messages);

    int run();
    const QVector<WriteResult> &results() const { return m_results; }

private:
    void handleSettled(int number, const QString &failure);
    void readFailedOnes();
    void handleRead();
    void giveUp(const QString &reason);

    Messages &m_messages;
    OneOff m_oneOff;
    Writer m_writer;
    Reader m_reader;
    QVector<WriteResult> m_results;
    QVector<int> m_numbers;   ///< of the assignments, as the writer counts them
    QVector<int> m_readAgain; ///< results that the reader is at
};

WriteSession::WriteSession(const DriverFunctions &driver, const LinkSettings &link,
                           const QVector<Assignment> &assignments, Messages &messages)
    : m_messages(messages)
    , m_oneOff(driver, link, stationsOf(itemsOf(assignments)), messages)
    , m_writer(m_oneOff.session().driver(), m_oneOff.session().exchange(), link.blockWords)
    , m_reader(m_oneOff.session().driver(), m_oneOff.session().exchange(), link.blockWords)
{
    QObject::connect(
        &m_writer, &Writer::settled, &m_oneOff.session(),
        [this](int number, const QString &failure) { handleSettled(number, failure); });
    QObject::connect(&m_reader, &Reader::done, &m_oneOff.session(), [this] { handleRead(); });
    m_oneOff.onGiveUp([this](const QString &reason) { giveUp(reason); });
    for (const Assignment &assignment : assignments) {
        WriteResult result;
        result.assignment = assignment;
        m_results.append(result);
        m_numbers.append(m_writer.add(assignment));
    }
}

int WriteSession::run()
{
    return m_oneOff.run();
}

void WriteSession::handleSettled(int number, const QString &failure)
{
    const int index = static_cast<int>(m_numbers.indexOf(number));
    m_results[index].settled = true;
    m_results[index].failure = failure;
    if (m_writer.isIdle()) {
        readFailedOnes();
    }
}

void WriteSession::readFailedOnes()
{
    QVector<Item> items;
    for (int i = 0; i < m_results.size(); ++i) {
        if (!m_results.at(i).isGood()) {
            items.append(m_results.at(i).assignment.item);
            m_readAgain.append(i);
        }
    }
    if (items.isEmpty()) {
        m_oneOff.session().finish(kFine);
    } else {
        m_reader.start(items);
    }
}

void WriteSession::handleRead()
{
    int at = 0;
    for (const ReadResult &read : m_reader.results()) {
        m_results[m_readAgain.at(at++)].now = read;
    }
    m_oneOff.session().finish(kDeviceFailed);
}

void WriteSession::giveUp(const QString &reason)
{
    m_messages.say(QLatin1String("writing was given up: ") + reason);
    m_oneOff.session().finish(kDeviceFailed);
}

} // namespace

QString WriteResult::text() const
{
    const QString name = assignment.text();
    if (!settled) {
        return QString::fromLatin1("%1: not settled, the PLC may have taken it or not").arg(name);
    }
    if (isGood()) {
        return QString::fromLatin1("%1: written").arg(name);
    }
    const QString holds = !now || !now->isGood()
                              ? QString::fromLatin1("what it holds is not known (%1)")
                                    .arg(now ? now->failure : QLatin1String("not read again"))
                              : QString::fromLatin1("it holds %1").arg(valuesText(*now));
    return QString::fromLatin1("%1: not written (%2); %3").arg(name, failure, holds);
}

int runWrites(const DriverFunctions &driver, const LinkSettings &link,
              const QVector<Assignment> &assignments, Messages &messages,
              QVector<WriteResult> &results)
{
    WriteSession session(driver, link, assignments, messages);
    const int exitCode = session.run();
    results = session.results();
    return exitCode;
}

} // namespace cnet::panel
