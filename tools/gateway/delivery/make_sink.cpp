#include "gateway/delivery/make_sink.h"

#include "gateway/mosquitto/mosquitto_connection.h"
#include "gateway/mqtt/mqtt_sink.h"
#include "gateway/postgresql/postgresql_sink.h"
#include "gateway/sinks/sqlite_sink.h"
#include "gateway/sparkplug/sparkplug_sink.h"

namespace cnet::gateway {

namespace {

struct Maker
{
    Clock &clock;

    std::unique_ptr<Sink> operator()(const MqttSettings &settings) const
    {
        return std::make_unique<MqttSink>(
            settings, std::make_unique<MosquittoConnection>(settings.connection, clock), clock);
    }
    std::unique_ptr<Sink> operator()(const SparkplugSettings &settings) const
    {
        return std::make_unique<SparkplugSink>(
            settings, std::make_unique<MosquittoConnection>(settings.connection, clock), clock);
    }
    std::unique_ptr<Sink> operator()(const SqliteSettings &settings) const
    {
        return std::make_unique<SqliteSink>(settings, clock);
    }

    std::unique_ptr<Sink> operator()(const PostgresqlSettings &settings) const
    {
        return std::make_unique<PostgresqlSink>(settings, clock);
    }
};

} // namespace

std::unique_ptr<Sink> makeSink(const SinkSettings &settings, Clock &clock)
{
    return std::visit(Maker{clock}, settings);
}

} // namespace cnet::gateway
