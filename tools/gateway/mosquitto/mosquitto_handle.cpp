#include "gateway/mosquitto/mosquitto_handle.h"

#include "gateway/sinks/secret_file.h"

#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <openssl/ssl.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace cnet::gateway {

namespace {

constexpr int kMostInFlight = 65535; // whoever publishes keeps far below
constexpr int kFailureCodes = 0x80;

class Library
{
public:
    Library() { mosquitto_lib_init(); }
    ~Library() { mosquitto_lib_cleanup(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

MosquittoHandle &handleOf(void *object)
{
    return *static_cast<MosquittoHandle *>(object);
}

/** Properties of a message, freed with this object. MQTT 3.1.1 has none. */
class Properties
{
public:
    Properties(const MqttMessage &message, MqttConnectionSettings::Version version)
    {
        if (version != MqttConnectionSettings::Version::V5) {
            return;
        }
        addText(MQTT_PROP_CONTENT_TYPE, message.contentType);
        addText(MQTT_PROP_RESPONSE_TOPIC, message.responseTopic);
        if (!message.correlation.isEmpty()) {
            mosquitto_property_add_binary(&m_list, MQTT_PROP_CORRELATION_DATA,
                                          message.correlation.constData(),
                                          static_cast<uint16_t>(message.correlation.size()));
        }
    }
    ~Properties() { mosquitto_property_free_all(&m_list); }
    Properties(const Properties &) = delete;
    Properties &operator=(const Properties &) = delete;

    mosquitto_property *list() const { return m_list; }
    void release() { m_list = nullptr; }

private:
    void addText(int identifier, const QString &text)
    {
        if (!text.isEmpty()) {
            mosquitto_property_add_string(&m_list, identifier, text.toUtf8().constData());
        }
    }

    mosquitto_property *m_list = nullptr;
};

QString stringOf(const mosquitto_property *properties, int identifier)
{
    char *text = nullptr;
    mosquitto_property_read_string(properties, identifier, &text, false);
    QString result = QString::fromUtf8(text);
    std::free(text); // NOLINT(cppcoreguidelines-no-malloc): libmosquitto's own way
    return result;
}

QByteArray bytesOf(const mosquitto_property *properties, int identifier)
{
    void *bytes = nullptr;
    uint16_t length = 0;
    mosquitto_property_read_binary(properties, identifier, &bytes, &length, false);
    QByteArray result(static_cast<const char *>(bytes), length);
    std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): libmosquitto's own way
    return result;
}

} // namespace

MosquittoHandle::MosquittoHandle(const MqttConnectionSettings &settings)
    : m_settings(settings)
{
    static const Library library;
}

QString MosquittoHandle::prepare(const MqttBroker &broker, const std::optional<MqttMessage> &will)
{
    end();
    m_broker = broker;
    ++m_uses;
    const QByteArray id = m_settings.clientId.toUtf8();
    m_handle = mosquitto_new(id.isEmpty() ? nullptr : id.constData(), true, this);
    if (m_handle == nullptr) {
        return QString::fromLatin1("client_id '%1' cannot be used").arg(m_settings.clientId);
    }
    setOptions();
    if (will && !setWill(*will)) {
        return QLatin1String("the will cannot be sent");
    }
    QString wrong = broker.isTls ? setTls() : QString();
    return wrong.isEmpty() ? setLogin() : wrong;
}

void MosquittoHandle::setOptions()
{
    mosquitto_int_option(m_handle, MOSQ_OPT_PROTOCOL_VERSION,
                         isVersion5() ? MQTT_PROTOCOL_V5 : MQTT_PROTOCOL_V311);
    mosquitto_int_option(m_handle, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_int_option(m_handle, MOSQ_OPT_SEND_MAXIMUM, kMostInFlight);
    mosquitto_connect_v5_callback_set(m_handle, handleConnack);
    mosquitto_disconnect_v5_callback_set(m_handle, handleDisconnect);
    mosquitto_publish_v5_callback_set(m_handle, handlePublish);
    mosquitto_message_v5_callback_set(m_handle, handleMessage);
    mosquitto_subscribe_v5_callback_set(m_handle, handleSubscribe);
}

bool MosquittoHandle::setWill(const MqttMessage &will)
{
    Properties properties(will, m_settings.version);
    const int code = mosquitto_will_set_v5(
        m_handle, will.topic.toUtf8().constData(), static_cast<int>(will.payload.size()),
        will.payload.constData(), will.qos, will.isRetained, properties.list());
    if (code == MOSQ_ERR_SUCCESS) {
        properties.release(); // they are libmosquitto's now
    }
    return code == MOSQ_ERR_SUCCESS;
}

QString MosquittoHandle::setTls()
{
    QString wrong = m_tls.prepare(m_settings, m_broker.host);
    if (wrong.isEmpty()) {
        mosquitto_void_option(m_handle, MOSQ_OPT_SSL_CTX, m_tls.context());
        mosquitto_int_option(m_handle, MOSQ_OPT_SSL_CTX_WITH_DEFAULTS, 0);
    }
    return wrong;
}

// Read for each connection: a password may have been changed meanwhile.
QString MosquittoHandle::setLogin()
{
    if (m_settings.user.isEmpty()) {
        return QString();
    }
    QString wrong;
    const auto password = readSecret(m_settings.password, wrong);
    if (password) {
        mosquitto_username_pw_set(m_handle, m_settings.user.toUtf8().constData(),
                                  password->isNull() ? nullptr : password->constData());
    }
    return wrong;
}

QString MosquittoHandle::reach(const QByteArray &address)
{
    const int code = mosquitto_connect_async(m_handle, address.constData(), m_broker.port,
                                             m_settings.keepAliveS);
    const int error = errno;
    if (code == MOSQ_ERR_ERRNO) {
        return QString::fromLocal8Bit(std::strerror(error));
    }
    return code == MOSQ_ERR_SUCCESS && socket() >= 0 ? QString() : textOf(code);
}

void MosquittoHandle::end()
{
    mosquitto_destroy(m_handle);
    m_handle = nullptr;
    m_tls.clear();
    m_mayBeRefused.clear();
    news = BrokerNews();
}

void MosquittoHandle::sayGoodbye()
{
    mosquitto_disconnect(m_handle);
}

int MosquittoHandle::socket() const
{
    return mosquitto_socket(m_handle);
}

bool MosquittoHandle::wantsToWrite() const
{
    return mosquitto_want_write(m_handle);
}

QString MosquittoHandle::read()
{
    int code = mosquitto_loop_read(m_handle, 1);
    // What TLS has decrypted already no socket tells of. It goes with the connection.
    while (code == MOSQ_ERR_SUCCESS && socket() >= 0) {
        const auto *ssl = static_cast<const SSL *>(mosquitto_ssl_get(m_handle));
        if (ssl == nullptr || SSL_pending(ssl) == 0) {
            break;
        }
        code = mosquitto_loop_read(m_handle, 1);
    }
    return textOf(code);
}

QString MosquittoHandle::write()
{
    return textOf(mosquitto_loop_write(m_handle, 1));
}

QString MosquittoHandle::doWhatIsDue()
{
    return textOf(mosquitto_loop_misc(m_handle));
}

QString MosquittoHandle::subscribe(const QString &filter, int qos)
{
    // What it publishes itself is no news to it.
    const int options = isVersion5() ? MQTT_SUB_OPT_NO_LOCAL : 0;
    return textOf(mosquitto_subscribe_v5(m_handle, nullptr, filter.toUtf8().constData(), qos,
                                         options, nullptr));
}

int MosquittoHandle::publish(const MqttMessage &message, QString &wrong)
{
    const Properties properties(message, m_settings.version);
    int id = 0;
    const int code = mosquitto_publish_v5(
        m_handle, &id, message.topic.toUtf8().constData(), static_cast<int>(message.payload.size()),
        message.payload.constData(), message.qos, message.isRetained, properties.list());
    switch (code) {
    case MOSQ_ERR_SUCCESS:
        if (message.mayBeRefused) {
            m_mayBeRefused.insert(id);
        }
        return tokenOf(id);
    case MOSQ_ERR_NO_CONN:
    case MOSQ_ERR_CONN_LOST:
    case MOSQ_ERR_ERRNO:
    case MOSQ_ERR_TLS:
        wrong = textOf(code);
        break;
    default:
        break;
    }
    return 0;
}

QString MosquittoHandle::textOf(int code) const
{
    if (code == MOSQ_ERR_SUCCESS || !news.refusal.isEmpty()) {
        return news.refusal;
    }
    if (!m_tls.fault().isEmpty()) {
        return m_tls.fault();
    }
    if (m_broker.isTls && !news.isGreeted) {
        return QLatin1String("the connection ended while TLS began: does it speak TLS there, and "
                             "want a certificate of its clients?");
    }
    if (code == MOSQ_ERR_CONN_LOST || code == MOSQ_ERR_ERRNO || code == MOSQ_ERR_NO_CONN) {
        return QLatin1String("the connection was lost");
    }
    return QLatin1String(mosquitto_strerror(code));
}

void MosquittoHandle::handleConnack(mosquitto * /*own*/, void *object, int code, int /*flags*/,
                                    const mqtt5__property * /*properties*/)
{
    MosquittoHandle &self = handleOf(object);
    self.news.isGreeted = code == 0;
    switch (code) {
    case 0:
        break;
    case CONNACK_REFUSED_BAD_USERNAME_PASSWORD:
    case CONNACK_REFUSED_NOT_AUTHORIZED:
    case MQTT_RC_BAD_USERNAME_OR_PASSWORD:
    case MQTT_RC_NOT_AUTHORIZED:
        self.news.refusal = QLatin1String("it does not accept the user or the password");
        break;
    default:
        self.news.refusal = QLatin1String("it refused: ") +
                            QLatin1String(self.isVersion5() ? mosquitto_reason_string(code)
                                                            : mosquitto_connack_string(code));
    }
}

void MosquittoHandle::handleDisconnect(mosquitto * /*own*/, void *object, int code,
                                       const mqtt5__property * /*properties*/)
{
    QString &refusal = handleOf(object).news.refusal;
    if (!refusal.isEmpty()) {
        return;
    }
    if (code == MQTT_RC_SESSION_TAKEN_OVER) {
        refusal = QLatin1String("another client came with the same client_id");
    } else if (code >= kFailureCodes) {
        refusal = QLatin1String("it ended the connection: ") +
                  QLatin1String(mosquitto_reason_string(code));
    } else if (code == MOSQ_ERR_KEEPALIVE) {
        refusal = QLatin1String("it does not answer any more");
    }
}

// Of MQTT 5: what was refused has not arrived.
void MosquittoHandle::handlePublish(mosquitto * /*own*/, void *object, int id, int code,
                                    const mqtt5__property * /*properties*/)
{
    MosquittoHandle &self = handleOf(object);
    const bool mayBeRefused = self.m_mayBeRefused.remove(id);
    if (code >= kFailureCodes && !mayBeRefused) {
        self.news.refusal =
            QLatin1String("it refused a message: ") + QLatin1String(mosquitto_reason_string(code));
    } else {
        self.news.published.append(self.tokenOf(id));
    }
}

void MosquittoHandle::handleMessage(mosquitto * /*own*/, void *object,
                                    const mosquitto_message *message,
                                    const mqtt5__property *properties)
{
    MqttMessage received;
    received.topic = QString::fromUtf8(message->topic);
    received.payload = QByteArray(static_cast<const char *>(message->payload), message->payloadlen);
    received.qos = message->qos;
    received.isRetained = message->retain;
    received.contentType = stringOf(properties, MQTT_PROP_CONTENT_TYPE);
    received.responseTopic = stringOf(properties, MQTT_PROP_RESPONSE_TOPIC);
    received.correlation = bytesOf(properties, MQTT_PROP_CORRELATION_DATA);
    handleOf(object).news.received.append(received);
}

void MosquittoHandle::handleSubscribe(mosquitto * /*own*/, void *object, int /*id*/, int count,
                                      const int *granted, const mqtt5__property * /*properties*/)
{
    for (int i = 0; i < count; ++i) {
        if (granted[i] >= kFailureCodes) {
            handleOf(object).news.refusal = QLatin1String("it refuses what the gateway subscribes");
        }
    }
}

} // namespace cnet::gateway
