#pragma once

#include "host/address/item.h"
#include "host/address/register_catalog.h"

#include <QHash>

namespace cnet {

/** Registers of every address form, described as a driver would, without a driver. */
inline RegisterInfo testRegister(const char *name)
{
    static const QHash<QString, QStringList> descriptions = [] {
        QHash<QString, QStringList> all;
        const auto add = [&all](const char *reg, const char *texts) {
            all.insert(QLatin1String(reg), QString::fromLatin1(texts).split(QLatin1Char(' ')));
        };
        add("D_W", "DDDD 0 9999 1 1");
        add("M_W", "DDD 0 255 1 1");
        add("M_bit", "DDD.dd 0 255.15 0 1");
        add("D_bit", "DDDD.dd 0.0 9999.15 0 1");
        add("TX", "DDD 0 255 0 1");
        add("OCT", "OOO 10 77 1 0");
        add("HEX", "HHH 0 FFF 1 2");
        return all;
    }();
    const QString key = QLatin1String(name);
    return RegisterCatalog::read(key, descriptions.value(key)).value_or(RegisterInfo());
}

inline Item testItem(const char *reg, int start, int count, int station = 1)
{
    return Item{station, testRegister(reg), start, count};
}

/** All that a PLC's memory has in them. */
inline RegisterCatalog testCatalog()
{
    RegisterCatalog registers;
    for (const char *const name : {"D_W", "D_bit", "M_W", "M_bit", "TX"}) {
        registers.add(testRegister(name));
    }
    return registers;
}

/** "1/D_W:5*3 M_bit:3.5" */
inline QVector<Item> testItems(const QString &texts)
{
    QVector<Item> items;
    for (const QString &text : texts.split(QLatin1Char(' '))) {
        QString error;
        items.append(parseItem(text, 1, testCatalog(), error).value_or(Item()));
    }
    return items;
}

inline QVector<Item> testItems(const char *texts)
{
    return testItems(QString::fromLatin1(texts));
}

} // namespace cnet
