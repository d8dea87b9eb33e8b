// Polls with libmodbus: one blocking call per poll, which puts the registers into an array.

#include "poll_clock.h"

#include <modbus.h>

#include <array>
#include <cerrno>
#include <memory>

int main(int argc, char **argv)
{
    const bench::PollArguments arguments = bench::pollArguments(argc, argv);
    const std::unique_ptr<modbus_t, decltype(&modbus_free)> client(
        modbus_new_tcp("127.0.0.1", arguments.port), &modbus_free);
    if (!client || modbus_set_slave(client.get(), 1) != 0 || modbus_connect(client.get()) != 0) {
        std::fprintf(stderr, "cannot connect: %s\n", modbus_strerror(errno));
        return 1;
    }
    bench::PollClock clock(arguments.polls);
    std::array<uint16_t, bench::kPollWords> words{};
    do {
        if (modbus_read_registers(client.get(), 0, bench::kPollWords, words.data()) !=
            bench::kPollWords) {
            std::fprintf(stderr, "cannot read: %s\n", modbus_strerror(errno));
            return 1;
        }
    } while (clock.pollEnded());
    modbus_close(client.get());
    return 0;
}
