#include "panel/reports/tag_check_output.h"

#include "host/address/value_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <algorithm>

namespace cnet::panel {

namespace {

QString printable(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar letter) { return !letter.isPrint(); }, QLatin1Char('?'));
    return text;
}

QVector<int> stationsOf(const QVector<Tag> &tags)
{
    QMap<int, int> stations;
    for (const Tag &tag : tags) {
        ++stations[tag.item.station];
    }
    return stations.keys().toVector();
}

QString numbers(const QVector<int> &stations)
{
    QStringList texts;
    for (const int station : stations) {
        texts.append(QString::number(station));
    }
    return texts.join(QLatin1Char(' '));
}

QString lines(const QString &path, const char *kind, const Findings &findings)
{
    QString text;
    for (const Finding &finding : findings.first()) {
        Finding told = finding;
        told.field.prepend(QLatin1String(kind));
        text += path + QLatin1Char(':') + printable(told.placed()) + QLatin1Char('\n');
    }
    return text;
}

// "3 mistakes", or "3000 mistakes, of which the first 100 are listed".
QString summary(const Findings &findings, const char *noun)
{
    QString text = counted(findings.count(), noun);
    if (findings.count() > findings.first().size()) {
        text += QString::fromLatin1(" (%1 listed)").arg(findings.first().size());
    }
    return text;
}

QJsonArray objects(const Findings &findings)
{
    QJsonArray all;
    for (const Finding &finding : findings.first()) {
        all.append(QJsonObject{{QLatin1String("line"), finding.line},
                               {QLatin1String("column"), finding.column},
                               {QLatin1String("field"), finding.field},
                               {QLatin1String("text"), finding.text}});
    }
    return all;
}

} // namespace

QByteArray tagCheckText(const QString &path, const TagFile &file)
{
    const QString shown = printable(path);
    const QVector<int> stations = stationsOf(file.tags());
    QString text = lines(shown, "", file.mistakes()) + lines(shown, "warning: ", file.warnings());
    text += QString::fromLatin1("%1: %2, %3, %4")
                .arg(shown, summary(file.mistakes(), "mistake"),
                     summary(file.warnings(), "warning"), counted(file.tags().size(), "good tag"));
    if (!stations.isEmpty()) {
        text += QString::fromLatin1(" on station%1 %2")
                    .arg(QLatin1String(stations.size() == 1 ? "" : "s"), numbers(stations));
    }
    text += QString::fromLatin1("; divided by %1%2\n")
                .arg(csvDividerText(file.divider()),
                     QLatin1String(file.hasByteOrderMark() ? ", with a byte order mark" : ""));
    return text.toLocal8Bit();
}

QByteArray tagCheckJson(const QString &path, const TagFile &file)
{
    QJsonArray stations;
    for (const int station : stationsOf(file.tags())) {
        stations.append(station);
    }
    const QJsonObject line{{QLatin1String("event"), QLatin1String("tags")},
                           {QLatin1String("file"), path},
                           {QLatin1String("good"), file.isGood()},
                           {QLatin1String("tags"), static_cast<int>(file.tags().size())},
                           {QLatin1String("stations"), stations},
                           {QLatin1String("divider"), QString(QLatin1Char(file.divider()))},
                           {QLatin1String("byteOrderMark"), file.hasByteOrderMark()},
                           {QLatin1String("mistakeCount"), file.mistakes().count()},
                           {QLatin1String("mistakes"), objects(file.mistakes())},
                           {QLatin1String("warningCount"), file.warnings().count()},
                           {QLatin1String("warnings"), objects(file.warnings())}};
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace cnet::panel
