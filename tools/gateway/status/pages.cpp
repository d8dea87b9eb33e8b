#include "gateway/status/pages.h"

#include "gateway/status/health.h"
#include "gateway/status/metrics.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace cnet::gateway {

namespace {

constexpr int kGood = 200;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kWrongMethod = 405;
constexpr int kNotAvailable = 503;
const char kJson[] = "application/json";

QByteArray bytesOf(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

Page healthPage(const Snapshot &snapshot, qint64 nowMs)
{
    const Health health = healthOf(snapshot, nowMs);
    return {health.isGood() ? kGood : kNotAvailable, kJson, bytesOf(healthJson(health))};
}

/// "[::1]" of "[::1]:9464"; nothing where it is none.
QByteArray withoutPort(const QByteArray &place)
{
    static const QRegularExpression form(
        QLatin1String("\\A(\\[[^\\]]*\\]|[^:]*)(:[0-9]{0,5})?\\z"));
    return form.match(QString::fromLatin1(place.constData(), place.size()))
        .captured(1)
        .toLatin1()
        .toLower();
}

} // namespace

bool isForThisMachine(const QByteArray &host, const QByteArray &own)
{
    const QByteArray name = withoutPort(host);
    return !name.isEmpty() && (name == "localhost" || name == "127.0.0.1" || name == "[::1]" ||
                               name == withoutPort(own));
}

Page strangeHostPage()
{
    Page page;
    page.code = kForbidden;
    page.body = "Ask for localhost.\n";
    return page;
}

Page pageFor(const QByteArray &method, const QByteArray &path, const Snapshot *snapshot,
             qint64 nowMs)
{
    Page page;
    if (path != "/metrics" && path != "/health" && path != "/status") {
        page.code = kNotFound;
        page.body = "There are /metrics, /health and /status.\n";
    } else if (method != "GET" && method != "HEAD") {
        page.code = kWrongMethod;
        page.body = "It can only be read.\n";
    } else if (snapshot == nullptr) {
        page.code = kNotAvailable;
        page.body = "The gateway begins.\n";
    } else if (path == "/health") {
        page = healthPage(*snapshot, nowMs);
    } else if (path == "/status") {
        page = {kGood, kJson, bytesOf(statusJson(*snapshot, nowMs))};
    } else {
        page.type = "text/plain; version=0.0.4; charset=utf-8";
        page.body = metricsText(*snapshot, processUsage(), nowMs);
    }
    return page;
}

} // namespace cnet::gateway
