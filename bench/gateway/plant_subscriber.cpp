// What arrives at a broker from a plant whose PLCs count milliseconds in each register: register
// number n holds (time + n) modulo 65536, so that a value says when the PLC was asked for it, and
// what was between it and the value before is a change at each millisecond that nobody was told of
// before this one came.
//
//   plant_subscriber PORT ZERO_MS SECONDS
//
// ZERO_MS is when the PLCs' clock was 0, in milliseconds of CLOCK_MONOTONIC. Topics are
// plant/LINE/STATION or plant/LINE/STATION/TAG, tags are t0, t1... for D_W:0, D_W:1...

#include "delays.h"

#include <QByteArray>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <mosquitto.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kTurn = 65536;
// A reading is never so old; what seems to be is a moment before its time, by what clocks differ.
constexpr double kOldest = 60000;

double nowMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

double wallMs()
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

class Seen
{
public:
    explicit Seen(double zeroMs)
        : m_zeroMs(zeroMs)
    {}

    void take(const mosquitto_message &message)
    {
        const double atMs = nowMs() - m_zeroMs;
        ++messages;
        const QByteArray topic(message.topic);
        const auto levels = topic.split('/');
        const auto body =
            QByteArray::fromRawData(static_cast<const char *>(message.payload), message.payloadlen);
        const QJsonObject object = QJsonDocument::fromJson(body).object();
        if (levels.size() == 4 && levels.at(1) != "status") {
            add(topic, levels.at(3).mid(1).toInt(), object, atMs);
        } else if (levels.size() == 3 && levels.at(1) != "status") {
            for (auto it = object.begin(); it != object.end(); ++it) {
                const int number = it.key().mid(1).toInt();
                add(topic + '/' + QByteArray::number(number), number, it.value().toObject(), atMs);
            }
        }
    }

    long long values = 0;
    long long bad = 0;
    long long messages = 0;
    bench::Delays sinceChange; ///< of each change of the PLC
    bench::Delays sinceAsked;  ///< from when the PLC was asked
    bench::Delays sinceRead;   ///< from when the gateway had the answer
    bench::Delays rounds;      ///< from one reading of a value to the next

private:
    void add(const QByteArray &tag, int number, const QJsonObject &value, double atMs)
    {
        if (value.value(QLatin1String("q")).toString() != QLatin1String("good")) {
            ++bad;
            return;
        }
        ++values;
        const double told = value.value(QLatin1String("v")).toDouble();
        double age = std::fmod(atMs - told + number, kTurn);
        age += age < 0 ? kTurn : 0;
        age = age > kOldest ? 0 : age;
        const double asked = atMs - age;
        const int ageMs = static_cast<int>(age);
        sinceAsked.add(ageMs, ageMs);
        const int readMs = static_cast<int>(wallMs() - value.value(QLatin1String("t")).toDouble());
        sinceRead.add(readMs, readMs);
        const auto before = m_asked.constFind(tag);
        if (before != m_asked.constEnd() && asked - *before >= 1) {
            const int round = static_cast<int>(asked - *before);
            rounds.add(round, round);
            sinceChange.add(ageMs, ageMs + round - 1);
        }
        m_asked.insert(tag, asked);
    }

    double m_zeroMs;
    QHash<QByteArray, double> m_asked; ///< of the value that came last
};

void print(const char *name, const bench::Delays &delays)
{
    std::printf(", \"%s\": [%d, %d, %d]", name, delays.percentile(0.5), delays.percentile(0.99),
                delays.percentile(1));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: plant_subscriber PORT ZERO_MS SECONDS\n");
        return 2;
    }
    Seen seen(std::strtod(argv[2], nullptr));
    mosquitto_lib_init();
    mosquitto *const client = mosquitto_new(nullptr, true, &seen);
    mosquitto_message_callback_set(client,
                                   [](mosquitto *, void *own, const mosquitto_message *message) {
                                       static_cast<Seen *>(own)->take(*message);
                                   });
    if (mosquitto_connect(client, "127.0.0.1", QByteArray(argv[1]).toInt(), 60) !=
            MOSQ_ERR_SUCCESS ||
        mosquitto_subscribe(client, nullptr, "plant/#", 0) != MOSQ_ERR_SUCCESS) {
        std::fprintf(stderr, "no broker at port %s\n", argv[1]);
        return 1;
    }
    const double beganMs = nowMs();
    const double endMs = beganMs + std::strtod(argv[3], nullptr) * 1000;
    int failed = MOSQ_ERR_SUCCESS;
    while (nowMs() < endMs && failed == MOSQ_ERR_SUCCESS) {
        failed = mosquitto_loop(client, 20, 1);
    }
    std::printf("{\"seconds\": %.3f, \"values\": %lld, \"bad\": %lld, \"messages\": %lld",
                (nowMs() - beganMs) / 1000, seen.values, seen.bad, seen.messages);
    print("change", seen.sinceChange);
    print("asked", seen.sinceAsked);
    print("read", seen.sinceRead);
    print("rounds", seen.rounds);
    std::printf("}\n");
    mosquitto_destroy(client);
    return failed == MOSQ_ERR_SUCCESS ? 0 : 1;
}
