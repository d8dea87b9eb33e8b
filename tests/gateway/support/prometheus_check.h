#pragma once

#include <QByteArray>
#include <QList>
#include <QRegularExpression>
#include <QSet>
#include <QString>

namespace cnet::gateway {

/** Reads Prometheus's text format strictly, and knows its customs for names. */
class PrometheusCheck
{
public:
    /** @return what is wrong with the first wrong line; empty: nothing */
    QString faultOf(const QByteArray &text)
    {
        if (!text.endsWith('\n')) {
            return QLatin1String("the last line has no end");
        }
        QList<QByteArray> lines = text.split('\n');
        lines.removeLast();
        for (const QByteArray &line : lines) {
            const QString fault = faultOfLine(QString::fromUtf8(line));
            if (!fault.isEmpty()) {
                return QString::fromUtf8(line) + QLatin1String(": ") + fault;
            }
        }
        return QString();
    }

    /** Names of all metrics that were announced. */
    const QSet<QString> &names() const { return m_names; }

private:
    QString faultOfLine(const QString &line)
    {
        static const QRegularExpression help(QLatin1String("\\A# HELP ([a-z_]+) (\\S.*)\\z"));
        static const QRegularExpression type(
            QLatin1String("\\A# TYPE ([a-z_]+) (gauge|counter|histogram)\\z"));
        if (line.startsWith(QLatin1String("# HELP"))) {
            const QRegularExpressionMatch match = help.match(line);
            m_helped = match.captured(1);
            return match.hasMatch() ? QString() : QLatin1String("a wrong help");
        }
        if (line.startsWith(QLatin1Char('#'))) {
            const QRegularExpressionMatch match = type.match(line);
            return match.hasMatch() ? faultOfMetric(match.captured(1), match.captured(2))
                                    : QLatin1String("a wrong comment");
        }
        return faultOfSample(line);
    }

    QString faultOfMetric(const QString &name, const QString &type)
    {
        static const QRegularExpression units(
            QLatin1String("_(milliseconds|ms|hours|minutes|percent|kilobytes|kb)(_|\\z)"));
        m_name = name;
        m_type = type;
        if (name != m_helped || m_names.contains(name)) {
            return QLatin1String("it has no help in front, or was there before");
        }
        m_names.insert(name);
        if ((type == QLatin1String("counter")) != name.endsWith(QLatin1String("_total"))) {
            return QLatin1String("counters, and nothing else, end with _total");
        }
        return units.match(name).hasMatch() ? QLatin1String("no base unit") : QString();
    }

    QString faultOfSample(const QString &line)
    {
        static const QRegularExpression sample(QLatin1String(
            "\\A([a-z_]+?)(_bucket|_sum|_count)?"
            "((?:\\{[a-z_]+=\"(?:[^\"\\\\\\n]|\\\\[\\\\\"n])*\"(?:,[a-z_]+=\"(?:[^\"\\\\\\n]|\\\\["
            "\\\\\"n])*\")*\\})?) (-?[0-9]+(?:\\.[0-9]+)?(?:e[+-][0-9]+)?)\\z"));
        const QRegularExpressionMatch match = sample.match(line);
        const bool isPart = !match.captured(2).isEmpty();
        if (!match.hasMatch() || match.captured(1) != m_name ||
            isPart != (m_type == QLatin1String("histogram"))) {
            return QLatin1String("no sample of ") + m_name;
        }
        const QString identity = line.left(line.lastIndexOf(QLatin1Char(' ')));
        if (m_samples.contains(identity)) {
            return QLatin1String("it is there twice");
        }
        m_samples.insert(identity);
        return QString();
    }

    QString m_helped;
    QString m_name;
    QString m_type;
    QSet<QString> m_names;
    QSet<QString> m_samples;
};

} // namespace cnet::gateway
