#include "host/exchange/trace.h"

#include "host/wire/frame_words.h"

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

// What the exchange made of it, where the frame alone does not tell.
QString verdict(const ExchangeReport &report)
{
    QStringList remarks;
    if (!report.note.isEmpty()) {
        remarks.append(QLatin1String("not used: ") + report.note);
    } else if (report.outcome == Outcome::Bad) {
        remarks.append(QLatin1String("not accepted"));
    }
    if (report.strayBytes > 0) {
        remarks.append(QString::fromLatin1("%1 stray bytes").arg(report.strayBytes));
    }
    if (report.result == kAnswerResend) {
        remarks.append(QLatin1String("sent again"));
    } else if (report.result == kAnswerGivenUp) {
        remarks.append(QLatin1String("given up"));
    }
    return remarks.isEmpty() ? QString() : QLatin1String("; ") + remarks.join(QLatin1String(", "));
}

} // namespace

QString traceRequest(const QTime &time, const QByteArray &frame)
{
    return QString::fromLatin1("%1 -> %2 %3")
        .arg(timeText(time), bytesText(frame), frameInWords(frame));
}

QString traceAnswer(const QTime &time, const ExchangeReport &report)
{
    const QString took = QString::number(report.tookMs, 'f', 1);
    const QString start = QString::fromLatin1("%1 <- %2 ms ").arg(timeText(time), took);
    if (report.outcome == Outcome::TimedOut) {
        const QString came = report.answer.isEmpty()
                                 ? QLatin1String("no answer")
                                 : QLatin1String("answer incomplete, ") + bytesText(report.answer);
        return start + came + verdict(report);
    }
    return start + bytesText(report.answer) + QLatin1Char(' ') + frameInWords(report.answer) +
           verdict(report);
}

} // namespace cnet
