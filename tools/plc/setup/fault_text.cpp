#include "plc/setup/fault_text.h"

#include "plc/faults/fault_kinds.h"
#include "plc/setup/setting_text.h"
#include "plc/wire/wire.h"

#include <QStringList>

namespace plc {

namespace {

constexpr int kMaxTimes = 1000000000;

const char *const kExpectedPercent =
    "expected @PERCENT% at the end, with PERCENT from 0 to 100, for example 2:delay=50..200@10%";
const char *const kExpectedTimes =
    "expected *TIMES behind the kind and its value, with TIMES from 1 to 1000000000, for example "
    "1:silence*3";

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

/** Takes "@PERCENT%" off the end. @return false if it is wrong. */
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

/** Takes "*TIMES" off the end. @return false if it is wrong. */
bool takeTimes(QString &text, Fault &fault)
{
    const std::optional<QString> often = cutBehind(text, QLatin1Char('*'));
    if (!often) {
        return true;
    }
    fault.times = numberIn(*often, 1, kMaxTimes).value_or(0);
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

int baseOf(const FaultKindText &kind)
{
    return kind.kind == FaultKind::Refuse ? 16 : 10;
}

/** "0 to 600000" */
QString limitsOf(const FaultKindText &kind)
{
    return QString::fromLatin1("%1 to %2")
        .arg(QString::number(kind.lowest, baseOf(kind)).toUpper(),
             QString::number(kind.highest, baseOf(kind)).toUpper());
}

TextError wrongValue(const QString &text, const FaultKindText &kind)
{
    QString why = QString::fromLatin1("expected %1=%2 with values from %3")
                      .arg(QLatin1String(kind.name), QLatin1String(kind.value), limitsOf(kind));
    if (kind.range) {
        why += QLatin1String(", the lower one first");
    }
    return wrong(text, why);
}

/** @return false if this kind does not take the value. */
bool readValue(const QString &text, const FaultKindText &kind, Fault &fault)
{
    const int base = baseOf(kind);
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
    if (!takeLikelihood(rest, setting.fault)) {
        return wrong(text, QLatin1String(kExpectedPercent));
    }
    if (!takeTimes(rest, setting.fault)) {
        return wrong(text, QLatin1String(kExpectedTimes));
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
        return wrongValue(text, *kind);
    }
    return setting;
}

QString faultText(const FaultSetting &setting)
{
    const Fault &fault = setting.fault;
    const FaultKindText &kind = faultKindTexts()[static_cast<std::size_t>(fault.kind)];
    QString text;
    if (setting.station >= 0) {
        text = QString::number(setting.station) + QLatin1Char(':');
    }
    text += faultName(fault.kind);
    // Negative: the usual value, which has no number.
    if (*kind.value != '\0' && fault.low >= 0) {
        text += QLatin1Char('=') + QString::number(fault.low, baseOf(kind));
        if (fault.high != fault.low) {
            text += QLatin1String("..") + QString::number(fault.high, baseOf(kind));
        }
    }
    if (fault.times >= 0) {
        text += QLatin1Char('*') + QString::number(fault.times);
    }
    if (fault.percent != 100) {
        text += QString::fromLatin1("@%1%").arg(fault.percent);
    }
    return text;
}

QString faultHelp()
{
    constexpr int kColumn = 34;
    const QString newLine = QLatin1Char('\n') + QString(kColumn, QLatin1Char(' '));
    QString help;
    for (const FaultKindText &kind : faultKindTexts()) {
        const bool takesValue = *kind.value != '\0';
        QString form = QLatin1String("  ") + QLatin1String(kind.name);
        if (takesValue) {
            form += QString::fromLatin1("[=%1]").arg(QLatin1String(kind.value));
        }
        QString meaning = QLatin1String(kind.meaning);
        if (takesValue) {
            meaning += QString::fromLatin1(" (%1; default %2)")
                           .arg(limitsOf(kind), QLatin1String(kind.usual));
        }
        meaning.replace(QLatin1Char('\n'), newLine);
        if (form.size() >= kColumn) {
            form += newLine;
        }
        help += form.leftJustified(kColumn) + meaning + QLatin1Char('\n');
    }
    return help;
}

} // namespace plc
