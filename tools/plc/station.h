#pragma once

#include "memory.h"

#include <QByteArray>

namespace plc {

/** One PLC on the line: a station number and a memory, answering one request at a time. */
class Station
{
public:
    /** @param number 0-31; a number outside that range is never asked for. */
    explicit Station(int number = 1, Model model = Model::Full);

    int number() const { return m_number; }
    Memory &memory() { return m_memory; }
    const Memory &memory() const { return m_memory; }

    /**
     * Carries out one request frame, from ENQ to EOT or to the block check behind it.
     *
     * @return the answer frame, or nothing where a PLC stays silent: the frame is not whole, its
     * block check is wrong, or it is meant for another station. A refused request changes nothing.
     */
    QByteArray answer(const QByteArray &request);

    /**
     * The refusal of a request with any error code, without carrying it out.
     * @return nothing where answer() would stay silent.
     */
    QByteArray refusal(const QByteArray &request, quint16 code) const;

private:
    int m_number;
    Memory m_memory;
};

} // namespace plc
