#include "view/simulator/simulator.h"

#include <QJsonArray>

#include <algorithm>

namespace cnet::view {

namespace {

bool isSame(const plc::Fault &left, const plc::Fault &right)
{
    return left.kind == right.kind && left.low == right.low && left.high == right.high &&
           left.percent == right.percent;
}

bool isSame(const plc::Motion &left, const plc::Motion &right)
{
    return left.first.device == right.first.device && left.first.kind == right.first.kind &&
           left.first.address == right.first.address && left.count == right.count;
}

/** Keeps the faults that may still fire and are not wanted away. */
template <typename Goes>
void keepFaults(plc::Unit &unit, Goes goes)
{
    const std::vector<plc::Fault> all = unit.faults.all();
    unit.faults.clear();
    for (const plc::Fault &fault : all) {
        if (fault.times != 0 && !goes(fault)) {
            unit.faults.add(fault);
        }
    }
}

bool isMeant(int station, int number)
{
    return station == Simulator::kAllStations || station == number;
}

QJsonArray arrayOf(const QStringList &texts)
{
    return QJsonArray::fromStringList(texts);
}

QStringList textsOf(const QJsonValue &value)
{
    QStringList texts;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &each : array) {
        if (each.isString() && texts.size() < plc::kMostPerStation) {
            texts << each.toString();
        }
    }
    return texts;
}

/** "ramp 1/D_W:100=0..9999@1000" */
std::optional<plc::MotionSetting> motionOf(const QString &text)
{
    const QString name = text.section(QLatin1Char(' '), 0, 0);
    for (const plc::MotionKindText &kind : plc::motionKindTexts()) {
        if (name == QLatin1String(kind.name)) {
            const auto parsed = plc::parseMotion(kind.kind, text.section(QLatin1Char(' '), 1));
            const auto *setting = std::get_if<plc::MotionSetting>(&parsed);
            return setting != nullptr ? std::optional<plc::MotionSetting>(*setting) : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace

QStringList simulatorRegisters()
{
    return QString::fromLatin1(
               "D_W M_W P_W K_W L_W F_W T_W C_W D_bit M_bit P_bit K_bit L_bit F_bit "
               "TX CX")
        .split(QLatin1Char(' '));
}

Simulator::Simulator(Line &line, QObject *parent)
    : QObject(parent)
    , m_line(line)
{
    connect(&line, &Line::sessionBegan, this, [this] {
        if (isThere()) {
            apply(m_kept);
        }
        Q_EMIT plcChanged();
    });
    connect(&line, &Line::sessionEnding, this, [this] {
        if (isThere()) {
            m_kept = kept();
        }
    });
    // Behind sessionEnding() the PLC is still there.
    connect(&line, &Line::stateChanged, this, [this] {
        if (m_line.session() == nullptr) {
            Q_EMIT plcChanged();
        }
    });
}

QVector<int> Simulator::stations() const
{
    QVector<int> result;
    if (isThere()) {
        for (const auto &[number, unit] : m_line.simulator()->units()) {
            result.append(number);
        }
    }
    return result;
}

template <typename Setting>
QString Simulator::applied(int station, const plc::Parsed<Setting> &parsed)
{
    if (const auto *error = std::get_if<plc::TextError>(&parsed)) {
        return error->message;
    }
    if (!isThere()) {
        return tr("There is no simulated PLC.");
    }
    Setting setting = std::get<Setting>(parsed);
    setting.station = station;
    const auto error = plc::apply(setting, *m_line.simulator());
    return error ? error->message : QString();
}

QString Simulator::set(int station, const QString &text)
{
    return applied<plc::Setting>(station, plc::parseSetting(text));
}

QString Simulator::move(int station, plc::MotionKind kind, const QString &text)
{
    QString error = applied<plc::MotionSetting>(station, plc::parseMotion(kind, text));
    if (error.isEmpty()) {
        Q_EMIT actionsChanged();
    }
    return error;
}

QString Simulator::cause(int station, const QString &text)
{
    QString error = applied<plc::FaultSetting>(station, plc::parseFault(text));
    if (error.isEmpty()) {
        Q_EMIT actionsChanged();
    }
    return error;
}

std::optional<int> Simulator::value(int station, const QString &text) const
{
    const auto point = plc::parsePoint(text);
    if (!isThere() || !std::holds_alternative<plc::Point>(point)) {
        return std::nullopt;
    }
    for (const auto &[number, unit] : m_line.simulator()->units()) {
        if (isMeant(station, number)) {
            const auto value = unit.station.memory().value(std::get<plc::Point>(point));
            return value ? std::optional<int>(*value) : std::nullopt;
        }
    }
    return std::nullopt;
}

bool Simulator::has(int station, plc::FaultKind kind) const
{
    const auto all = actions();
    return std::any_of(all.begin(), all.end(), [station, kind](const SimulatorAction &action) {
        return action.kind == SimulatorAction::Kind::Fault && action.fault.kind == kind &&
               isMeant(station, action.station);
    });
}

QVector<SimulatorAction> Simulator::actions() const
{
    QVector<SimulatorAction> result;
    if (!isThere()) {
        return result;
    }
    for (const auto &[number, unit] : m_line.simulator()->units()) {
        SimulatorAction action;
        action.station = number;
        for (const plc::Motion &motion : unit.motions) {
            action.motion = motion;
            result.append(action);
        }
        action.kind = SimulatorAction::Kind::Fault;
        for (const plc::Fault &fault : unit.faults.all()) {
            if (fault.times != 0) {
                action.fault = fault;
                result.append(action);
            }
        }
    }
    return result;
}

void Simulator::remove(const SimulatorAction &action)
{
    plc::Unit *unit = isThere() ? m_line.simulator()->find(action.station) : nullptr;
    if (unit == nullptr) {
        return;
    }
    if (action.kind == SimulatorAction::Kind::Motion) {
        auto &all = unit->motions;
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [&action](const plc::Motion &motion) {
                                     return isSame(motion, action.motion);
                                 }),
                  all.end());
    } else {
        bool found = false;
        keepFaults(*unit, [&action, &found](const plc::Fault &fault) {
            const bool goes = !found && isSame(fault, action.fault);
            found = found || goes;
            return goes;
        });
    }
    Q_EMIT actionsChanged();
}

void Simulator::removeFaults(int station, plc::FaultKind kind)
{
    if (!isThere()) {
        return;
    }
    for (auto &[number, unit] : m_line.simulator()->units()) {
        if (isMeant(station, number)) {
            keepFaults(unit, [kind](const plc::Fault &fault) { return fault.kind == kind; });
        }
    }
    Q_EMIT actionsChanged();
}

void Simulator::allOff()
{
    m_kept = Kept();
    if (isThere()) {
        for (auto &[number, unit] : m_line.simulator()->units()) {
            unit.faults.clear();
            unit.motions.clear();
        }
    }
    Q_EMIT actionsChanged();
}

Simulator::Kept Simulator::kept() const
{
    if (!isThere()) {
        return m_kept;
    }
    Kept result;
    const auto all = actions();
    for (const SimulatorAction &action : all) {
        if (action.kind == SimulatorAction::Kind::Motion) {
            result.motions << plc::motionText({action.station, action.motion});
        } else {
            result.faults << plc::faultText({action.station, action.fault});
        }
    }
    return result;
}

void Simulator::apply(const Kept &again)
{
    plc::Bus &bus = *m_line.simulator();
    for (const QString &text : again.motions) {
        if (const auto setting = motionOf(text)) {
            plc::apply(*setting, bus);
        }
    }
    for (const QString &text : again.faults) {
        const auto parsed = plc::parseFault(text);
        if (const auto *setting = std::get_if<plc::FaultSetting>(&parsed)) {
            plc::apply(*setting, bus);
        }
    }
}

QJsonObject Simulator::saved() const
{
    const Kept now = kept();
    return {{QLatin1String("motions"), arrayOf(now.motions)},
            {QLatin1String("faults"), arrayOf(now.faults)}};
}

void Simulator::restore(const QJsonObject &state)
{
    const Kept wanted = {textsOf(state.value(QLatin1String("motions"))),
                         textsOf(state.value(QLatin1String("faults")))};
    allOff();
    m_kept = wanted;
    if (isThere()) {
        apply(wanted);
    }
    Q_EMIT actionsChanged();
}

} // namespace cnet::view
