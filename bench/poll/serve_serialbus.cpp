// A Qt SerialBus server. It picks a free port and prints it.

#include "poll_clock.h"

#include <QCoreApplication>
#include <QModbusTcpServer>
#include <QTcpServer>
#include <QVariant>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    bench::limitTime();
    QModbusTcpServer server;
    QModbusDataUnitMap registers;
    registers.insert(QModbusDataUnit::HoldingRegisters, {QModbusDataUnit::HoldingRegisters, 0,
                                                         static_cast<quint16>(bench::kPollWords)});
    server.setMap(registers);
    server.setServerAddress(1);
    server.setConnectionParameter(QModbusDevice::NetworkAddressParameter,
                                  QLatin1String("127.0.0.1"));
    server.setConnectionParameter(QModbusDevice::NetworkPortParameter, 0);
    const bool listens = server.connectDevice();
    // Only the socket knows the port that the system chose.
    const QTcpServer *const socket = server.findChild<QTcpServer *>();
    if (!listens || socket == nullptr) {
        std::fprintf(stderr, "cannot listen: %s\n", server.errorString().toLocal8Bit().constData());
        return 1;
    }
    std::printf("%d\n", static_cast<int>(socket->serverPort()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
