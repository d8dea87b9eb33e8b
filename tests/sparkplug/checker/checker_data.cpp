#include "sparkplug/checker/checker.h"

namespace spcheck {

void Checker::seeData(const Topic &topic, const ReadMessage &read)
{
    const bool isNode = topic.kind == "NDATA";
    const Teller teller = isNode ? m_session.node : m_session.devices.value(topic.device);
    if (!isNode) {
        expect("death.no-data", teller.life != Teller::Life::Dead, QLatin1String("it is dead"));
        expect("dbirth.first", teller.life != Teller::Life::Unborn, QLatin1String("no DBIRTH yet"));
    }
    if (m_session.toBear.isEmpty()) {
        expect("rebirth.devices", true);
    } else {
        expect("rebirth.devices", false, QString::fromUtf8(*m_session.toBear.begin()));
        m_session.toBear.clear();
    }
    if (teller.life != Teller::Life::Alive) {
        return;
    }
    quint64 last = 0;
    for (const ReadMetric &metric : read.metrics) {
        const QString where = metric.alias ? QString::fromLatin1("alias %1").arg(*metric.alias)
                                           : QString::fromUtf8(metric.name.value_or(QByteArray()));
        seeDataMetric(teller, metric, where);
        const quint64 now = metric.timestamp.value_or(last);
        expect("data.chronological", now >= last, where);
        last = now;
        if (metric.isHistorical) {
            const bool isPast = now <= read.timestamp.value_or(0) || !m_subject.isClockSteady;
            expect("history.form", now > 0 && isPast, where);
        }
    }
}

void Checker::seeDataMetric(const Teller &teller, const ReadMetric &metric, const QString &where)
{
    const Born *born = nullptr;
    const auto byAlias = teller.byAlias.constFind(metric.alias.value_or(0));
    const auto byName = teller.byName.constFind(metric.name.value_or(QByteArray()));
    if (metric.alias && byAlias != teller.byAlias.cend()) {
        born = &*byAlias;
    } else if (!metric.alias && byName != teller.byName.cend()) {
        born = &*byName;
    }
    expect("data.known", born != nullptr, where);
    expect("data.datatype", !metric.datatype, where);
    expect("data.timestamp", metric.timestamp.has_value(), where);
    if (born == nullptr) {
        return;
    }
    expect("data.alias", !born->hasAlias || !metric.name, where);
    const bool hasValue = metric.isNull != (metric.field != Field::None);
    expect("data.type", hasValue && fits(metric, born->datatype), where);
    seeProperties(metric, where);
}

void Checker::seeProperties(const ReadMetric &metric, const QString &where)
{
    for (const ReadProperty &property : metric.properties) {
        if (property.key == "Quality") {
            const bool isKnown =
                property.number == 0 || property.number == 192 || property.number == 500;
            expect("quality.form", property.type == 3 && property.field == Field::Int && isKnown,
                   where);
        }
    }
}

bool Checker::fits(const ReadMetric &metric, quint64 datatype)
{
    if (metric.isNull) {
        return metric.field == Field::None;
    }
    const auto isSigned = [&metric](int bits) {
        // Some senders fill up with the sign, others with zeros.
        const quint64 above = metric.number >> (bits - 1);
        return metric.number >> bits == 0 || above == (quint64(1) << (33 - bits)) - 1;
    };
    switch (datatype) {
    case 1:
        return metric.field == Field::Int && isSigned(8);
    case 2:
        return metric.field == Field::Int && isSigned(16);
    case 5:
        return metric.field == Field::Int && metric.number < 256;
    case 6:
        return metric.field == Field::Int && metric.number < 65536;
    case 3:
    case 7:
        return metric.field == Field::Int && metric.number >> 32 == 0;
    case 4:
    case 8:
    case 13:
        return metric.field == Field::Long;
    case 9:
        return metric.field == Field::Float;
    case 10:
        return metric.field == Field::Double;
    case 11:
        return metric.field == Field::Truth;
    case 12:
    case 14:
        return metric.field == Field::Text;
    default:
        return true;
    }
}

} // namespace spcheck
