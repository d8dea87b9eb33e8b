#include "gateway/mosquitto/mosquitto_connection.h"

#include <QHostAddress>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace cnet::gateway {

namespace {

constexpr int kReachMs = 5000;  // a name server, and each address
constexpr int kGreetMs = 10000; // from the connection to the welcome, with TLS in between
constexpr int kDueMs = 1000;
constexpr int kFarewellMs = 2000; // until the broker has ended the connection, too

// A notifier may be the one that is just calling.
void drop(std::unique_ptr<QSocketNotifier> &notifier)
{
    if (notifier) {
        notifier->setEnabled(false);
        notifier.release()->deleteLater();
    }
}

/** With the socket, which libmosquitto knows nothing of. */
void dropWithSocket(std::unique_ptr<QSocketNotifier> &notifier)
{
    const int socket = notifier ? static_cast<int>(notifier->socket()) : -1;
    drop(notifier);
    if (socket >= 0) {
        close(socket);
    }
}

} // namespace

MosquittoConnection::MosquittoConnection(const MqttConnectionSettings &settings, Clock &clock)
    : m_brokers(settings.brokers)
    , m_handle(settings)
    , m_limit(clock.makeAlarm())
    , m_farewellLimit(clock.makeAlarm())
{
    connect(m_limit.get(), &Alarm::fired, this, &MosquittoConnection::handleLimit);
    connect(m_farewellLimit.get(), &Alarm::fired, this, &MosquittoConnection::endFarewell);
}

MosquittoConnection::~MosquittoConnection()
{
    tearDown();
    dropWithSocket(m_farewell);
}

void MosquittoConnection::open(int broker, const std::optional<MqttMessage> &will)
{
    tearDown();
    m_broker = m_brokers.at(broker % static_cast<int>(m_brokers.size()));
    m_will = will;
    m_wasReached = false;
    m_tellsClosed = false;
    if (QHostAddress(m_broker.host).isNull()) {
        lookUp(m_broker.host);
    } else {
        m_addresses = QStringList(m_broker.host);
        reachNext();
    }
}

void MosquittoConnection::lookUp(const QString &host)
{
    m_state = State::LookingUp;
    m_limit->set(kReachMs);
    // By its name: the analyzer takes what Qt makes of a function for a leak.
    m_lookup = QHostInfo::lookupHost(host, this, SLOT(handleFound(QHostInfo)));
}

void MosquittoConnection::handleFound(const QHostInfo &info)
{
    m_lookup = -1;
    const auto addresses = info.addresses();
    for (const QHostAddress &address : addresses) {
        m_addresses.append(address.toString());
    }
    if (m_addresses.isEmpty()) {
        lose(QLatin1String("nobody knows a computer of this name"));
    } else {
        reachNext();
    }
}

void MosquittoConnection::reachNext()
{
    drop(m_readable);
    drop(m_writable);
    const QByteArray address = m_addresses.takeFirst().toLatin1();
    QString wrong = m_handle.prepare(m_broker, m_will);
    if (!wrong.isEmpty()) {
        lose(wrong);
        return;
    }
    m_state = State::Reaching;
    m_limit->set(kReachMs);
    wrong = m_handle.reach(address);
    if (wrong.isEmpty()) {
        watchSocket();
    } else if (m_addresses.isEmpty()) {
        lose(wrong);
    } else {
        reachNext();
    }
}

void MosquittoConnection::watchSocket()
{
    m_readable = std::make_unique<QSocketNotifier>(m_handle.socket(), QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(m_handle.socket(), QSocketNotifier::Write);
    connect(m_readable.get(), &QSocketNotifier::activated, this,
            &MosquittoConnection::handleReadable);
    connect(m_writable.get(), &QSocketNotifier::activated, this,
            &MosquittoConnection::handleWritable);
}

// libmosquitto would say of a connection that did not come about that it was lost.
bool MosquittoConnection::isReached()
{
    if (m_state != State::Reaching) {
        return true;
    }
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(m_handle.socket(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error == 0) {
        m_state = State::Greeting;
        m_wasReached = true;
        m_limit->set(kGreetMs);
        return true;
    }
    if (m_addresses.isEmpty()) {
        lose(QString::fromLocal8Bit(std::strerror(error)));
    } else {
        reachNext();
    }
    return false;
}

void MosquittoConnection::handleReadable()
{
    if (m_handle.isThere() && isReached()) {
        look(m_handle.read());
    }
}

void MosquittoConnection::handleWritable()
{
    if (m_handle.isThere() && isReached()) {
        look(m_handle.write());
    }
}

void MosquittoConnection::handleLimit()
{
    switch (m_state) {
    case State::Open:
        m_limit->set(kDueMs);
        look(m_handle.doWhatIsDue());
        break;
    case State::Greeting:
        lose(QLatin1String("it takes connections, and does not answer"));
        break;
    case State::Reaching:
        if (!m_addresses.isEmpty()) {
            reachNext();
        } else {
            lose(QLatin1String("no answer to the connection request"));
        }
        break;
    case State::LookingUp:
        lose(QLatin1String("no answer to the question where it is"));
        break;
    case State::Closed:
        break;
    }
}

// After each call of libmosquitto. @param wrong what that returned
void MosquittoConnection::look(const QString &wrong)
{
    const QString refusal = wrong.isEmpty() ? m_handle.news.refusal : wrong;
    deliver();
    if (!refusal.isEmpty() && m_handle.isThere()) {
        lose(refusal);
    } else {
        watchRoom();
    }
}

void MosquittoConnection::watchRoom()
{
    if (m_writable) {
        m_writable->setEnabled(m_handle.wantsToWrite());
    }
}

// Whoever hears it may publish, close and open.
void MosquittoConnection::deliver()
{
    if (m_isDelivering) {
        return;
    }
    m_isDelivering = true;
    if (m_state == State::Greeting && m_handle.news.isGreeted) {
        m_state = State::Open;
        m_limit->set(kDueMs);
        Q_EMIT connected();
    }
    while (!m_handle.news.published.isEmpty() || !m_handle.news.received.isEmpty()) {
        BrokerNews news;
        news.published.swap(m_handle.news.published);
        news.received.swap(m_handle.news.received);
        for (const int token : qAsConst(news.published)) {
            Q_EMIT published(token);
        }
        for (const MqttMessage &message : qAsConst(news.received)) {
            Q_EMIT received(message);
        }
    }
    m_isDelivering = false;
}

int MosquittoConnection::publish(const MqttMessage &message)
{
    if (m_state != State::Open) {
        return 0;
    }
    QString wrong;
    const int token = m_handle.publish(message, wrong);
    if (!wrong.isEmpty()) {
        lose(wrong);
        return 0;
    }
    watchRoom();
    // With QoS 0 it is done at once; that is told of when this has returned.
    if (m_handle.news.published.size() == 1 && !m_isDelivering) {
        QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection);
    }
    return token;
}

void MosquittoConnection::subscribe(const QStringList &filters, int qos)
{
    for (const QString &filter : filters) {
        if (m_state == State::Open) {
            look(m_handle.subscribe(filter, qos));
        }
    }
}

// libmosquitto closes its socket when it has sent the goodbye. If the broker has sent something
// meanwhile, that resets the connection, and the broker may not read the goodbye any more and
// publish the will. So a second descriptor stays open and is read to the end.
void MosquittoConnection::close()
{
    const int socket = m_state == State::Open ? fcntl(m_handle.socket(), F_DUPFD_CLOEXEC, 0) : -1;
    if (m_state == State::Open) {
        m_handle.sayGoodbye();
    }
    tearDown();
    m_tellsClosed = true;
    if (socket >= 0) {
        awaitEnd(socket);
    } else if (!m_farewell) {
        m_farewellLimit->set(0);
    }
}

void MosquittoConnection::awaitEnd(int socket)
{
    dropWithSocket(m_farewell); // of the one before
    shutdown(socket, SHUT_WR);
    m_farewell = std::make_unique<QSocketNotifier>(socket, QSocketNotifier::Read);
    connect(m_farewell.get(), &QSocketNotifier::activated, this,
            &MosquittoConnection::readToTheEnd);
    m_farewellLimit->set(kFarewellMs);
}

void MosquittoConnection::readToTheEnd()
{
    std::array<char, 4096> unread{};
    const ssize_t count =
        recv(static_cast<int>(m_farewell->socket()), unread.data(), unread.size(), MSG_DONTWAIT);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        endFarewell();
    }
}

void MosquittoConnection::endFarewell()
{
    m_farewellLimit->cancel();
    dropWithSocket(m_farewell);
    if (m_tellsClosed) {
        m_tellsClosed = false;
        Q_EMIT closed();
    }
}

void MosquittoConnection::lose(const QString &reason)
{
    const QString place =
        QString::fromLatin1("broker %1:%2: ").arg(m_broker.host, QString::number(m_broker.port));
    tearDown();
    Q_EMIT lost(place + reason);
}

void MosquittoConnection::tearDown()
{
    m_state = State::Closed;
    m_limit->cancel();
    if (m_lookup >= 0) {
        QHostInfo::abortHostLookup(m_lookup);
        m_lookup = -1;
    }
    drop(m_readable);
    drop(m_writable);
    m_handle.end();
    m_addresses.clear();
}

} // namespace cnet::gateway
