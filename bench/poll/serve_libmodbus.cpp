// A libmodbus server for one client at a time. It picks a free port and prints it.

#include "poll_clock.h"

#include <modbus.h>

#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <memory>

namespace {

int portOf(int listener)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size);
    return ntohs(address.sin_port);
}

void serveClient(modbus_t *server, modbus_mapping_t *registers)
{
    std::array<uint8_t, MODBUS_TCP_MAX_ADU_LENGTH> request{};
    int length = 0;
    while ((length = modbus_receive(server, request.data())) >= 0) {
        modbus_reply(server, request.data(), length, registers);
    }
}

} // namespace

int main()
{
    bench::limitTime();
    const std::unique_ptr<modbus_t, decltype(&modbus_free)> server(modbus_new_tcp("127.0.0.1", 0),
                                                                   &modbus_free);
    const std::unique_ptr<modbus_mapping_t, decltype(&modbus_mapping_free)> registers(
        modbus_mapping_new(0, 0, bench::kPollWords, 0), &modbus_mapping_free);
    int listener = modbus_tcp_listen(server.get(), 1);
    if (listener < 0 || !registers) {
        std::fprintf(stderr, "cannot listen: %s\n", modbus_strerror(errno));
        return 1;
    }
    std::printf("%d\n", portOf(listener));
    std::fflush(stdout);
    while (modbus_tcp_accept(server.get(), &listener) >= 0) {
        serveClient(server.get(), registers.get());
        modbus_close(server.get());
    }
    return 0;
}
