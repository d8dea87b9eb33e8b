#include "plc/setup/motion_text.h"

#include "plc/setup/setting_text.h"

#include <QStringList>

namespace plc {

namespace {

constexpr qint64 kHighestCount = 0xFFFFFFFFLL;
constexpr int kMostPerStep = 1000000;
constexpr int kLongestStepMs = 3600000;
constexpr int kUsualTop = 9999;
constexpr int kUsualTurnMs = 60000;

struct Limits
{
    qint64 lowest;
    qint64 highest;
};

Limits limitsOf(const Motion &motion)
{
    if (motion.kind == MotionKind::Counter) {
        return {0, kHighestCount};
    }
    return motion.first.kind == PointKind::Word ? Limits{kLowestWord, kHighestWord} : Limits{0, 1};
}

/** "LOW..HIGH" */
bool readSpan(const QString &text, Motion &motion)
{
    const QStringList ends = text.split(QLatin1String(".."));
    if (ends.size() != 2) {
        return false;
    }
    const std::optional<qint64> low = parseNumber(ends.at(0));
    const std::optional<qint64> high = parseNumber(ends.at(1));
    const Limits limits = limitsOf(motion);
    if (!low || !high || *low < limits.lowest || *high > limits.highest || *high < *low) {
        return false;
    }
    motion.low = *low;
    motion.high = *high;
    return true;
}

TextError wrongSpan(const QString &text, const Motion &motion)
{
    const Limits limits = limitsOf(motion);
    if (limits.highest == 1) {
        return wrongText(text, QLatin1String("expected =0..1"));
    }
    return wrongText(text, QString::fromLatin1("expected =LOW..HIGH from %1 to %2")
                               .arg(limits.lowest)
                               .arg(limits.highest));
}

/** "MS", with or without the unit "ms". */
bool readStep(QString text, Motion &motion)
{
    if (text.endsWith(QLatin1String("ms"))) {
        text.chop(2);
    }
    const std::optional<int> value = parseDigits(text);
    if (!value || *value < 1 || *value > kLongestStepMs) {
        return false;
    }
    motion.stepMs = *value;
    return true;
}

/** "+STEP" of a counter. */
bool readIncrement(const QString &text, Motion &motion)
{
    const std::optional<int> value = parseDigits(text);
    motion.increment = value.value_or(0);
    return motion.increment >= 1 && motion.increment <= kMostPerStep;
}

/** What nobody has said otherwise. */
Motion usualMotion(MotionKind kind, const Range &range)
{
    Motion motion{range.first, range.count, 0, kUsualTop};
    motion.kind = kind;
    if (kind == MotionKind::Counter) {
        motion.high = kHighestCount;
        motion.count = range.count == 1 ? 2 : range.count;
    } else if (range.first.kind != PointKind::Word) {
        motion.high = 1;
    }
    if (kind == MotionKind::Sine) {
        motion.stepMs = kUsualTurnMs;
    }
    return motion;
}

} // namespace

const std::array<MotionKindText, kMotionKinds> &motionKindTexts()
{
    static const std::array<MotionKindText, kMotionKinds> table = {{
        {MotionKind::Ramp, "ramp", "RANGE[=LOW..HIGH][@MS]",
         "from LOW to HIGH, one step every MS milliseconds, then from LOW again"},
        {MotionKind::Sine, "sine", "RANGE[=LOW..HIGH][@MS]",
         "to and fro between LOW and HIGH, a full turn in MS milliseconds (default 60000)"},
        {MotionKind::Square, "square", "RANGE[=LOW..HIGH][@MS]",
         "LOW and HIGH in turn, each for MS milliseconds"},
        {MotionKind::Walk, "walk", "RANGE[=LOW..HIGH][@MS]",
         "at random between LOW and HIGH, a small step every MS milliseconds; see --seed"},
        {MotionKind::Counter, "counter", "RANGE[=LOW..HIGH][+STEP][@MS]",
         "32 bits in two words, the lower half first, by STEP (default 1) every MS milliseconds"},
    }};
    return table;
}

const MotionKindText &motionKindText(MotionKind kind)
{
    return motionKindTexts()[static_cast<std::size_t>(kind)];
}

Parsed<MotionSetting> parseMotion(MotionKind kind, const QString &text)
{
    QString rest = text;
    const std::optional<QString> step = cutBehind(rest, QLatin1Char('@'));
    const std::optional<QString> increment =
        kind == MotionKind::Counter ? cutBehind(rest, QLatin1Char('+')) : std::nullopt;
    const std::optional<QString> span = cutBehind(rest, QLatin1Char('='));
    const Parsed<Range> range = parseRange(rest);
    if (const TextError *error = std::get_if<TextError>(&range)) {
        return *error;
    }
    MotionSetting setting{std::get<Range>(range).station,
                          usualMotion(kind, std::get<Range>(range))};
    Motion &motion = setting.motion;
    if (kind == MotionKind::Counter &&
        (motion.first.kind != PointKind::Word || motion.count % 2 != 0)) {
        return wrongText(text, QLatin1String("a counter takes pairs of words, for example "
                                             "D_W:100-101"));
    }
    if (span && !readSpan(*span, motion)) {
        return wrongSpan(text, motion);
    }
    if (increment && !readIncrement(*increment, motion)) {
        return wrongText(text, QLatin1String("expected +STEP from 1 to 1000000"));
    }
    if (step && !readStep(*step, motion)) {
        return wrongText(text, QLatin1String("expected @MS from 1 to 3600000 milliseconds"));
    }
    return setting;
}

QString motionText(const MotionSetting &setting)
{
    const Motion &motion = setting.motion;
    QString text = QString::fromLatin1("%1 %2=%3..%4")
                       .arg(QLatin1String(motionKindText(motion.kind).name),
                            rangeText({setting.station, motion.first, motion.count}))
                       .arg(motion.low)
                       .arg(motion.high);
    if (motion.kind == MotionKind::Counter) {
        text += QLatin1Char('+') + QString::number(motion.increment);
    }
    return text + QLatin1Char('@') + QString::number(motion.stepMs);
}

} // namespace plc
