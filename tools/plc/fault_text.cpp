#include "exchange_text.h"
#include "fault_kinds.h"
#include "setup_text.h"
#include "wire.h"

#include <QStringList>

namespace plc {

namespace {

constexpr int kLongestDelayMs = 600000;
constexpr int kMostNoise = 1000;
constexpr int kLongestGapMs = 10000;
constexpr int kLongestAnswer = 4096;
constexpr int kHighestCode = 0xFFFF;
constexpr int kMostTimes = 1000000000;

const char *const kExpected =
    "expected [STATION:]KIND[=VALUE][*TIMES][@PERCENT%], for example 2:delay=50..200@10%";

TextError wrong(const QString &text, const QString &why)
{
    return {QString::fromLatin1("fault \"%1\": %2").arg(text, why)};
}

std::optional<int> numberIn(const QString &text, int lowest, int highest, int base = 10)
{
    bool ok = false;
    const int value = text.toInt(&ok, base);
    if (!ok || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

/** Cuts off what stands behind the last `mark`, if there is one. */
std::optional<QString> cutBehind(QString &text, QLatin1Char mark)
{
    const auto position = text.lastIndexOf(mark);
    if (position < 0) {
        return std::nullopt;
    }
    const QString behind = text.mid(position + 1);
    text.truncate(position);
    return behind;
}

/** "@PERCENT%" @return false where it is none. */
bool takeLikelihood(QString &text, Fault &fault)
{
    std::optional<QString> likely = cutBehind(text, QLatin1Char('@'));
    if (!likely) {
        return true;
    }
    if (!likely->endsWith(QLatin1Char('%'))) {
        return false;
    }
    likely->chop(1);
    fault.percent = numberIn(*likely, 0, 100).value_or(-1);
    return fault.percent >= 0;
}

/** "*TIMES" @return false where it is none. */
bool takeTimes(QString &text, Fault &fault)
{
    const std::optional<QString> often = cutBehind(text, QLatin1Char('*'));
    if (!often) {
        return true;
    }
    fault.times = numberIn(*often, 1, kMostTimes).value_or(0);
    return fault.times > 0;
}

const FaultKindText *kindNamed(const QString &name)
{
    for (const FaultKindText &kind : faultKindTexts()) {
        if (name == QLatin1String(kind.name)) {
            return &kind;
        }
    }
    return nullptr;
}

QString kindNames()
{
    QStringList names;
    for (const FaultKindText &kind : faultKindTexts()) {
        names << QLatin1String(kind.name);
    }
    return names.join(QLatin1String(", "));
}

/** @return false where the value is none that the kind takes. */
bool readValue(const QString &text, const FaultKindText &kind, Fault &fault)
{
    const int base = kind.kind == FaultKind::Refuse ? 16 : 10;
    const auto dots = text.indexOf(QLatin1String(".."));
    const bool range = dots >= 0;
    if (range && !kind.range) {
        return false;
    }
    const auto low = numberIn(range ? text.left(dots) : text, kind.lowest, kind.highest, base);
    const auto high = range ? numberIn(text.mid(dots + 2), kind.lowest, kind.highest, base) : low;
    if (!low || !high || *high < *low) {
        return false;
    }
    fault.low = *low;
    fault.high = *high;
    return true;
}

} // namespace

const std::array<FaultKindText, kFaultKinds> &faultKindTexts()
{
    static const std::array<FaultKindText, kFaultKinds> table = {{
        {FaultKind::Silence, "silence", "", 0, 0, false,
         "the request is lost: neither carried out nor answered"},
        {FaultKind::Delay, "delay", "MS[..MS]", 0, kLongestDelayMs, true,
         "the answer comes late, by 500 ms if not told"},
        {FaultKind::NoiseBefore, "noise-before", "BYTES[..BYTES]", 0, kMostNoise, true,
         "random bytes before the answer, 1 to 8 if not told"},
        {FaultKind::NoiseAfter, "noise-after", "BYTES[..BYTES]", 0, kMostNoise, true,
         "random bytes after the answer, 1 to 8 if not told"},
        {FaultKind::Split, "split", "MS[..MS]", 0, kLongestGapMs, true,
         "the answer comes byte by byte, 1 ms apart if not told"},
        {FaultKind::WrongCheck, "wrong-check", "", 0, 0, false,
         "the block check of the answer is wrong (if the answer has one)"},
        {FaultKind::WrongStation, "wrong-station", "STATION", 0, kMaxStation, false,
         "the answer names this station, the next one if not told"},
        {FaultKind::Refuse, "refuse", "CODE", 0, kHighestCode, false,
         "the request is refused with this hexadecimal code, 1132 if\n"
         "not told"},
        {FaultKind::Truncate, "truncate", "BYTES[..BYTES]", 0, kMaxFrameBytes, true,
         "only the first bytes of the answer come, at random if not\n"
         "told; 0: none, though the request is carried out"},
        {FaultKind::Oversize, "oversize", "BYTES[..BYTES]", 0, kLongestAnswer, true,
         "zeros make the answer this long, 300 bytes if not told"},
        {FaultKind::Echo, "echo", "", 0, 0, false, "the request comes back before the answer"},
    }};
    return table;
}

QString faultName(FaultKind kind)
{
    return QLatin1String(faultKindTexts()[static_cast<std::size_t>(kind)].name);
}

Parsed<FaultSetting> parseFault(const QString &text)
{
    FaultSetting setting;
    QString rest = text;
    const auto colon = rest.indexOf(QLatin1Char(':'));
    if (colon >= 0) {
        const auto station = numberIn(rest.left(colon), 0, kMaxStation);
        if (!station) {
            return wrong(text, QLatin1String("expected a station from 0 to 31 before \":\""));
        }
        setting.station = *station;
        rest = rest.mid(colon + 1);
    }
    if (!takeLikelihood(rest, setting.fault) || !takeTimes(rest, setting.fault)) {
        return wrong(text, QLatin1String(kExpected));
    }
    const std::optional<QString> value = cutBehind(rest, QLatin1Char('='));
    const FaultKindText *const kind = kindNamed(rest);
    if (!kind) {
        return wrong(text, QString::fromLatin1("expected one of %1").arg(kindNames()));
    }
    const Fault usual = usualFault(kind->kind);
    setting.fault.kind = usual.kind;
    setting.fault.low = usual.low;
    setting.fault.high = usual.high;
    if (value && *kind->value == '\0') {
        return wrong(text, QString::fromLatin1("%1 takes no value").arg(rest));
    }
    if (value && !readValue(*value, *kind, setting.fault)) {
        const int base = kind->kind == FaultKind::Refuse ? 16 : 10;
        return wrong(text, QString::fromLatin1("expected %1=%2 with values from %3 to %4")
                               .arg(rest, QLatin1String(kind->value),
                                    QString::number(kind->lowest, base).toUpper(),
                                    QString::number(kind->highest, base).toUpper()));
    }
    return setting;
}

QString faultHelp()
{
    constexpr int kColumn = 32;
    const QString newLine = QLatin1Char('\n') + QString(kColumn, QLatin1Char(' '));
    QString help;
    for (const FaultKindText &kind : faultKindTexts()) {
        QString form = QLatin1String("  ") + QLatin1String(kind.name);
        if (*kind.value != '\0') {
            form += QString::fromLatin1("[=%1]").arg(QLatin1String(kind.value));
        }
        QString meaning = QLatin1String(kind.meaning);
        meaning.replace(QLatin1Char('\n'), newLine);
        if (form.size() >= kColumn) {
            form += newLine;
        }
        help += form.leftJustified(kColumn) + meaning + QLatin1Char('\n');
    }
    return help;
}

} // namespace plc
