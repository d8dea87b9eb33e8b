#include "sparkplug/checker/checker.h"

#include <utility>

namespace spcheck {

namespace {

constexpr quint64 kLastDatatype = 34;

QString textOf(const ReadMetric &metric)
{
    return metric.name ? QString::fromUtf8(*metric.name)
                       : QString::fromLatin1("alias %1").arg(metric.alias.value_or(0));
}

} // namespace

void Checker::seeNodeBirth(const ReadMessage &read)
{
    const QByteArray place = m_subject.group + '/';
    expect("subscribe.ncmd", hasSubscribed("spBv1.0/" + place + "NCMD/" + m_subject.node),
           QLatin1String("not before the birth"));
    expect("subscribe.dcmd", hasSubscribed("spBv1.0/" + place + "DCMD/" + m_subject.node + "/x"),
           QLatin1String("not before the birth"));
    if (!m_subject.host.isEmpty()) {
        expect("subscribe.state", hasSubscribed("spBv1.0/STATE/" + m_subject.host),
               QLatin1String("not before the birth"));
        expect("state.wait", m_session.hostOnline, QLatin1String("the host is not online"));
    }
    if (std::exchange(m_session.isRebirthWanted, false)) {
        expect("rebirth.answered", true);
    }
    m_session.toBear.clear();
    for (auto device = m_session.devices.begin(); device != m_session.devices.end(); ++device) {
        if (device->life == Teller::Life::Alive) {
            m_session.toBear.insert(device.key());
        }
    }
    m_session.isBorn = true;
    m_session.devices.clear();
    m_session.aliases.clear();
    m_session.node = Teller();
    m_session.node.life = Teller::Life::Alive;
    seeBirthMetrics(m_session.node, read);
    int bdSeq = -1;
    bool hasRebirth = false;
    for (const ReadMetric &metric : read.metrics) {
        if (metric.name == "bdSeq") {
            bdSeq = metric.datatype == 4U ? static_cast<int>(metric.number) : -1;
        } else if (metric.name == "Node Control/Rebirth") {
            hasRebirth = metric.datatype == 11U && metric.field == Field::Truth &&
                         metric.number == 0 && !metric.alias;
        }
    }
    expect("nbirth.bdseq", bdSeq >= 0 && bdSeq == m_session.bdSeq,
           QString::fromLatin1("%1, the will has %2").arg(bdSeq).arg(m_session.bdSeq));
    expect("nbirth.rebirth", hasRebirth, QLatin1String("expected Boolean, false, no alias"));
}

void Checker::seeDeviceBirth(const QByteArray &device, const ReadMessage &read)
{
    for (auto other = m_session.devices.begin(); other != m_session.devices.end(); ++other) {
        const bool isTwin = other.key() != device && other.key().toLower() == device.toLower();
        expect("ids.case", !isTwin, QString::fromUtf8(other.key()));
    }
    m_session.toBear.remove(device);
    Teller &teller = m_session.devices[device];
    // A birth that takes the place of another one frees its aliases.
    for (auto alias = teller.byAlias.begin(); alias != teller.byAlias.end(); ++alias) {
        m_session.aliases.remove(alias.key());
    }
    teller = Teller();
    teller.life = Teller::Life::Alive;
    seeBirthMetrics(teller, read);
}

void Checker::seeBirthMetrics(Teller &teller, const ReadMessage &read)
{
    QSet<QString> names;
    for (const ReadMetric &metric : read.metrics) {
        const bool hasValue = metric.isNull != (metric.field != Field::None);
        const bool isWhole = metric.name && !metric.name->isEmpty() && metric.datatype &&
                             *metric.datatype >= 1 && *metric.datatype <= kLastDatatype &&
                             metric.timestamp && hasValue && !metric.isHistorical;
        expect("birth.metrics", isWhole, textOf(metric));
        if (!isWhole) {
            continue;
        }
        expect("data.type", fits(metric, *metric.datatype), textOf(metric));
        seeProperties(metric, textOf(metric));
        const QString lower = QString::fromUtf8(*metric.name).toLower();
        expect("birth.case", !names.contains(lower), textOf(metric));
        names.insert(lower);
        const Born born{*metric.name, *metric.datatype, metric.alias.has_value()};
        teller.byName.insert(*metric.name, born);
        if (metric.alias) {
            expect("birth.alias", !m_session.aliases.contains(*metric.alias), textOf(metric));
            m_session.aliases.insert(*metric.alias);
            teller.byAlias.insert(*metric.alias, born);
        }
    }
}

void Checker::seeNodeDeath(const ReadMessage &read)
{
    expect("ndeath.seq", !read.seq, QLatin1String("it has a seq"));
    const bool isAlone = read.metrics.size() == 1 && read.metrics.first().name == "bdSeq";
    const int bdSeq = isAlone ? static_cast<int>(read.metrics.first().number) : -1;
    expect("ndeath.bdseq", bdSeq == m_session.bdSeq,
           QString::fromLatin1("%1, the will has %2").arg(bdSeq).arg(m_session.bdSeq));
    m_session.isDead = true;
    m_session.isRebirthWanted = false;
}

void Checker::seeDeviceDeath(const QByteArray &device, const ReadMessage &read)
{
    expect("ddeath.fields", read.timestamp && read.seq && read.metrics.isEmpty(),
           QLatin1String("expected a timestamp and a seq"));
    Teller &teller = m_session.devices[device];
    expect("ddeath.alive", teller.life == Teller::Life::Alive, QLatin1String("it does not live"));
    teller.life = Teller::Life::Dead;
    m_session.toBear.remove(device);
}

} // namespace spcheck
