#include "gateway/delivery/recorder_thread.h"

#include <openssl/crypto.h>

namespace cnet::gateway {

namespace {

// While the disk is full: some hours of a busy line.
constexpr qint64 kMostInMemory = 64LL * 1024 * 1024;

} // namespace

RecorderThread::RecorderThread(const GatewayConfig &config, Clock &clock, const Say &say)
    : m_config(config)
    , m_clock(clock)
    , m_say(say)
    , m_inbox(kMostInMemory)
{
    qRegisterMetaType<GatewayConfig>();
    qRegisterMetaType<LineStatus>();
    qRegisterMetaType<RecorderState>();
    qRegisterMetaType<WriteAnswer>();
    qRegisterMetaType<WriteRequest>();
    qRegisterMetaType<QVector<TopicNames>>();
    m_place.moveToThread(&m_thread);
    const auto wait = Qt::BlockingQueuedConnection;
    connect(
        this, &RecorderThread::opening, &m_place, [this] { open(); }, wait);
    connect(this, &RecorderThread::ending, &m_place, [this] { finish(); });
    pass(&RecorderThread::filled, &Recorder::commit);
    pass(&RecorderThread::reloading, &Recorder::reload);
    pass(&RecorderThread::told, &Recorder::tell);
    pass(&RecorderThread::watching, &Recorder::watch);
    pass(&RecorderThread::answering, &Recorder::answer);
    connect(this, &RecorderThread::looking, &m_place, [this] {
        if (m_recorder) {
            Q_EMIT looked(m_recorder->state());
        }
    });
    m_thread.setObjectName(QLatin1String("recorder"));
    m_thread.start();
}

RecorderThread::~RecorderThread()
{
    stop();
}

StoreError RecorderThread::start()
{
    Q_EMIT opening();
    return m_failed;
}

void RecorderThread::open()
{
    m_recorder = std::make_unique<Recorder>(m_config, m_inbox, m_clock, m_say);
    connect(m_recorder.get(), &Recorder::asked, this, &RecorderThread::asked, Qt::DirectConnection);
    m_failed = m_recorder->start();
    if (!m_failed.isNone()) {
        m_recorder.reset();
    }
}

void RecorderThread::put(const LedgerBatch &batch)
{
    m_inbox.put(batch);
    Q_EMIT filled();
}

qint64 RecorderThread::stop()
{
    if (m_thread.isRunning()) {
        Q_EMIT ending();
        m_thread.wait();
    }
    return m_lost;
}

// The loop goes on meanwhile: brokers have to confirm what they were sent.
void RecorderThread::finish()
{
    if (!m_recorder) {
        end();
        return;
    }
    connect(
        m_recorder.get(), &Recorder::finished, &m_place,
        [this](qint64 lost) {
            m_lost = lost;
            end();
        },
        Qt::QueuedConnection);
    m_recorder->finish();
}

void RecorderThread::end()
{
    m_recorder.reset();
    // What sinks with TLS left to this thread; at its own end that may come after the program's.
    OPENSSL_thread_stop();
    m_thread.quit();
}

} // namespace cnet::gateway
