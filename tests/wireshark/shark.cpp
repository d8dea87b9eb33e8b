#include "shark.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

// Much more than the longest run takes on a busy machine.
const int kPatienceMs = 300000;

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

void skipWithoutShark()
{
    if (QStandardPaths::findExecutable(QLatin1String("tshark")).isEmpty()) {
        QTest::qSkip("tshark is missing: script/bootstrap --test installs it", __FILE__, __LINE__);
    }
}

Dissection::Dissection(const QString &file, const QString &options)
{
    m_tshark.start(QLatin1String("tshark"),
                   QStringList{QLatin1String("-X"), QLatin1String("lua_script:" DISSECTOR),
                               QLatin1String("-d"), QLatin1String("rtacser.data,cnet"),
                               QLatin1String("-n"), QLatin1String("-r"), file} +
                       words(options));
}

QList<QByteArray> Dissection::lines()
{
    const bool ended =
        m_tshark.state() == QProcess::NotRunning || m_tshark.waitForFinished(kPatienceMs);
    const QByteArray errors = m_tshark.readAllStandardError();
    if (!ended || m_tshark.exitStatus() != QProcess::NormalExit || m_tshark.exitCode() != 0) {
        return {"tshark fails: " + errors};
    }
    QList<QByteArray> lines = m_tshark.readAllStandardOutput().split('\n');
    lines.removeLast();
    for (const QByteArray &line : lines + errors.split('\n')) {
        if (line.contains("Lua Error") || line.contains("Lua:")) {
            return {"the dissector fails: " + line};
        }
    }
    return lines;
}

QString fieldOptions(const QString &fields)
{
    QString options = QLatin1String("-T fields -E separator=|");
    for (const QString &field : words(fields)) {
        options += QLatin1String(" -e ") + field;
    }
    return options;
}

QList<QByteArray> dissectFields(const QString &file, const QString &fields, const QString &options)
{
    return Dissection(file, fieldOptions(fields) + QLatin1Char(' ') + options).lines();
}
