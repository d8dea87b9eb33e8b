#include "gateway/status/http_server.h"

#include "gateway/status/pages.h"

#include <microhttpd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace cnet::gateway {

namespace {

constexpr unsigned kIdleSeconds = 3;
// Of a request with its headers: who asks for numbers needs little.
constexpr size_t kRequestBytes = 16 * 1024;

MHD_Result handleRequest(void *server, MHD_Connection *connection, const char *path,
                         const char *method, const char * /*version*/, const char * /*upload*/,
                         size_t * /*uploadBytes*/, void ** /*request*/)
{
    const int taken = static_cast<HttpServer *>(server)->answer(connection, path, method);
    return taken == 0 ? MHD_NO : MHD_YES;
}

struct Hosts
{
    const HttpServer &server;
    bool areOwn;
};

MHD_Result lookAtHeader(void *hosts, MHD_ValueKind /*kind*/, const char *key, const char *value)
{
    auto *seen = static_cast<Hosts *>(hosts);
    if (qstricmp(key, MHD_HTTP_HEADER_HOST) == 0) {
        seen->areOwn = seen->areOwn && value != nullptr && seen->server.isOwnHost(value);
    }
    return MHD_YES;
}

// Browsers always say whom they ask; who does not is none.
bool isMeantForUs(MHD_Connection *connection, const HttpServer &server)
{
    Hosts hosts{server, true};
    MHD_get_connection_values(connection, MHD_HEADER_KIND, &lookAtHeader, &hosts);
    return hosts.areOwn;
}

void handleConnection(void *server, MHD_Connection *connection, void ** /*context*/,
                      MHD_ConnectionNotificationCode what)
{
    const MHD_ConnectionInfo *info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    if (info == nullptr) {
        return;
    }
    auto *self = static_cast<HttpServer *>(server);
    if (what == MHD_CONNECTION_NOTIFY_STARTED) {
        self->noteOpened(info->connect_fd);
    } else {
        self->noteClosed(info->connect_fd);
    }
}

} // namespace

HttpServer::HttpServer(const SnapshotBoard &board, Clock &clock)
    : m_board(board)
    , m_clock(clock)
{}

HttpServer::~HttpServer() = default;

void HttpServer::Stop::operator()(MHD_Daemon *daemon) const
{
    MHD_stop_daemon(daemon);
}

bool HttpServer::start(int descriptor, const QByteArray &place)
{
    m_place = place;
    m_daemon.reset(MHD_start_daemon(
        MHD_USE_AUTO_INTERNAL_THREAD | MHD_USE_ITC, 0, nullptr, nullptr, &handleRequest, this,
        MHD_OPTION_LISTEN_SOCKET, descriptor, MHD_OPTION_CONNECTION_LIMIT,
        static_cast<unsigned>(kMostConnections), MHD_OPTION_CONNECTION_TIMEOUT, kIdleSeconds,
        MHD_OPTION_CONNECTION_MEMORY_LIMIT, kRequestBytes, MHD_OPTION_NOTIFY_CONNECTION,
        &handleConnection, this, MHD_OPTION_END));
    if (!m_daemon) {
        close(descriptor);
    }
    return m_daemon != nullptr;
}

bool HttpServer::isOwnHost(const char *host) const
{
    return isForThisMachine(host, m_place);
}

int HttpServer::answer(MHD_Connection *connection, const char *path, const char *method) const
{
    const std::shared_ptr<const Snapshot> snapshot = m_board.newest();
    const Page page = isMeantForUs(connection, *this)
                          ? pageFor(method, path, snapshot.get(), m_clock.nowMs())
                          : strangeHostPage();
    // Copied by the library, and never written: it takes no const.
    MHD_Response *response = MHD_create_response_from_buffer(
        static_cast<size_t>(page.body.size()), const_cast<char *>(page.body.constData()),
        MHD_RESPMEM_MUST_COPY);
    if (response == nullptr) {
        return MHD_NO;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, page.type);
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    // One answer a connection: nobody keeps a place that another one needs.
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    if (page.code == MHD_HTTP_METHOD_NOT_ALLOWED) {
        MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, "GET, HEAD");
    }
    const MHD_Result queued =
        MHD_queue_response(connection, static_cast<unsigned>(page.code), response);
    MHD_destroy_response(response);
    return queued;
}

void HttpServer::noteOpened(int descriptor)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_openedMs[descriptor] = m_clock.nowMs();
}

// Comes before the library closes the descriptor, so that no other file has its number meanwhile.
void HttpServer::noteClosed(int descriptor)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_openedMs.erase(descriptor);
}

// The library ends who is silent. Who sends a byte now and then is ended here.
void HttpServer::endLongConnections()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 nowMs = m_clock.nowMs();
    for (const auto &connection : m_openedMs) {
        if (nowMs - connection.second > kLongestMs) {
            shutdown(connection.first, SHUT_RDWR);
        }
    }
}

} // namespace cnet::gateway
