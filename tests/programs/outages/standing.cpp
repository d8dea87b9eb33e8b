#include "outages/standing.h"

#include "gateway/service/listening.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

Standing standingIn(const QString &folder)
{
    QString unused;
    const auto page = cnet::gateway::askInFolder(folder, "/status", unused);
    const QJsonObject status = QJsonDocument::fromJson(page.value_or(QByteArray())).object();
    Standing standing;
    const QJsonArray sinks = status.value(QLatin1String("sinks")).toArray();
    const QJsonArray lines = status.value(QLatin1String("lines")).toArray();
    for (const auto &sink : sinks) {
        ++standing.sinks;
        const auto dropped = sink.toObject().value(QLatin1String("dropped_values"));
        standing.losingSinks += dropped.toDouble() > 0 ? 1 : 0;
        standing.waitingBatches += sink.toObject().value(QLatin1String("waiting_batches")).toInt();
    }
    for (const auto &line : lines) {
        standing.isLineOpen =
            standing.isLineOpen || line.toObject().value(QLatin1String("open")).toBool();
    }
    standing.ageMs = qint64(status.value(QLatin1String("age_ms")).toDouble());
    return standing;
}
