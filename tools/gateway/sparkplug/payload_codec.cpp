#include "gateway/sparkplug/payload_codec.h"

#include "payload.pb.h"

namespace cnet::gateway {

namespace {

constexpr int kMostBytes = 64 * 1000;
constexpr int kMostMetrics = 1000;
const char *const kQuality = "Quality";
const char *const kCause = "Cause";
const char *const kUnit = "engUnit";

std::string utf8(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

/// The two's complement of a whole number, cut to what its field holds.
quint64 bitsOf(const Scalar &value)
{
    if (const auto *number = std::get_if<quint64>(&value)) {
        return *number;
    }
    return static_cast<quint64>(std::get<qint64>(value));
}

void setValue(wire::Metric &to, Datatype datatype, const Scalar &value)
{
    if (std::holds_alternative<std::monostate>(value)) {
        to.set_is_null(true);
        return;
    }
    switch (datatype) {
    case Datatype::Int16:
    case Datatype::Int32:
    case Datatype::UInt16:
    case Datatype::UInt32:
        to.set_int_value(static_cast<quint32>(bitsOf(value)));
        break;
    case Datatype::Int64:
    case Datatype::UInt64:
        to.set_long_value(bitsOf(value));
        break;
    case Datatype::Float:
        to.set_float_value(static_cast<float>(std::get<double>(value)));
        break;
    case Datatype::Double:
        to.set_double_value(std::get<double>(value));
        break;
    case Datatype::Boolean:
        to.set_boolean_value(std::get<bool>(value));
        break;
    case Datatype::String:
        to.set_string_value(utf8(std::get<QString>(value)));
        break;
    }
}

void addText(wire::PropertySet &to, const char *key, const QString &text)
{
    if (!text.isEmpty()) {
        to.add_keys(key);
        wire::PropertyValue &value = *to.add_values();
        value.set_type(static_cast<quint32>(Datatype::String));
        value.set_string_value(utf8(text));
    }
}

void setProperties(wire::Metric &to, const Metric &metric)
{
    if (!metric.quality && metric.cause.isEmpty() && metric.unit.isEmpty()) {
        return;
    }
    wire::PropertySet &properties = *to.mutable_properties();
    if (metric.quality) {
        properties.add_keys(kQuality);
        wire::PropertyValue &value = *properties.add_values();
        value.set_type(static_cast<quint32>(Datatype::Int32));
        value.set_int_value(static_cast<quint32>(*metric.quality));
    }
    addText(properties, kCause, metric.cause);
    addText(properties, kUnit, metric.unit);
}

void setMetric(wire::Metric &to, const Metric &metric)
{
    if (!metric.name.isEmpty()) {
        to.set_name(utf8(metric.name));
    }
    if (metric.alias) {
        to.set_alias(*metric.alias);
    }
    to.set_timestamp(static_cast<quint64>(metric.atMs));
    if (metric.tellsDatatype) {
        to.set_datatype(static_cast<quint32>(metric.datatype));
    }
    if (metric.isHistorical) {
        to.set_is_historical(true);
    }
    setProperties(to, metric);
    setValue(to, metric.datatype, metric.value);
}

CameValue valueOf(const wire::Metric &metric)
{
    switch (metric.value_case()) {
    case wire::Metric::kIntValue:
        return metric.int_value();
    case wire::Metric::kLongValue:
        return quint64(metric.long_value());
    case wire::Metric::kFloatValue:
        return metric.float_value();
    case wire::Metric::kDoubleValue:
        return metric.double_value();
    case wire::Metric::kBooleanValue:
        return metric.boolean_value();
    case wire::Metric::kStringValue:
        return QString::fromStdString(metric.string_value());
    case wire::Metric::VALUE_NOT_SET:
        break;
    }
    return {};
}

} // namespace

QByteArray encodePayload(const Payload &payload)
{
    wire::Payload message;
    message.set_timestamp(static_cast<quint64>(payload.atMs));
    for (const Metric &metric : payload.metrics) {
        setMetric(*message.add_metrics(), metric);
    }
    if (payload.seq) {
        message.set_seq(static_cast<quint64>(*payload.seq));
    }
    QByteArray bytes(static_cast<int>(message.ByteSizeLong()), Qt::Uninitialized);
    message.SerializeWithCachedSizesToArray(reinterpret_cast<quint8 *>(bytes.data()));
    return bytes;
}

std::optional<QVector<CameMetric>> decodePayload(const QByteArray &bytes)
{
    wire::Payload message;
    if (bytes.size() > kMostBytes ||
        !message.ParseFromArray(bytes.constData(), static_cast<int>(bytes.size())) ||
        message.metrics_size() > kMostMetrics) {
        return std::nullopt;
    }
    QVector<CameMetric> metrics;
    for (const wire::Metric &metric : message.metrics()) {
        CameMetric came;
        came.name = QString::fromStdString(metric.name());
        if (metric.has_alias()) {
            came.alias = metric.alias();
        }
        if (metric.has_datatype()) {
            came.datatype = metric.datatype();
        }
        came.value = metric.is_null() ? CameValue() : valueOf(metric);
        metrics.append(came);
    }
    return metrics;
}

} // namespace cnet::gateway
