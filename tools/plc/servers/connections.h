#pragma once

#include <QString>

#include <map>

namespace plc {

/** One master's connection. */
struct Connection
{
    QString name;         ///< "127.0.0.1:40404" or "/tmp/plc"
    qint64 sinceMs = 0;   ///< when it began, on the program's clock
    quint64 requests = 0; ///< frames that it has sent, answered or not
};

/** Who is connected to the servers of one program, in the order in which they came. */
class Connections
{
public:
    /** @return the number that stands for it from now on. */
    int add(const QString &name, qint64 nowMs)
    {
        m_all[++m_last] = {name, nowMs, 0};
        return m_last;
    }

    /** Counts a request. @param number of a connection that is there */
    void count(int number) { ++m_all[number].requests; }
    void remove(int number) { m_all.erase(number); }
    const std::map<int, Connection> &all() const { return m_all; }

private:
    std::map<int, Connection> m_all;
    int m_last = 0;
};

} // namespace plc
