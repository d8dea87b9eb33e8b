// Writes on one thread and reads on another: with "with-lock" as a host does it, with
// "without-lock" past the driver's lock, which the thread sanitizer is to find.

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "serviceForProtocol/cache/value_read.h"

#include <cstring>
#include <thread>

namespace {

constexpr int kTimes = 2000;
constexpr int kWords = 8;
constexpr int kPlaces = 50; ///< at which a block of words begins

void write(QString name)
{
    unsigned char data[2 * kWords] = {};
    for (int i = 0; i < kTimes; ++i) {
        data[0] = static_cast<unsigned char>(i & 0xFF);
        intf_setData(1, name, i % kPlaces, kWords, data, 0);
    }
}

void read(QString name, bool withLock)
{
    unsigned char data[2 * kWords] = {};
    const RegisterWidths widths = {16, 16, false};
    const QString letter = QString::fromLatin1("D");
    for (int i = 0; i < kTimes; ++i) {
        if (withLock) {
            intf_getData(1, name, i % kPlaces, kWords, data);
        } else {
            readValues(widths, 1, letter, i % kPlaces, kWords, data);
        }
    }
}

} // namespace

int main(int count, char **arguments)
{
    const bool withLock = count == 2 && std::strcmp(arguments[1], "with-lock") == 0;
    intf_initProperty(nullptr, 0, nullptr, nullptr, "0#0#0#3#60", nullptr);
    QString name = QString::fromLatin1("D_W");
    // Every unit is there beforehand: the race is about its bytes, and does not end the program
    // before it was reported.
    unsigned char data[2 * (kPlaces + kWords)] = {};
    intf_getData(1, name, 0, kPlaces + kWords, data);
    std::thread writer(write, name);
    std::thread reader(read, name, withLock);
    writer.join();
    reader.join();
    return 0;
}
