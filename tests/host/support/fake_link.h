#pragma once

#include "host/link/link.h"

#include <QList>
#include <QTimer>

namespace cnet {

/** A line at whose other end a test stands. */
class FakeLink : public Link
{
    Q_OBJECT

public:
    QList<QByteArray> sentFrames;
    /** What comes back to each request in turn; an empty list of chunks is silence. */
    QList<QList<QByteArray>> answers;
    int openCalls = 0;
    bool opensFine = true;
    int breaksWithFrame = 0; ///< it is lost while that frame is handed over, counted from 1

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

    void send(const QByteArray &bytes) override
    {
        sentFrames.append(bytes);
        if (sentFrames.size() == breaksWithFrame) {
            breakDown();
            return;
        }
        if (answers.isEmpty()) {
            return;
        }
        const QList<QByteArray> chunks = answers.takeFirst();
        for (const QByteArray &chunk : chunks) {
            QTimer::singleShot(0, this, [this, chunk] { Q_EMIT received(chunk); });
        }
    }

    void breakDown(const char *reason = "unplugged")
    {
        m_open = false;
        Q_EMIT failed(QLatin1String(reason));
    }

private:
    bool m_open = false;
};

} // namespace cnet
