#pragma once

#include "host/link/link.h"

#include <QList>

namespace cnet {

/** A line at whose other end a test stands. */
class FakeLink : public Link
{
    Q_OBJECT

public:
    QList<QByteArray> sentFrames;
    int openCalls = 0;
    bool opensFine = true;

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
