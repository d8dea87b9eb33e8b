#include "relay.h"

#include <algorithm>

namespace {

const char kEnq = '\x05';
const char kEot = '\x04';
const char kEtx = '\x03';
const int kCheckCharacters = 2;
const int kPatienceMs = 30000;

// The first frame of what came, with the block check behind its last character.
QByteArray takeFrame(QByteArray &bytes, char last)
{
    const auto end = bytes.indexOf(last);
    if (end < 0 || bytes.size() < end + 1 + kCheckCharacters) {
        return {};
    }
    const QByteArray frame = bytes.left(static_cast<int>(end) + 1 + kCheckCharacters);
    bytes.remove(0, frame.size());
    return frame;
}

} // namespace

Relay::Relay(QString plc)
    : m_plc(std::move(plc))
{
    m_server.listen(QHostAddress(QHostAddress::LocalHost), 0);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        m_panel = m_server.nextPendingConnection();
        connect(m_panel, &QTcpSocket::readyRead, this, &Relay::take);
    });
    connect(&m_plcLine, &QTcpSocket::readyRead, this, &Relay::answer);
}

QString Relay::link() const
{
    return QString::fromLatin1("tcp:127.0.0.1:%1").arg(m_server.serverPort());
}

int Relay::count(const char *part) const
{
    return static_cast<int>(
        std::count_if(m_requests.cbegin(), m_requests.cend(),
                      [part](const QByteArray &request) { return request.contains(part); }));
}

void Relay::take()
{
    m_asked += m_panel->readAll();
    for (QByteArray frame = takeFrame(m_asked, kEot); !frame.isEmpty();
         frame = takeFrame(m_asked, kEot)) {
        m_requests.append(frame.mid(frame.indexOf(kEnq)));
        if (m_plcLine.state() != QAbstractSocket::ConnectedState) {
            m_answered.clear();
            m_plcLine.connectToHost(m_plc.section(QLatin1Char(':'), 0, 0),
                                    m_plc.section(QLatin1Char(':'), 1).toUShort());
            m_plcLine.waitForConnected(kPatienceMs);
        }
        m_plcLine.write(frame);
    }
}

void Relay::answer()
{
    m_answered += m_plcLine.readAll();
    for (QByteArray frame = takeFrame(m_answered, kEtx); !frame.isEmpty();
         frame = takeFrame(m_answered, kEtx)) {
        m_panel->write(onAnswer ? onAnswer(m_requests.last(), frame) : frame);
    }
}
