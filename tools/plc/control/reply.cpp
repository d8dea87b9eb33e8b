#include "plc/control/reply.h"

#include "plc/setup/one_line.h"

#include <QJsonDocument>

namespace plc {

namespace {

QByteArray jsonOf(const Reply &reply)
{
    QJsonObject object = reply.data;
    object.insert(QLatin1String("ok"), reply.isGood());
    if (!reply.isGood()) {
        object.insert(QLatin1String("error"), oneLine(reply.error));
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray Reply::bytes(ReplyFormat format) const
{
    if (format == ReplyFormat::Json) {
        return jsonOf(*this);
    }
    if (!isGood()) {
        return "error: " + oneLine(error).toUtf8() + '\n';
    }
    return lines.isEmpty() ? QByteArray("ok\n") : lines.join(QLatin1Char('\n')).toUtf8() + '\n';
}

Reply failure(const QString &error)
{
    Reply reply;
    reply.error = error;
    return reply;
}

} // namespace plc
