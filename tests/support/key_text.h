#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>

#include "support/driver_fixture.h"

/// Keys and the ranges of requests as text.

/// A key as text: "[station/]register:address*count".
inline KEY_ADDRESS keyOf(const QByteArray &text)
{
    const int slash = static_cast<int>(text.indexOf('/'));
    const int colon = static_cast<int>(text.indexOf(':'));
    const int star = static_cast<int>(text.indexOf('*'));
    return makeKey(slash < 0 ? 1 : text.left(slash).toInt(),
                   text.mid(slash + 1, colon - slash - 1).constData(),
                   text.mid(colon + 1, star - colon - 1).toInt(), text.mid(star + 1).toInt());
}

/// Keys parted by blanks.
inline QList<KEY_ADDRESS> keysOf(const QByteArray &texts)
{
    QList<KEY_ADDRESS> keys;
    const QList<QByteArray> parts = texts.split(' ');
    for (int i = 0; i < parts.size() && !texts.isEmpty(); ++i) {
        keys.append(keyOf(parts.at(i)));
    }
    return keys;
}

/// "station/register:address*count".
template <typename Request>
QString rangeText(const Request &request)
{
    return latin("%1/%2:%3*%4")
        .arg(QString::number(request.stationNo), request.regName,
             QString::number(request.startAddr), QString::number(request.count));
}

template <typename Request>
QString rangesText(const QList<Request> &requests)
{
    QStringList texts;
    for (const Request &request : requests) {
        texts.append(rangeText(request));
    }
    return texts.join(QLatin1String(" "));
}

/// What is not in the range of a key: "keyText keyA keyB addrText bitFlag".
inline QString otherFieldsText(const KEY_ADDRESS &key)
{
    return latin("%1 %2 %3 %4 %5")
        .arg(key.keyText, QString::number(key.keyA), QString::number(key.keyB), key.addrText,
             QString::number(key.bitFlag));
}
