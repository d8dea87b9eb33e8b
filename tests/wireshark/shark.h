#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

/** For initTestCase(): all is skipped where there is no tshark. */
void skipWithoutShark();

/** tshark with the project's dissector, on a capture of any kind. It runs while the test does. */
class Dissection
{
public:
    /** @param options of tshark, divided by blanks */
    Dissection(const QString &file, const QString &options);
    Dissection(const Dissection &) = delete;
    Dissection &operator=(const Dissection &) = delete;

    /** What it prints; where it fails, or the dissector does, one line that says so. */
    QList<QByteArray> lines();

private:
    QProcess m_tshark;
};

/** The options for these fields of each packet, divided by "|"; several values of one by ",". */
QString fieldOptions(const QString &fields);

/** The same in one go. @param options further ones */
QList<QByteArray> dissectFields(const QString &file, const QString &fields,
                                const QString &options = QString());
