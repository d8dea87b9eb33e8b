#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QVector>

#include "support/driver_fixture.h"

/// Recipe items and blocks as text: "[device/]station register start count offset", parted by "; ".

inline _RCP_VAR_PRO recipeItem(const QByteArray &text)
{
    const int slash = static_cast<int>(text.indexOf('/'));
    const QList<QByteArray> fields = text.mid(slash + 1).split(' ');
    _RCP_VAR_PRO item = _RCP_VAR_PRO();
    item.deviceNo = slash < 0 ? 7 : text.left(slash).toInt();
    item.stationNo = fields.at(0).toInt();
    item.regName = latin(fields.at(1).constData());
    item.startAddr = fields.at(2).toInt();
    item.count = fields.at(3).toInt();
    item.bufOffset = fields.at(4).toInt();
    return item;
}

inline QVector<_RCP_VAR_PRO> recipeItems(const QByteArray &texts)
{
    QVector<_RCP_VAR_PRO> items;
    const QList<QByteArray> parts = texts.split(';');
    for (const QByteArray &untrimmed : parts) {
        const QByteArray part = untrimmed.trimmed();
        if (!part.isEmpty()) {
            items.append(recipeItem(part));
        }
    }
    return items;
}

/// The host's recipe is these items.
/// @return  the driver's result
inline int setRecipeItems(const QByteArray &texts)
{
    QVector<_RCP_VAR_PRO> items = recipeItems(texts);
    return intf_setRcpAddress(items);
}

inline QByteArray recipeText(const QVector<_RCP_VAR_PRO> &items)
{
    QByteArray texts;
    for (int i = 0; i < items.size(); ++i) {
        const _RCP_VAR_PRO &item = items.at(i);
        texts += QByteArray(i == 0 ? "" : "; ") + QByteArray::number(item.stationNo) + ' ' +
                 item.regName.toLatin1() + ' ' + QByteArray::number(item.startAddr) + ' ' +
                 QByteArray::number(item.count) + ' ' + QByteArray::number(item.bufOffset);
    }
    return texts;
}

/// The positions in `driver.rcpItems` at which the blocks begin.
inline QByteArray startsText()
{
    QByteArray text;
    for (int i = 0; i < driver.rcpBlockStarts.size(); ++i) {
        text += QByteArray(i == 0 ? "" : " ") + QByteArray::number(driver.rcpBlockStarts.at(i));
    }
    return text;
}
