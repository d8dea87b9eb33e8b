#pragma once

#include "gateway/status/snapshot.h"

#include <QByteArray>

namespace cnet::gateway {

/** What a request over HTTP is answered with. */
struct Page
{
    int code = 200;
    const char *type = "text/plain; charset=utf-8";
    QByteArray body;
};

/**
 * True where a request was meant for this machine. A web page from elsewhere can have its own name
 * lead here, and its visitor's browser ask: it says that name.
 *
 * @param host the request's header Host: "localhost:9464"
 * @param own where the gateway listens, "127.0.0.2:9464"
 */
bool isForThisMachine(const QByteArray &host, const QByteArray &own);

/** The answer to a request that was not. */
Page strangeHostPage();

/**
 * The answer to a request. Whatever is in it, nothing in the gateway changes.
 * @param method "GET"
 * @param path without what stands behind a question mark
 * @param snapshot null: there is none yet
 * @param nowMs on the clock of the gateway
 */
Page pageFor(const QByteArray &method, const QByteArray &path, const Snapshot *snapshot,
             qint64 nowMs);

} // namespace cnet::gateway
