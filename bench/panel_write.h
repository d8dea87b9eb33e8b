#pragma once

#include "host.h"

#include <array>

namespace bench {

/** What an operator writes. All values are monitored and change each time. */
enum class Written {
    Word,    ///< one data register
    Relay,   ///< a bit that can be written individually
    DataBit, ///< a bit that is written by reading and writing its word
    Block,   ///< 60 data registers
};

/**
 * A write from the panel: each step writes values and exchanges frames until the station has them.
 * The driver reads the screen after every ten writes, so each step includes a tenth of that.
 */
class PanelWrite
{
public:
    explicit PanelWrite(Written written);

    void step()
    {
        const int before = m_turn;
        m_turn = 1 - m_turn;
        intf_setData(1, m_registerName, 0, m_count, bytes(m_values[static_cast<size_t>(m_turn)]),
                     0);
        while (m_host.ask()) {
            if (m_host.isWrite()) {
                m_host.answer(m_written);
                return;
            }
            m_host.answer(m_read[static_cast<size_t>(before)]);
        }
    }

private:
    static unsigned char *bytes(QByteArray &array)
    {
        return reinterpret_cast<unsigned char *>(array.data());
    }

    Host m_host;
    QString m_registerName;
    int m_count;
    QByteArray m_written;             ///< the station's answer to the write
    std::array<QByteArray, 2> m_read; ///< the answer to a read, before and after the write
    std::array<QByteArray, 2> m_values;
    int m_turn = 0;
};

} // namespace bench
