#include "gateway/toml/time_text.h"

#include "gateway/toml/config_units.h"

#include <QDateTime>

namespace cnet::gateway {

std::optional<qint64> parseTime(const QString &text, qint64 nowMs)
{
    if (const auto ago = parseDuration(text)) {
        return nowMs - *ago;
    }
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() ? std::optional<qint64>(time.toMSecsSinceEpoch()) : std::nullopt;
}

QString utcText(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(Qt::ISODateWithMs);
}

} // namespace cnet::gateway
