#pragma once

#include "host/support/test_registers.h"

#include <host/tagfile/tag_file.h>

#include <QStringList>

namespace cnet {

/** Tag files for the registers of testCatalog(), OCT, which can only be read, and a check that
 * takes D_W:666 for bad. */
inline TagReading testTagReading(int station = 1, int limit = 100)
{
    static const RegisterCatalog registers = [] {
        RegisterCatalog all = testCatalog();
        all.add(testRegister("OCT"));
        return all;
    }();
    const auto check = [](const Item &item, TagAccess, QString &error) {
        error = QLatin1String("the driver does not like it");
        return item.start != 666;
    };
    return {registers, check, station, limit};
}

inline TagFile testTagFile(const QByteArray &content, int station = 1, int limit = 100)
{
    return TagFile::parse(content, testTagReading(station, limit));
}

/** "2:7: scale: ..." and so on. */
inline QStringList placedTexts(const Findings &findings)
{
    QStringList texts;
    for (const Finding &finding : findings.first()) {
        texts.append(finding.placed());
    }
    return texts;
}

/** All columns, as "name=a register=D_W address=100": those that differ from the usual ones. */
inline QString columnsText(const Tag &tag)
{
    QStringList texts;
    for (int i = 0; i < kTagColumns; ++i) {
        const auto column = static_cast<TagColumn>(i);
        const QString text = tagFieldText(tag, column);
        if (text != tagFieldDefault(column)) {
            texts.append(tagColumnName(column) + QLatin1Char('=') + text);
        }
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace cnet
