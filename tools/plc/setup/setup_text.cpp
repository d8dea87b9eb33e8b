#include "plc/setup/setup_text.h"

#include "plc/wire/wire.h"

#include <QStringList>

#include <algorithm>

namespace plc {

namespace {

constexpr int kBitsPerWord = 16;
constexpr int kHighestWord = 0xFFFF;
constexpr int kLowestWord = -0x8000;
constexpr int kLongestStepMs = 3600000;
constexpr int kWordRampTop = 9999;

const char *const kRegisters = "D_W C_W T_W K_W P_W F_W L_W M_W (words), P_bit K_bit M_bit L_bit "
                               "F_bit D_bit (bits), TX CX (contacts)";

TextError wrong(const QString &text, const QString &why)
{
    return {QString::fromLatin1("\"%1\": %2").arg(text, why)};
}

std::optional<int> digits(const QString &text)
{
    const bool plain = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar digit) {
        return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    });
    bool ok = false;
    const int value = plain ? text.toInt(&ok) : 0;
    return ok ? std::optional<int>(value) : std::nullopt;
}

/** Decimal with an optional sign, or hexadecimal after "0x". */
std::optional<int> number(const QString &text)
{
    const bool hexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool ok = false;
    const int value = hexadecimal ? text.mid(2).toInt(&ok, 16) : text.toInt(&ok, 10);
    return ok ? std::optional<int>(value) : std::nullopt;
}

std::optional<Point> registerNamed(const QString &name)
{
    if (name == QLatin1String("TX") || name == QLatin1String("CX")) {
        return Point{name.at(0).toLatin1(), PointKind::Contact, 0};
    }
    const QString type = name.mid(1);
    const char device = name.isEmpty() ? '\0' : name.at(0).toLatin1();
    if (type == QLatin1String("_W") && QByteArray("DCTKPFLM").contains(device)) {
        return Point{device, PointKind::Word, 0};
    }
    if (type == QLatin1String("_bit") && QByteArray("PKMLFD").contains(device)) {
        return Point{device, PointKind::Bit, 0};
    }
    return std::nullopt;
}

std::optional<int> addressOf(PointKind kind, const QString &text)
{
    // Larger than any device, and small enough not to overflow.
    constexpr int kMostWords = 100000;
    if (kind != PointKind::Bit) {
        const std::optional<int> address = digits(text);
        return address && *address <= kMostWords ? address : std::nullopt;
    }
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const std::optional<int> word = digits(parts.at(0));
    const std::optional<int> bit = digits(parts.at(1));
    if (!word || *word > kMostWords || !bit || *bit >= kBitsPerWord) {
        return std::nullopt;
    }
    return *word * kBitsPerWord + *bit;
}

TextError wrongAddress(const QString &text, PointKind kind)
{
    return wrong(text, kind == PointKind::Bit
                           ? QLatin1String("expected an address WORD.BIT with a bit from 0 to 15, "
                                           "for example M_bit:3.5")
                           : QLatin1String("expected a decimal address, for example D_W:100"));
}

/** Takes "STATION/" off the front, if it is there. @return false if STATION is wrong. */
bool takeStation(QString &text, int &station)
{
    const auto slash = text.indexOf(QLatin1Char('/'));
    if (slash < 0) {
        return true;
    }
    const std::optional<int> value = digits(text.left(slash));
    if (!value || *value > kMaxStation) {
        return false;
    }
    station = *value;
    text = text.mid(slash + 1);
    return true;
}

const char *const kStationExpected = "expected a station from 0 to 31 before \"/\"";

QString addressText(const Point &point)
{
    const QString device(QLatin1Char(point.device));
    switch (point.kind) {
    case PointKind::Word:
        return QString::fromLatin1("%1_W:%2").arg(device).arg(point.address);
    case PointKind::Bit:
        return QString::fromLatin1("%1_bit:%2.%3")
            .arg(device)
            .arg(point.address / kBitsPerWord)
            .arg(point.address % kBitsPerWord);
    case PointKind::Contact:
        return QString::fromLatin1("%1X:%2").arg(device).arg(point.address);
    }
    return {};
}

/** The units that a setting applies to. */
Parsed<std::vector<Unit *>> unitsOf(int station, Bus &bus)
{
    std::vector<Unit *> units;
    for (auto &[number, unit] : bus.units()) {
        if (station < 0 || number == station) {
            units.push_back(&unit);
        }
    }
    if (units.empty()) {
        return TextError{
            QString::fromLatin1("no station %1: add it with --station %1").arg(station)};
    }
    return units;
}

std::optional<TextError> checkRange(const Unit &unit, const Point &first, int count)
{
    const Point last{first.device, first.kind, first.address + count - 1};
    if (unit.station.memory().value(first) && unit.station.memory().value(last)) {
        return std::nullopt;
    }
    return TextError{QString::fromLatin1("%1 does not exist in station %2")
                         .arg(addressText(unit.station.memory().value(first) ? last : first))
                         .arg(unit.station.number())};
}

/** "LOW..HIGH" */
bool readSpan(const QString &text, Ramp &ramp)
{
    const QStringList ends = text.split(QLatin1String(".."));
    if (ends.size() != 2) {
        return false;
    }
    const std::optional<int> low = number(ends.at(0));
    const std::optional<int> high = number(ends.at(1));
    const int highest = ramp.first.kind == PointKind::Word ? kHighestWord : 1;
    if (!low || !high || *low < 0 || *high > highest || *high < *low) {
        return false;
    }
    ramp.low = *low;
    ramp.high = *high;
    return true;
}

/** "MS", with or without the unit "ms". */
bool readStep(QString text, Ramp &ramp)
{
    if (text.endsWith(QLatin1String("ms"))) {
        text.chop(2);
    }
    const std::optional<int> value = digits(text);
    if (!value || *value < 1 || *value > kLongestStepMs) {
        return false;
    }
    ramp.stepMs = *value;
    return true;
}

} // namespace

Parsed<Point> parsePoint(const QString &text)
{
    const auto colon = text.indexOf(QLatin1Char(':'));
    const std::optional<Point> named = registerNamed(text.left(colon));
    if (colon < 0 || !named) {
        return wrong(text, QString::fromLatin1("expected REGISTER:ADDRESS with one of the "
                                               "registers %1")
                               .arg(QLatin1String(kRegisters)));
    }
    const std::optional<int> address = addressOf(named->kind, text.mid(colon + 1));
    if (!address) {
        return wrongAddress(text, named->kind);
    }
    return Point{named->device, named->kind, *address};
}

Parsed<Setting> parseSetting(const QString &text)
{
    Setting setting;
    const auto equals = text.indexOf(QLatin1Char('='));
    QString place = text.left(equals);
    if (equals < 0) {
        return wrong(text, QLatin1String("expected [STATION/]REGISTER:ADDRESS=VALUE[,VALUE...], "
                                         "for example M_W:3=0x1234"));
    }
    if (!takeStation(place, setting.station)) {
        return wrong(text, QLatin1String(kStationExpected));
    }
    const Parsed<Point> point = parsePoint(place);
    if (const TextError *error = std::get_if<TextError>(&point)) {
        return *error;
    }
    setting.first = std::get<Point>(point);
    const bool word = setting.first.kind == PointKind::Word;
    const QStringList values = text.mid(equals + 1).split(QLatin1Char(','));
    for (const QString &value : values) {
        const std::optional<int> read = number(value);
        if (!read || *read < (word ? kLowestWord : 0) || *read > (word ? kHighestWord : 1)) {
            return wrong(text, word ? QLatin1String("expected values from -32768 to 65535 or "
                                                    "0x0 to 0xFFFF, separated by commas")
                                    : QLatin1String("expected values 0 or 1, separated by commas"));
        }
        setting.values.push_back(static_cast<quint16>(*read));
    }
    return setting;
}

Parsed<RampSetting> parseRamp(const QString &text)
{
    RampSetting setting;
    Ramp &ramp = setting.ramp;
    QString place = text.section(QLatin1Char('@'), 0, 0).section(QLatin1Char('='), 0, 0);
    if (!takeStation(place, setting.station)) {
        return wrong(text, QLatin1String(kStationExpected));
    }
    const Parsed<Point> first = parsePoint(place.section(QLatin1Char('-'), 0, 0));
    if (const TextError *error = std::get_if<TextError>(&first)) {
        return *error;
    }
    ramp.first = std::get<Point>(first);
    ramp.high = ramp.first.kind == PointKind::Word ? kWordRampTop : 1;
    if (place.contains(QLatin1Char('-'))) {
        const auto last = addressOf(ramp.first.kind, place.section(QLatin1Char('-'), 1));
        if (!last || *last < ramp.first.address) {
            return wrong(text, QLatin1String("expected FIRST-LAST with the lower address first, "
                                             "for example D_W:100-119"));
        }
        ramp.count = *last - ramp.first.address + 1;
    }
    const QString behind = text.section(QLatin1Char('@'), 0, 0);
    if (behind.contains(QLatin1Char('=')) && !readSpan(behind.section(QLatin1Char('='), 1), ramp)) {
        return wrong(text, ramp.first.kind == PointKind::Word
                               ? QLatin1String("expected =LOW..HIGH from 0 to 65535")
                               : QLatin1String("expected =0..1"));
    }
    if (text.contains(QLatin1Char('@')) && !readStep(text.section(QLatin1Char('@'), 1), ramp)) {
        return wrong(text, QLatin1String("expected @MS from 1 to 3600000 milliseconds"));
    }
    return setting;
}

std::optional<TextError> apply(const Setting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        Point point = setting.first;
        if (auto error = checkRange(*unit, point, static_cast<int>(setting.values.size()))) {
            return error;
        }
        for (const quint16 value : setting.values) {
            unit->station.memory().setValue(point, value);
            ++point.address;
        }
    }
    return std::nullopt;
}

std::optional<TextError> apply(const RampSetting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        if (auto error = checkRange(*unit, setting.ramp.first, setting.ramp.count)) {
            return error;
        }
        unit->ramps.push_back(setting.ramp);
    }
    return std::nullopt;
}

std::optional<TextError> apply(const FaultSetting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        unit->faults.add(setting.fault);
    }
    return std::nullopt;
}

} // namespace plc
