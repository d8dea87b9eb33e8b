#include "host/scan/likely_settings.h"

namespace cnet {

namespace {

// The factory setting first, then what people choose; a slow line takes long to be found silent.
const int kBauds[] = {38400, 9600, 19200, 115200, 57600, 4800, 2400, 1200};

} // namespace

QVector<LineSettings> likelySettings()
{
    QVector<LineSettings> all;
    for (const int stopBits : {1, 2}) {
        for (const Parity parity : {Parity::None, Parity::Even, Parity::Odd}) {
            for (const int baud : kBauds) {
                LineSettings line;
                line.baud = baud;
                line.parity = parity;
                line.stopBits = stopBits;
                all.append(line);
            }
        }
    }
    return all;
}

} // namespace cnet
