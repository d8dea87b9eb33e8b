#pragma once

#include "host/link/link_address.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

namespace cnet {

/**
 * Bytes that are taken from a line at a time. A line that talks without end then neither fills the
 * memory nor keeps the program from its other events.
 */
constexpr int kMostBytesAtOnce = 16384;

/**
 * A way to the PLCs that carries bytes both ways. It opens when told and reports what happens to
 * it; when to open it again is somebody else's business (Reconnector).
 */
class Link : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** Begins to open; opened() or failed() follows, at once or later. Without effect while open.
     */
    virtual void open() = 0;

    /** Closes without a signal. */
    virtual void close() = 0;

    virtual bool isOpen() const = 0;

    /** Hands bytes to the line; without effect while closed. What comes back is reported later. */
    virtual void send(const QByteArray &bytes) = 0;

    /**
     * So many bytes are still missing of what is being received: it may report them together, once
     * all of them are there. With 0 it reports at once whatever comes, and what it held back.
     */
    virtual void expect(int /*bytes*/) {}

    /** For messages: "tcp 192.168.0.100:8000". */
    virtual QString name() const = 0;

Q_SIGNALS:
    void opened();
    /** It could not be opened, or it was open and is lost. The link is closed now. */
    void failed(const QString &reason);
    void received(const QByteArray &bytes);
};

/** The link to a serial device or a TCP port, not opened yet. */
std::unique_ptr<Link> makeLink(const LinkAddress &address);

} // namespace cnet
