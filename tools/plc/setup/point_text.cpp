#include "plc/setup/point_text.h"

#include "plc/wire/wire.h"

#include <QStringList>

#include <algorithm>

namespace plc {

namespace {

// Larger than any device, and small enough not to overflow.
constexpr int kMostWords = 100000;

const char *const kRegisters = "D_W C_W T_W K_W P_W F_W L_W M_W (words), P_bit K_bit M_bit L_bit "
                               "F_bit D_bit (bits), TX CX (contacts)";

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
    if (kind != PointKind::Bit) {
        const std::optional<int> address = parseDigits(text);
        return address && *address <= kMostWords ? address : std::nullopt;
    }
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const std::optional<int> word = parseDigits(parts.at(0));
    const std::optional<int> bit = parseDigits(parts.at(1));
    if (!word || *word > kMostWords || !bit || *bit >= kBitsPerWord) {
        return std::nullopt;
    }
    return *word * kBitsPerWord + *bit;
}

TextError wrongAddress(const QString &text, PointKind kind)
{
    return wrongText(text, kind == PointKind::Bit
                               ? QLatin1String("expected an address WORD.BIT with a bit from 0 to "
                                               "15, for example M_bit:3.5")
                               : QLatin1String("expected a decimal address, for example D_W:100"));
}

/** Takes "STATION/" off the front, if it is there. @return false if STATION is wrong. */
bool takeStation(QString &text, int &station)
{
    const auto slash = text.indexOf(QLatin1Char('/'));
    if (slash < 0) {
        return true;
    }
    const std::optional<int> value = parseDigits(text.left(slash));
    if (!value || *value > kMaxStation) {
        return false;
    }
    station = *value;
    text = text.mid(slash + 1);
    return true;
}

/** Reads what stands behind the first address: "-LAST" or "*COUNT". @return false if wrong. */
bool readEnd(const QString &end, Range &range)
{
    if (end.startsWith(QLatin1Char('*'))) {
        const std::optional<int> count = parseDigits(end.mid(1));
        range.count = count.value_or(0);
        return count && *count >= 1 && *count <= kMostWords;
    }
    const std::optional<int> last = addressOf(range.first.kind, end.mid(1));
    if (!last || *last < range.first.address) {
        return false;
    }
    range.count = *last - range.first.address + 1;
    return true;
}

} // namespace

std::optional<int> parseDigits(const QString &text)
{
    const bool plain = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar digit) {
        return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    });
    bool ok = false;
    const int value = plain ? text.toInt(&ok) : 0;
    return ok ? std::optional<int>(value) : std::nullopt;
}

std::optional<qint64> parseNumber(const QString &text)
{
    const bool hexadecimal = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool ok = false;
    const qint64 value = hexadecimal ? text.mid(2).toLongLong(&ok, 16) : text.toLongLong(&ok, 10);
    return ok ? std::optional<qint64>(value) : std::nullopt;
}

Parsed<Point> parsePoint(const QString &text)
{
    const auto colon = text.indexOf(QLatin1Char(':'));
    const std::optional<Point> named = registerNamed(text.left(colon));
    if (colon < 0 || !named) {
        return wrongText(text, QString::fromLatin1("expected REGISTER:ADDRESS with one of the "
                                                   "registers %1")
                                   .arg(QLatin1String(kRegisters)));
    }
    const std::optional<int> address = addressOf(named->kind, text.mid(colon + 1));
    if (!address) {
        return wrongAddress(text, named->kind);
    }
    return Point{named->device, named->kind, *address};
}

Parsed<Range> parseRange(const QString &text)
{
    Range range;
    QString place = text;
    if (!takeStation(place, range.station)) {
        return wrongText(text, QLatin1String("expected a station from 0 to 31 before \"/\""));
    }
    const auto isMark = [](QChar letter) {
        return letter == QLatin1Char('-') || letter == QLatin1Char('*');
    };
    const auto colon = place.indexOf(QLatin1Char(':')) + 1;
    const auto begin = std::min(place.begin() + colon + 1, place.end());
    const auto end = std::find_if(begin, place.end(), isMark) - place.begin();
    const Parsed<Point> first = parsePoint(place.left(static_cast<int>(end)));
    if (const TextError *error = std::get_if<TextError>(&first)) {
        return *error;
    }
    range.first = std::get<Point>(first);
    if (end < place.size() && !readEnd(place.mid(static_cast<int>(end)), range)) {
        return wrongText(text, QLatin1String("expected FIRST-LAST with the lower address first or "
                                             "FIRST*COUNT, for example D_W:100-119"));
    }
    return range;
}

QString pointText(const Point &point)
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

QString rangeText(const Range &range)
{
    QString text;
    if (range.station >= 0) {
        text = QString::number(range.station) + QLatin1Char('/');
    }
    text += pointText(range.first);
    if (range.count > 1) {
        const Point last{range.first.device, range.first.kind,
                         range.first.address + range.count - 1};
        text += QLatin1Char('-') + pointText(last).section(QLatin1Char(':'), 1);
    }
    return text;
}

} // namespace plc
