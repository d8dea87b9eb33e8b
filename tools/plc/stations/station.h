#pragma once

#include "plc/memory/memory.h"

#include <QByteArray>

namespace plc {

/** One PLC on the line: answers requests for its station number from its memory. */
class Station
{
public:
    /** @param number 0-31; requests cannot address any other number. */
    explicit Station(int number = 1, Model model = Model::Full);

    int number() const { return m_number; }
    Memory &memory() { return m_memory; }
    const Memory &memory() const { return m_memory; }

    /**
     * Carries out one request frame, which starts with ENQ and ends with EOT or the block check.
     *
     * @return the answer frame, or nothing if a PLC would not answer: the frame is incomplete, its
     * block check is wrong, or it addresses another station. A refused request changes nothing.
     */
    QByteArray answer(const QByteArray &request);

    /**
     * Refuses a request with the given error code instead of carrying it out.
     * @return the refusal, or nothing if answer() would return nothing.
     */
    QByteArray refusal(const QByteArray &request, quint16 code) const;

private:
    int m_number;
    Memory m_memory;
};

} // namespace plc
