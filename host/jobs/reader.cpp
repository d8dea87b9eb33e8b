#include "host/jobs/reader.h"

#include "host/driver/job_tags.h"
#include "host/exchange/report_text.h"

namespace cnet {

namespace {

// What the callback gives for the end of a one-off reading in place of a station and a name.
const int kEndStation = -1;
const char kEndName[] = "-1";

KEY_ADDRESS keyOf(const Item &item, const Piece &piece)
{
    KEY_ADDRESS key{};
    key.stationNo = item.station;
    key.regName = item.reg.name;
    key.addrText = item.addressText(piece.offset);
    key.startAddr = item.start + piece.offset;
    key.bitFlag = item.reg.isBit() ? -1 : 0;
    key.count = piece.count;
    return key;
}

} // namespace

Reader::Reader(DriverSession &driver, Exchange &exchange, int blockWords, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_exchange(exchange)
    , m_blockWords(blockWords)
{
    connect(&exchange, &Exchange::ended, this, &Reader::handleEnded);
}

void Reader::start(const QVector<Item> &items)
{
    m_driver.setChangeHandler([this](int station, const QString &name, int address) {
        handleChange(station, name, address);
    });
    m_results.clear();
    m_tasks.clear();
    m_silentStations.clear();
    for (const Item &item : items) {
        for (const Piece &piece : piecesOf(item, m_blockWords)) {
            m_tasks.append({static_cast<int>(m_results.size()), piece});
        }
        m_results.append(
            {item, QVector<quint16>(item.count, 0), QVector<bool>(item.count, false), QString()});
    }
    m_current = -1;
    next();
}

// From within the driver, which has not ended the reading in its own lists yet: what is queued now
// would be dropped together with a reading that failed. So the signal is only noted here.
void Reader::handleChange(int station, const QString &name, int address)
{
    if (station == kEndStation && name == QLatin1String(kEndName)) {
        m_endSignal = address == 0 ? EndSignal::Read : EndSignal::Failed;
    }
}

void Reader::handleEnded(const ExchangeReport &report)
{
    if (m_current < 0 || m_current >= m_tasks.size() || !report.isFinal()) {
        return;
    }
    const bool isBit = m_results.at(m_tasks.at(m_current).item).item.reg.isBit();
    const bool isMine = report.request.opKind == (isBit ? kCyclicRead : kOneOffRead);
    if (!isMine || (!isBit && m_endSignal == EndSignal::None)) {
        return;
    }
    const bool good = isBit ? report.result == kAnswerGood : m_endSignal == EndSignal::Read;
    // A station that was silent through all attempts is asked no more: a long list would take
    // minutes to say the same again and again.
    if (!good && report.isSilence()) {
        m_silentStations.insert(report.request.stationNo);
    }
    settle(good, good ? QString() : failureText(report));
}

void Reader::settle(bool good, const QString &failure)
{
    const Task task = m_tasks.at(m_current);
    if (!good) {
        fail(task, failure);
        next();
        return;
    }
    ReadResult &result = m_results[task.item];
    const QVector<quint16> values = m_driver.values(result.item.station, result.item.reg.name,
                                                    result.item.start + task.piece.offset,
                                                    task.piece.count, result.item.reg.isBit());
    for (int i = 0; i < task.piece.count; ++i) {
        result.values[task.piece.offset + i] = values.value(i);
        result.known[task.piece.offset + i] = true;
    }
    next();
}

// One request at a time: the end of a reading is told for the one queued last only, and one that
// fails drops all that wait behind it.
void Reader::next()
{
    m_endSignal = EndSignal::None;
    for (++m_current; m_current < m_tasks.size(); ++m_current) {
        const Task task = m_tasks.at(m_current);
        if (!m_silentStations.contains(m_results.at(task.item).item.station)) {
            request(task);
            return;
        }
        fail(task, QLatin1String("no answer"));
    }
    m_driver.monitor({});
    Q_EMIT done();
}

void Reader::request(const Task &task)
{
    const Item &item = m_results.at(task.item).item;
    KEY_ADDRESS key = keyOf(item, task.piece);
    if (item.reg.isBit()) {
        m_driver.monitor({key});
    } else {
        m_driver.monitor({});
        m_driver.functions().addConditionRead(key, kOneOffRead);
    }
    m_exchange.wake();
}

void Reader::fail(const Task &task, const QString &failure)
{
    QString &reason = m_results[task.item].failure;
    if (reason.isEmpty()) {
        reason = failure;
    }
}

void Reader::giveUp(const QString &reason)
{
    for (; m_current < m_tasks.size(); ++m_current) {
        if (m_current >= 0) {
            fail(m_tasks.at(m_current), reason);
        }
    }
}

} // namespace cnet
