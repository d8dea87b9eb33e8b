#pragma once

#include "host/link/link.h"

#include <QList>

#include <utility>

namespace cnet {

/** A line at whose other end a test stands. */
class FakeLink : public Link
{
    Q_OBJECT

public:
    QList<QByteArray> sentFrames;
    int openCalls = 0;
    bool opensFine = true;
    int expected = 0; ///< bytes, as it was told last
    QByteArray held;  ///< that it reports as soon as nothing is expected any more

    void open() override
    {
        ++openCalls;
        if (opensFine) {
            m_open = true;
            Q_EMIT opened();
        } else {
            Q_EMIT failed(QLatin1String("no such device"));
        }
    }

    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    QString name() const override { return QLatin1String("fake"); }
    void send(const QByteArray &bytes) override { sentFrames.append(bytes); }

    void expect(int bytes) override
    {
        expected = bytes;
        if (bytes == 0 && !held.isEmpty()) {
            say(std::exchange(held, QByteArray()));
        }
    }

    /** What the stations say. */
    void say(const QByteArray &bytes) { Q_EMIT received(bytes); }

    void breakDown(const char *reason = "unplugged")
    {
        m_open = false;
        Q_EMIT failed(QLatin1String(reason));
    }

private:
    bool m_open = false;
};

} // namespace cnet
