#pragma once

#include "plc/memory/memory.h"

#include <QtGlobal>

namespace plc {

/** A machine whose values hang together, in the memory of one station. */
class Scenario
{
public:
    Scenario() = default;
    virtual ~Scenario() = default;
    Scenario(const Scenario &) = delete;
    Scenario &operator=(const Scenario &) = delete;

    /**
     * Goes on to time nowMs (milliseconds, from the program's start), with what masters have
     * written until then.
     */
    virtual void advance(Memory &memory, qint64 nowMs) = 0;
};

} // namespace plc
