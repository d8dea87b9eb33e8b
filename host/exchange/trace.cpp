#include "host/exchange/trace.h"

#include "host/wire/frame_words.h"

#include <QStringList>

namespace cnet {

namespace {

QString timeText(const QTime &time)
{
    return time.toString(QLatin1String("HH:mm:ss.zzz"));
}

QString bytesText(const QByteArray &bytes)
{
    return QString::fromLatin1("%1 bytes [%2]").arg(bytes.size()).arg(hexText(bytes));
}

// What was made of it, where the frame alone does not tell.
QString verdict(const ExchangeReport &report)
{
    QStringList remarks;
    const Outcome outcome = report.reply.outcome;
    if (!report.reply.note.isEmpty() && outcome == Outcome::Bad) {
        remarks.append(QLatin1String("not used: ") + report.reply.note);
    } else if (outcome == Outcome::Bad && !report.reply.answer.isEmpty()) {
        remarks.append(QLatin1String("not accepted"));
    }
    if (report.reply.strayBytes > 0) {
        remarks.append(QString::fromLatin1("%1 stray bytes").arg(report.reply.strayBytes));
    }
    if (!report.final) {
        remarks.append(QLatin1String("sent again"));
    } else if (outcome == Outcome::Bad || outcome == Outcome::TimedOut) {
        remarks.append(QLatin1String("given up"));
    }
    return remarks.isEmpty() ? QString() : QLatin1String("; ") + remarks.join(QLatin1String(", "));
}

QString unused(const QTime &time, const QByteArray &answer, double tookMs)
{
    return QString::fromLatin1("%1 <- %2 ms %3 %4; ")
        .arg(timeText(time), QString::number(tookMs, 'f', 1), bytesText(answer),
             frameInWords(answer));
}

} // namespace

QString traceRequest(const QTime &time, const QByteArray &frame)
{
    return QString::fromLatin1("%1 -> %2 %3")
        .arg(timeText(time), bytesText(frame), frameInWords(frame));
}

QString traceAnswer(const QTime &time, const ExchangeReport &report)
{
    const QString took = QString::number(report.reply.tookMs, 'f', 1);
    const QString start = QString::fromLatin1("%1 <- %2 ms ").arg(timeText(time), took);
    const QByteArray &answer = report.reply.answer;
    if (answer.isEmpty()) {
        const bool silent = report.reply.outcome == Outcome::TimedOut;
        return start + QLatin1String(silent ? "no answer" : "no usable answer") + verdict(report);
    }
    return start + bytesText(answer) + QLatin1Char(' ') + frameInWords(answer) + verdict(report);
}

QString traceLate(const QTime &time, const QByteArray &answer, double lateMs)
{
    return unused(time, answer, lateMs) + QLatin1String("too late, not used");
}

QString traceDoubted(const QTime &time, const QByteArray &answer, double tookMs)
{
    return unused(time, answer, tookMs) +
           QLatin1String("may be a copy of the answer before it, asked again");
}

} // namespace cnet
