#include "panel/replay/replay_output.h"

#include "host/address/value_text.h"
#include "host/decode/frame_text.h"
#include "host/time/clock.h"
#include "panel/reports/decode_output.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace cnet::panel {

namespace {

constexpr double kNsPerSecond = 1000000000;

QString summaryOf(const DecodedFrame &frame)
{
    return frame.bytes.isEmpty() ? QLatin1String("no answer") : frameSummary(frame);
}

QJsonValue frameJson(const DecodedFrame &frame)
{
    return frame.bytes.isEmpty() ? QJsonValue() : QJsonValue(decodedJson(frame));
}

QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

QByteArray differenceText(const RecordedFrame &request, qint64 sinceStartNs,
                          const AnswerComparison &comparison)
{
    QString text =
        QString::fromLatin1("packet %1, +%2 s: %3\n  request   %4\n")
            .arg(QString::number(request.number),
                 QString::number(static_cast<double>(sinceStartNs) / kNsPerSecond, 'f', 3),
                 QLatin1String(changeText(comparison.change)), frameSummary(comparison.request));
    text += QString::fromLatin1("  recorded  %1\n  now       %2\n")
                .arg(summaryOf(comparison.recorded), summaryOf(comparison.now));
    for (const ChangedValue &value : comparison.values) {
        text += QString::fromLatin1("  %1: %2 -> %3\n")
                    .arg(value.item.text(), valueText(value.recorded, value.isBit),
                         valueText(value.now, value.isBit));
    }
    return text.toLocal8Bit();
}

QByteArray differenceJson(const RecordedFrame &request, qint64 sinceStartNs,
                          const AnswerComparison &comparison)
{
    QJsonArray values;
    for (const ChangedValue &value : comparison.values) {
        values.append(QJsonObject{{QLatin1String("item"), value.item.text()},
                                  {QLatin1String("register"), value.item.reg.name},
                                  {QLatin1String("address"), value.item.addressText(0)},
                                  {QLatin1String("recorded"), value.recorded},
                                  {QLatin1String("now"), value.now}});
    }
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(request.timeNs / kNsPerMs, Qt::UTC);
    return line({{QLatin1String("event"), QLatin1String("difference")},
                 {QLatin1String("packet"), request.number},
                 {QLatin1String("time"), time.toString(Qt::ISODateWithMs)},
                 {QLatin1String("seconds"), static_cast<double>(sinceStartNs) / kNsPerSecond},
                 {QLatin1String("kind"), QLatin1String(changeText(comparison.change))},
                 {QLatin1String("request"), decodedJson(comparison.request)},
                 {QLatin1String("recorded"), frameJson(comparison.recorded)},
                 {QLatin1String("now"), frameJson(comparison.now)},
                 {QLatin1String("values"), values}});
}

QByteArray summaryText(const ReplaySummary &summary)
{
    QString text = QString::fromLatin1("%1 of %2: %3 same")
                       .arg(summary.sent)
                       .arg(counted(summary.requests, "request"))
                       .arg(summary.same());
    for (auto it = summary.changes.cbegin(); it != summary.changes.cend(); ++it) {
        if (it.key() != AnswerChange::None) {
            text += QString::fromLatin1(", %1 %2")
                        .arg(it.value())
                        .arg(QLatin1String(changeText(it.key())));
        }
    }
    if (summary.notCompared > 0) {
        text += QString::fromLatin1(", %1 whose answer was not recorded").arg(summary.notCompared);
    }
    return text.toLocal8Bit() + '\n';
}

QByteArray summaryJson(const ReplaySummary &summary)
{
    QJsonObject differences;
    for (auto it = summary.changes.cbegin(); it != summary.changes.cend(); ++it) {
        if (it.key() != AnswerChange::None) {
            differences.insert(QLatin1String(changeText(it.key())), it.value());
        }
    }
    return line({{QLatin1String("event"), QLatin1String("end")},
                 {QLatin1String("requests"), summary.requests},
                 {QLatin1String("sent"), summary.sent},
                 {QLatin1String("same"), summary.same()},
                 {QLatin1String("not_compared"), summary.notCompared},
                 {QLatin1String("differences"), differences}});
}

} // namespace cnet::panel
