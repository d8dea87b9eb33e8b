#pragma once

#include "gateway/config/gateway_config.h"

#include <QByteArray>
#include <QString>

struct ssl_ctx_st;
struct ssl_st;
struct x509_store_ctx_st;

namespace cnet::gateway {

/**
 * How a broker proves who it is, and we to it. OpenSSL checks the certificate for the broker's own
 * name, whatever address it was found at, and what it finds wrong is kept in words.
 */
class TlsContext
{
public:
    TlsContext() = default;
    ~TlsContext() { clear(); }
    TlsContext(const TlsContext &) = delete;
    TlsContext &operator=(const TlsContext &) = delete;

    /** Reads the files anew. @return what is wrong, in words; empty: nothing */
    QString prepare(const MqttConnectionSettings &settings, const QString &host);

    void clear();

    ssl_ctx_st *context() { return m_context; }

    /** What was wrong with the broker's certificate since prepare(), in words; empty: nothing */
    QString fault() const { return m_fault; }

private:
    static int handleVerified(int isFine, x509_store_ctx_st *store);
    static void handleState(const ssl_st *ssl, int where, int result);

    QString readFiles(const MqttConnectionSettings &settings);
    bool expectName(const QString &host);
    void keepFault(x509_store_ctx_st *store);

    ssl_ctx_st *m_context = nullptr;
    QByteArray m_host;
    QString m_fault;
};

} // namespace cnet::gateway
