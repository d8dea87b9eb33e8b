#include "gateway/write/audit_line.h"

#include "gateway/sinks/json_object.h"

#include <QJsonDocument>

#include <array>

namespace cnet::gateway {

namespace {

// Longer ones are refused; here they are cut.
constexpr int kLongestText = 2000;
constexpr double kLatestMs = 1e15;

using Outcome = WriteAnswer::Outcome;
constexpr std::array<Outcome, 4> kOutcomes{Outcome::Taken, Outcome::Refused, Outcome::NoAnswer,
                                           Outcome::Superseded};

/// JSON escapes the first 32 characters only.
QByteArray escaped(const QJsonObject &object)
{
    const QString json = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    QString line;
    line.reserve(json.size());
    for (const QChar letter : json) {
        if (letter.isPrint() || letter.isSurrogate()) {
            line += letter;
        } else {
            line += QString::fromLatin1("\\u%1").arg(letter.unicode(), 4, 16, QLatin1Char('0'));
        }
    }
    return line.toUtf8();
}

void put(QJsonObject &object, const char *key, const QString &text)
{
    if (!text.isEmpty()) {
        object.insert(QLatin1String(key), text.left(kLongestText));
    }
}

QString textIn(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString();
}

QJsonObject headOf(const char *what, qint64 atMs, const WriteReply &reply)
{
    QJsonObject object;
    put(object, "what", QLatin1String(what));
    object.insert(QLatin1String("t"), atMs);
    put(object, "sink", reply.sink);
    put(object, "reply", reply.topic);
    return object;
}

QJsonObject objectOf(const char *what, const WriteRequest &request, qint64 atMs)
{
    QJsonObject object = headOf(what, atMs, request.reply);
    put(object, "id", request.id);
    put(object, "line", request.line);
    put(object, "tag", request.tag);
    put(object, "value", request.value);
    if (request.arrival == WriteRequest::Arrival::Retained) {
        object.insert(QLatin1String("retained"), true);
    }
    return object;
}

} // namespace

QByteArray auditLine(const WriteRequest &request, qint64 atMs, Delivery delivery)
{
    return escaped(objectOf(delivery == Delivery::First ? "request" : "repeat", request, atMs));
}

QByteArray auditLine(const WriteRequest &request, const WriteAnswer &refused)
{
    QJsonObject object = objectOf("refusal", request, refused.atMs);
    put(object, "outcome", outcomeText(refused.outcome));
    put(object, "reason", refused.reason);
    return escaped(object);
}

QByteArray auditLine(const WriteAnswer &answer)
{
    QJsonObject object = headOf("result", answer.atMs, answer.reply);
    put(object, "id", answer.id);
    put(object, "line", answer.line);
    put(object, "tag", answer.tag);
    put(object, "outcome", outcomeText(answer.outcome));
    put(object, "reason", answer.reason);
    put(object, "is", answer.isNow);
    return escaped(object);
}

std::optional<AuditLine> readAuditLine(const QByteArray &line)
{
    QString unused;
    const QJsonObject object = readJsonObject(line, unused).value_or(QJsonObject());
    const QString what = textIn(object, "what");
    AuditLine read;
    read.what =
        what == QLatin1String("request") ? AuditLine::What::Request : AuditLine::What::Result;
    WriteAnswer &answer = read.answer;
    answer.reply.sink = textIn(object, "sink");
    answer.reply.topic = textIn(object, "reply");
    answer.id = textIn(object, "id");
    answer.line = textIn(object, "line");
    answer.tag = textIn(object, "tag");
    answer.reason = textIn(object, "reason");
    answer.isNow = textIn(object, "is");
    const double atMs = object.value(QLatin1String("t")).toDouble();
    answer.atMs = atMs > 0 && atMs < kLatestMs ? static_cast<qint64>(atMs) : 0;
    read.value = textIn(object, "value");
    read.isRetained = object.value(QLatin1String("retained")).toBool();
    if (read.what == AuditLine::What::Request) {
        return read;
    }
    for (const Outcome outcome : kOutcomes) {
        if (what == QLatin1String("result") && textIn(object, "outcome") == outcomeText(outcome)) {
            answer.outcome = outcome;
            return read;
        }
    }
    return std::nullopt;
}

} // namespace cnet::gateway
