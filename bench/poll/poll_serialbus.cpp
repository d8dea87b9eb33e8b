// Polls with Qt SerialBus: each poll has a reply object with the registers in a vector. Like the
// panel, it runs on an event loop and handles timeouts.

#include "poll_clock.h"

#include <QCoreApplication>
#include <QModbusDataUnit>
#include <QModbusReply>
#include <QModbusTcpClient>
#include <QVariant>

namespace {

class Poller
{
public:
    explicit Poller(const bench::PollArguments &arguments)
        : m_clock(arguments.polls)
    {
        m_client.setConnectionParameter(QModbusDevice::NetworkAddressParameter,
                                        QLatin1String("127.0.0.1"));
        m_client.setConnectionParameter(QModbusDevice::NetworkPortParameter, arguments.port);
        QObject::connect(&m_client, &QModbusDevice::stateChanged, &m_client,
                         [this](QModbusDevice::State state) {
                             if (state == QModbusDevice::ConnectedState) {
                                 poll();
                             }
                         });
        QObject::connect(&m_client, &QModbusDevice::errorOccurred, &m_client, [this] {
            std::fprintf(stderr, "%s\n", m_client.errorString().toLocal8Bit().constData());
            QCoreApplication::exit(1);
        });
    }

    bool connectDevice() { return m_client.connectDevice(); }

private:
    void poll()
    {
        const QModbusDataUnit words(QModbusDataUnit::HoldingRegisters, 0,
                                    static_cast<quint16>(bench::kPollWords));
        QModbusReply *const reply = m_client.sendReadRequest(words, 1);
        if (reply == nullptr) {
            QCoreApplication::exit(1);
            return;
        }
        QObject::connect(reply, &QModbusReply::finished, &m_client,
                         [this, reply] { finish(*reply); });
    }

    void finish(QModbusReply &reply)
    {
        const QModbusDataUnit words = reply.result();
        reply.deleteLater();
        if (words.valueCount() != static_cast<uint>(bench::kPollWords)) {
            std::fprintf(stderr, "cannot read: %s\n",
                         reply.errorString().toLocal8Bit().constData());
            QCoreApplication::exit(1);
        } else if (m_clock.pollEnded()) {
            poll();
        } else {
            QCoreApplication::exit(0);
        }
    }

    QModbusTcpClient m_client;
    bench::PollClock m_clock;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Poller poller(bench::pollArguments(argc, argv));
    return poller.connectDevice() ? QCoreApplication::exec() : 1;
}
