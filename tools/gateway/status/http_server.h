#pragma once

#include "gateway/status/snapshot.h"

#include "host/time/clock.h"

#include <QString>

#include <map>
#include <memory>
#include <mutex>

struct MHD_Connection;
struct MHD_Daemon;

namespace cnet::gateway {

/**
 * Serves the pages of the newest snapshot over HTTP, on a thread of its own that touches nothing
 * else of the gateway. Whoever asks badly, slowly or too often costs bounded memory and nobody else
 * anything.
 */
class HttpServer
{
public:
    static constexpr int kMostConnections = 20;
    static constexpr qint64 kLongestMs = 20000; ///< of a connection

    /** @param board,clock must outlive this object */
    HttpServer(const SnapshotBoard &board, Clock &clock);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /**
     * @param descriptor of a socket that listens, of TCP or local; taken over
     * @param place as people call it, "127.0.0.2:9464"; empty: it has no name of its own
     * @return false: no
     */
    bool start(int descriptor, const QByteArray &place);

    /** Ends connections that last for too long. To be called now and then. */
    void endLongConnections();

    // For the library, on its thread.

    int answer(MHD_Connection *connection, const char *path, const char *method) const;
    bool isOwnHost(const char *host) const;
    void noteOpened(int descriptor);
    void noteClosed(int descriptor);

private:
    struct Stop
    {
        void operator()(MHD_Daemon *daemon) const;
    };

    const SnapshotBoard &m_board;
    Clock &m_clock;
    QByteArray m_place;
    std::mutex m_mutex;
    std::map<int, qint64> m_openedMs; ///< of each connection, by its descriptor
    std::unique_ptr<MHD_Daemon, Stop> m_daemon;
};

} // namespace cnet::gateway
