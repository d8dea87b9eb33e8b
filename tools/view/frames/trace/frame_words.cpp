#include "view/frames/trace/frame_words.h"

#include "view/look/quality_look.h"

#include "host/wire/characters.h"
#include "host/wire/frame_words.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>

namespace cnet::view {

namespace {

constexpr qint64 kNsPerMs = 1000000;

QString words(const char *text)
{
    return QCoreApplication::translate("Frames", text);
}

struct FaultWords
{
    FrameFault fault;
    const char *text;
};

// In the order in which they are said.
constexpr FaultWords kFaultWords[] = {
    {FrameFault::TimedOut, QT_TRANSLATE_NOOP("Frames", "no answer")},
    {FrameFault::Refused, QT_TRANSLATE_NOOP("Frames", "refused")},
    {FrameFault::WrongCheck, QT_TRANSLATE_NOOP("Frames", "block check wrong")},
    {FrameFault::Unusable, QT_TRANSLATE_NOOP("Frames", "not used")},
    {FrameFault::Late, QT_TRANSLATE_NOOP("Frames", "too late")},
    {FrameFault::Repeated, QT_TRANSLATE_NOOP("Frames", "sent again")},
    {FrameFault::LeftOpen, QT_TRANSLATE_NOOP("Frames", "ended without a result")},
    {FrameFault::Stray, QT_TRANSLATE_NOOP("Frames", "stray bytes")},
};

Quality qualityWithSignOf(Tone tone)
{
    switch (tone) {
    case Tone::Waiting:
        return Quality::Waiting;
    case Tone::Doubtful:
        return Quality::Stale;
    default:
        return Quality::NoAnswer;
    }
}

} // namespace

QString wayWords(const FrameRow &row)
{
    if (row.way == FrameWay::Sent) {
        return words(QT_TRANSLATE_NOOP("Frames", "-> request"));
    }
    if (row.bytes.isEmpty()) {
        return words(QT_TRANSLATE_NOOP("Frames", "<- nothing"));
    }
    return row.bytes.at(0) == kNak ? words(QT_TRANSLATE_NOOP("Frames", "<- refusal"))
                                   : words(QT_TRANSLATE_NOOP("Frames", "<- answer"));
}

QString kindWords(FrameKind kind)
{
    switch (kind) {
    case FrameKind::Read:
        return words(QT_TRANSLATE_NOOP("Frames", "read"));
    case FrameKind::Write:
        return words(QT_TRANSLATE_NOOP("Frames", "write"));
    case FrameKind::SignOfLife:
        return words(QT_TRANSLATE_NOOP("Frames", "sign of life"));
    case FrameKind::Other:
        break;
    }
    return words(QT_TRANSLATE_NOOP("Frames", "other"));
}

QString kindName(FrameKind kind)
{
    switch (kind) {
    case FrameKind::Read:
        return QLatin1String("read");
    case FrameKind::Write:
        return QLatin1String("write");
    case FrameKind::SignOfLife:
        return QLatin1String("sign");
    case FrameKind::Other:
        break;
    }
    return QLatin1String("other");
}

QString resultWords(const FrameRow &row)
{
    QStringList parts;
    for (const FaultWords &fault : kFaultWords) {
        if (row.faults.testFlag(fault.fault)) {
            parts << words(fault.text);
        }
    }
    if (parts.isEmpty()) {
        if (row.way == FrameWay::Sent) {
            return QString();
        }
        return row.isDoubted ? words(QT_TRANSLATE_NOOP("Frames", "asked once more"))
                             : words(QT_TRANSLATE_NOOP("Frames", "good"));
    }
    const auto code =
        row.faults.testFlag(FrameFault::Refused) ? refusalCode(row.bytes) : std::optional<int>();
    QString text = parts.join(QLatin1String(", "));
    if (code) {
        text += QLatin1String(": ") + refusalInWords(*code);
    }
    return row.note.isEmpty() ? text : text + QLatin1String("; ") + row.note;
}

QString timeWords(const FrameRow &row)
{
    return row.timeNs < 0 ? QString()
                          : QDateTime::fromMSecsSinceEpoch(row.timeNs / kNsPerMs)
                                .toString(QLatin1String("HH:mm:ss.zzz"));
}

QString responseWords(const FrameRow &row)
{
    return row.tookMs < 0 ? QString()
                          : QCoreApplication::translate("Frames", "%1 ms")
                                .arg(QString::number(row.tookMs, 'f', 1));
}

Tone toneOf(FrameFaults faults)
{
    const FrameFaults bad =
        FrameFault::TimedOut | FrameFault::Refused | FrameFault::WrongCheck | FrameFault::Unusable;
    if ((faults & bad) != FrameFaults()) {
        return Tone::Bad;
    }
    return faults.testFlag(FrameFault::Late) ? Tone::Waiting : Tone::Doubtful;
}

QIcon faultIcon(FrameFaults faults, const QPalette &palette)
{
    return qualityIcon(qualityWithSignOf(toneOf(faults)), palette);
}

} // namespace cnet::view
