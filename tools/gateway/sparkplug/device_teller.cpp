#include "gateway/sparkplug/device_teller.h"

#include <QSet>

#include <algorithm>

namespace cnet::gateway {

namespace {

// A station's last values come with the batch after its loss; until then it is not dead.
constexpr int kGraceMs = 2000;

using Changes = QVector<std::pair<int, Change>>;

bool isLive(const SinkBatch &batch)
{
    return batch.age == SinkBatch::Age::Live;
}

} // namespace

DeviceTeller::DeviceTeller(NodeModel &model, SparkplugSession &session, Clock &clock)
    : m_model(model)
    , m_session(session)
    , m_clock(clock)
    , m_grace(clock.makeAlarm())
{
    QObject::connect(m_grace.get(), &Alarm::fired, m_grace.get(), [this] { killLost(); });
}

int DeviceTeller::bear(int device)
{
    if (!m_session.isBorn()) {
        return 1;
    }
    const QVector<Metric> all = m_model.takeBirth(device, m_clock.wallMs());
    m_model.setBorn(device, true);
    m_session.bearDevice(m_model.devices().at(device).id, all);
    if (m_model.isLost(device)) {
        doom(device);
    }
    return static_cast<int>(all.size()) + 1;
}

void DeviceTeller::kill(int device)
{
    m_model.setBorn(device, false);
    m_session.killDevice(m_model.devices().at(device).id);
}

void DeviceTeller::tell(const SinkBatch &batch)
{
    for (const NodeModel::Part &part : m_model.partsOf(batch.changes)) {
        tellPart(part, batch);
    }
    if (!m_session.isBorn()) {
        m_model.setOutdated(); // it was lost on the way: all of it comes again
    }
}

void DeviceTeller::doomLost()
{
    for (int device = 0; device < m_model.devices().size(); ++device) {
        if (m_model.devices().at(device).isBorn && m_model.isLost(device)) {
            doom(device);
        }
    }
}

// A birth tells the first change of each metric itself; of a backlog it tells what is known, and
// all of the backlog goes as history.
void DeviceTeller::tellPart(NodeModel::Part part, const SinkBatch &batch)
{
    const auto isAnswer = [](const auto &change) { return isAnswered(change.second.quality); };
    const bool isBorn = m_model.devices().at(part.device).isBorn;
    if (!isBorn && std::none_of(part.changes.begin(), part.changes.end(), isAnswer)) {
        for (const auto &[metric, change] : qAsConst(part.changes)) {
            m_model.note(metric, change, batch);
        }
        return; // that it does not answer is what its death told
    }
    if (!isBorn || m_model.devices().at(part.device).hasNew) {
        if (isLive(batch)) {
            QSet<int> seen;
            Changes rest;
            for (const auto &[metric, change] : qAsConst(part.changes)) {
                if (seen.contains(metric)) {
                    rest.append({metric, change});
                } else {
                    seen.insert(metric);
                    m_model.note(metric, change, batch);
                }
            }
            part.changes = rest;
        }
        bear(part.device);
    }
    QVector<Metric> metrics;
    for (const auto &[metric, change] : qAsConst(part.changes)) {
        m_model.note(metric, change, batch);
        metrics.append(m_model.dataOf(metric, change, batch.age));
    }
    tellData(part.device, metrics);
    if (isLive(batch) && m_model.isSilent(part.device)) {
        kill(part.device);
    } else if (!isLive(batch) && m_model.isLost(part.device)) {
        // It lives as long as there is something to tell of it.
        m_doomed.remove(part.device);
        doom(part.device);
    }
}

void DeviceTeller::tellData(int device, const QVector<Metric> &metrics)
{
    for (const QVector<Metric> &message : inMessages(metrics)) {
        m_session.tellDevice(m_model.devices().at(device).id, message);
    }
}

// What was told as outdated, and what came as history and is how things are by now.
int DeviceTeller::tellUntold(int device)
{
    // One that is dead hears of it with its birth.
    if (!m_model.devices().at(device).isBorn) {
        return 0;
    }
    const QVector<Metric> untold = m_model.takeUntold(device);
    tellData(device, untold);
    if (m_session.isBorn() && m_model.isSilent(device)) {
        kill(device);
    }
    return static_cast<int>(untold.size());
}

void DeviceTeller::doom(int device)
{
    if (m_doomed.isEmpty()) {
        m_grace->set(kGraceMs);
    }
    if (!m_doomed.contains(device)) {
        m_doomed.insert(device, m_clock.nowMs() + kGraceMs);
    }
}

void DeviceTeller::killLost()
{
    const qint64 nowMs = m_clock.nowMs();
    qint64 nextMs = nowMs + kGraceMs;
    const QMap<int, qint64> doomed = m_doomed;
    for (auto own = doomed.begin(); own != doomed.end(); ++own) {
        if (own.value() > nowMs) {
            nextMs = std::min(nextMs, own.value());
            continue;
        }
        m_doomed.remove(own.key());
        if (m_model.devices().at(own.key()).isBorn && m_model.isLost(own.key())) {
            kill(own.key());
        }
    }
    if (!m_doomed.isEmpty()) {
        m_grace->set(static_cast<int>(nextMs - nowMs));
    }
}

} // namespace cnet::gateway
