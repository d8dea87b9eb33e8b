#include "plc/servers/server_setup.h"

namespace plc {

ServedConnection::ServedConnection(const ServerSetup &setup, Line &line, const char *kind,
                                   const QString &name)
    : m_setup(setup)
{
    line.setBaud(setup.baud);
    if (setup.connections) {
        m_number = setup.connections->add(name, setup.clock.elapsed());
    }
    if (setup.capture) {
        m_tap.emplace(*setup.capture, QString::fromLatin1("%1 %2").arg(QLatin1String(kind), name));
    }
    line.setObserver([this, name](const Exchange &exchange) { note(name, exchange); });
}

ServedConnection::~ServedConnection()
{
    if (m_setup.connections) {
        m_setup.connections->remove(m_number);
    }
}

void ServedConnection::note(const QString &name, const Exchange &exchange)
{
    if (m_setup.connections) {
        m_setup.connections->count(m_number);
    }
    if (m_setup.trace) {
        m_setup.trace(name, exchange);
    }
    if (m_tap) {
        m_tap->note(exchange);
    }
}

void ServedConnection::received(const QByteArray &bytes)
{
    if (m_tap) {
        m_tap->received(bytes);
    }
}

void ServedConnection::sent(const QByteArray &bytes)
{
    if (m_tap) {
        m_tap->sent(bytes);
    }
}

void ServedConnection::forgetAnswers()
{
    if (m_tap) {
        m_tap->forgetAnswers();
    }
}

} // namespace plc
