#include "exchange/host_loop.h"

#include "plc/stations/exchange_text.h"

namespace exchange {

namespace {

// The driver's mark of its cyclic reads in VARIABLE::opKind.
constexpr int kCyclicRead = 4;

std::function<void(const QString &)> &callbackHandler()
{
    static std::function<void(const QString &)> handler;
    return handler;
}

void runCallbackHandler()
{
    if (callbackHandler()) {
        callbackHandler()(DriverFixture::calls().last());
    }
}

} // namespace

HostLoop::HostLoop(const char *properties)
    : m_fixture(properties)
{
    addStation(kStation);
    DriverFixture::hook() = &runCallbackHandler;
}

HostLoop::~HostLoop()
{
    setCallbackHandler({});
}

void HostLoop::start(const char *properties)
{
    m_fixture.start(properties);
    m_places.clear();
}

plc::Unit &HostLoop::addStation(int station, plc::Model model)
{
    m_set.insert_or_assign(station, plc::Memory(model));
    return m_line.bus().add(station, model);
}

plc::Unit &HostLoop::unit(int station)
{
    plc::Unit *const found = m_line.bus().find(station);
    if (found == nullptr) {
        qFatal("no station %d", station);
    }
    return *found;
}

bool HostLoop::send()
{
    if (intf_getSendFrame(m_frame) == 0) {
        ++m_counts.idle;
        m_line.wait(timing.idleMs);
        return false;
    }
    ++m_counts.frames;
    m_turn = Turn();
    m_turn.sentMs = m_line.nowMs();
    m_turn.request = sentBytes(m_frame);
    if (!m_turn.request.isEmpty()) { // the handshake has no bytes
        m_line.send(m_turn.request);
    }
    return true;
}

int HostLoop::receive()
{
    if (!m_turn.request.isEmpty()) {
        const LineAnswer answer = m_line.answer(m_frame.recvLen, m_turn.sentMs + timing.timeoutMs);
        m_counts.timeouts += answer.isComplete ? 0 : 1;
        m_turn.answer = answer.bytes;
    }
    QByteArray handedOver = m_turn.answer;
    m_turn.result = intf_dealRcvFrame(handedOver, m_turn.description);
    judge(m_turn.result);
    m_log += m_turn;
    return m_turn.result;
}

void HostLoop::judge(int result)
{
    switch (result) {
    case kAnswerGood:
        ++m_counts.answers;
        return;
    case kAnswerResend:
        ++m_counts.resends;
        break;
    case kAnswerGivenUp:
        ++m_counts.givenUp;
        break;
    default:
        ++m_counts.unexpected;
        break;
    }
    m_line.empty(timing.quietMs);
}

bool HostLoop::turn()
{
    if (!send()) {
        return false;
    }
    receive();
    return true;
}

QList<int> HostLoop::turns(int count)
{
    QList<int> results;
    for (int i = 0; i < count; ++i) {
        results += turn() ? m_turn.result : -1;
    }
    return results;
}

bool HostLoop::jobsWait()
{
    return !driver.frames.isEmpty() || !driver.pendingWrites.isEmpty() ||
           !driver.conditionReads.isEmpty() || isRequested(Recipe::Write) ||
           isRequested(Recipe::Read);
}

bool HostLoop::settle(int most)
{
    int left = most;
    do {
        while (jobsWait() && left > 0) {
            turn();
            --left;
        }
        int blocks = static_cast<int>(driver.cyclicReads.size());
        while (blocks > 0 && left > 0) {
            turn();
            --left;
            const bool over = driver.frames.isEmpty() && m_frame.var.opKind == kCyclicRead;
            blocks -= over ? 1 : 0;
        }
    } while (jobsWait() && left > 0); // a reading may make the panel write
    return left > 0;
}

QString HostLoop::logText() const
{
    QString text;
    for (const Turn &turn : m_log) {
        text += QString::fromLatin1("%1 ms > %2\n%1 ms < %3 = %4 %5\n")
                    .arg(QString::number(turn.sentMs), plc::visible(turn.request),
                         plc::visible(turn.answer), QString::number(turn.result), turn.description);
    }
    return text;
}

QStringList HostLoop::requests() const
{
    QStringList list;
    for (const Turn &turn : m_log) {
        // ENQ ... EOT check(2)
        list += QString::fromLatin1(turn.request.mid(1, turn.request.size() - 4));
    }
    return list;
}

void HostLoop::setCallbackHandler(const std::function<void(const QString &)> &handler)
{
    callbackHandler() = handler;
}

void HostLoop::forget()
{
    m_log.clear();
    m_counts = HostCounts();
    DriverFixture::calls().clear();
}

} // namespace exchange
