#pragma once

#include "exchange/host_loop.h"

#include <QObject>

#include <new>

namespace exchange {

/** Puts a new one in its place: nothing is left of what was before. */
template <typename Loop>
void renew(Loop &loop)
{
    loop.~Loop();
    new (&loop) Loop;
}

/** Each test has a new panel, a new line and an empty PLC. */
class ExchangeTest : public QObject
{
    Q_OBJECT

protected:
    HostLoop loop;

private Q_SLOTS:
    void init() { renew(loop); }
};

} // namespace exchange
