#include "gateway/mosquitto/tls_context.h"

#include <QFile>
#include <QHostAddress>

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace cnet::gateway {

namespace {

QString cannotUse(const char *what, const QString &path)
{
    const unsigned long code = ERR_peek_last_error();
    const char *const reason = code == 0 ? nullptr : ERR_reason_error_string(code);
    ERR_clear_error();
    const QFile file(path);
    const QString why = !file.exists()
                            ? QLatin1String("there is no such file")
                            : QLatin1String(reason == nullptr ? "it cannot be read" : reason);
    return QString::fromLatin1("cannot use the %1 %2: %3").arg(QLatin1String(what), path, why);
}

} // namespace

void TlsContext::clear()
{
    SSL_CTX_free(m_context);
    m_context = nullptr;
    m_fault.clear();
}

QString TlsContext::prepare(const MqttConnectionSettings &settings, const QString &host)
{
    clear();
    m_host = host.toUtf8();
    m_context = SSL_CTX_new(TLS_client_method());
    if (m_context == nullptr) {
        return QLatin1String("TLS cannot be used");
    }
    SSL_CTX_set_min_proto_version(m_context, TLS1_2_VERSION);
    SSL_CTX_set_mode(m_context,
                     SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    SSL_CTX_set_app_data(m_context, this);
    SSL_CTX_set_verify(m_context, SSL_VERIFY_PEER, handleVerified);
    SSL_CTX_set_info_callback(m_context, handleState);
    if (settings.checksName && !expectName(host)) {
        return QString::fromLatin1("'%1' is no name for a certificate").arg(host);
    }
    return readFiles(settings);
}

bool TlsContext::expectName(const QString &host)
{
    X509_VERIFY_PARAM *expected = SSL_CTX_get0_param(m_context);
    return QHostAddress(host).isNull()
               ? X509_VERIFY_PARAM_set1_host(expected, m_host.constData(), 0) == 1
               : X509_VERIFY_PARAM_set1_ip_asc(expected, m_host.constData()) == 1;
}

QString TlsContext::readFiles(const MqttConnectionSettings &settings)
{
    const QByteArray ca = QFile::encodeName(settings.caFile);
    const bool hasCa = ca.isEmpty() ? SSL_CTX_set_default_verify_paths(m_context) == 1
                                    : SSL_CTX_load_verify_file(m_context, ca.constData()) == 1;
    if (!hasCa) {
        return cannotUse("ca", settings.caFile);
    }
    if (settings.certificateFile.isEmpty()) {
        return QString();
    }
    const QByteArray certificate = QFile::encodeName(settings.certificateFile);
    if (SSL_CTX_use_certificate_chain_file(m_context, certificate.constData()) != 1) {
        return cannotUse("certificate", settings.certificateFile);
    }
    const QByteArray key = QFile::encodeName(settings.keyFile);
    if (SSL_CTX_use_PrivateKey_file(m_context, key.constData(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(m_context) != 1) {
        return cannotUse("key", settings.keyFile);
    }
    return QString();
}

int TlsContext::handleVerified(int isFine, x509_store_ctx_st *store)
{
    if (isFine == 0) {
        auto *ssl = static_cast<SSL *>(
            X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
        auto *own = static_cast<TlsContext *>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)));
        own->keepFault(store);
    }
    return isFine;
}

void TlsContext::keepFault(x509_store_ctx_st *store)
{
    const int error = X509_STORE_CTX_get_error(store);
    switch (error) {
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
        m_fault = QString::fromLatin1("its certificate is for another name than %1")
                      .arg(QString::fromUtf8(m_host));
        break;
    case X509_V_ERR_CERT_HAS_EXPIRED:
        m_fault = QLatin1String("its certificate has expired");
        break;
    case X509_V_ERR_CERT_NOT_YET_VALID:
        m_fault = QLatin1String("its certificate is not valid yet: is the clock right?");
        break;
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
        m_fault = QLatin1String("its certificate is of a CA that is not known");
        break;
    default:
        m_fault = QLatin1String("its certificate is not accepted: ") +
                  QLatin1String(X509_verify_cert_error_string(error));
    }
}

// A broker behind a name server is found by an address, and still wants to hear its name: where
// several share the address, it chooses the certificate by that.
void TlsContext::handleState(const ssl_st *ssl, int where, int /*result*/)
{
    if (where != SSL_CB_HANDSHAKE_START) {
        return;
    }
    auto *own = static_cast<TlsContext *>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)));
    const bool isName = QHostAddress(QString::fromUtf8(own->m_host)).isNull();
    // OpenSSL hands its own object over; it is const for those that only look.
    auto *changed = const_cast<SSL *>(ssl); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    SSL_set_tlsext_host_name(changed, isName ? own->m_host.data() : nullptr);
}

} // namespace cnet::gateway
