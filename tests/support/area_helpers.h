#pragma once

#include <cstring>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/cache/data_area.h"
#include "shared/protocol.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

/// What the tests of the cache and of the jobs share: records made and shown in one line.

inline RegisterWidths makeWidths(int unitBits, int wordBits, bool bitName = false)
{
    const RegisterWidths widths = {unitBits, wordBits, bitName};
    return widths;
}

/// The record of a unit of `driver.dataArea`, made when it is missing; good until the area grows.
inline _DATA_ &unitAt(int stationNo, const char *letter, int unitAddr)
{
    return driver.dataArea[getIndexOfDataArea(stationNo, latin(letter), unitAddr, driver.dataArea)];
}

inline QByteArray bytesOf(const unsigned char *bytes, int size)
{
    return QByteArray(reinterpret_cast<const char *>(bytes), size);
}

/// Bytes in hexadecimal, as `"12AB"`.
inline QByteArray hexOf(const unsigned char *bytes, int size)
{
    return bytesOf(bytes, size).toHex().toUpper();
}

/// A record in one line: "1D5=read/written/pending/bits that wait/marks/marks of its bits".
inline QByteArray recordText(const _DATA_ &record)
{
    return QByteArray::number(record.stationNo) + record.regPrefix.toLatin1() +
           QByteArray::number(record.unitAddr) + '=' + hexOf(record.readValue, 4) + '/' +
           hexOf(record.writeValue, 4) + '/' + QByteArray::number(record.writePending) + '/' +
           QByteArray::number(record.pendingBits) + '/' + QByteArray::number(record.monitorFlags) +
           '/' + QByteArray::number(record.bitMonitorFlags);
}

inline void setBytes(unsigned char (&target)[4], const char *hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::memset(target, 0, sizeof target);
    std::memcpy(target, bytes.constData(), static_cast<size_t>(bytes.size()));
}

/// The panel writes to station 1.
/// @param data  two bytes a word, one a bit or a contact
inline int panelWrite(const char *regName, int startAddr, int count, QByteArray data,
                      int opKind = 0)
{
    QString name = latin(regName);
    return intf_setData(1, name, startAddr, count, DriverFixture::bytes(data), opKind);
}

/// What the panel shows of station 1, so many bytes of it, in hexadecimal.
inline QByteArray panelRead(const char *regName, int startAddr, int count, int bytes)
{
    QString name = latin(regName);
    QByteArray data(kValueAreaSize, '\xEE');
    const int result = intf_getData(1, name, startAddr, count, DriverFixture::bytes(data));
    return result == 1 ? data.left(bytes).toHex().toUpper() : QByteArray("refused");
}

/// All calls of the host so far, as "device station name address", parted by ", ".
inline QString callsText()
{
    return DriverFixture::calls().join(QLatin1String(", "));
}

/// A request item in one line: "station register start xcount".
inline QString itemText(const VARIABLE &item)
{
    return latin("%1 %2 %3 x%4")
        .arg(QString::number(item.stationNo), item.regName, QString::number(item.startAddr),
             QString::number(item.count));
}

inline QString listText(const QList<VARIABLE> &list)
{
    QStringList texts;
    for (const VARIABLE &item : list) {
        texts.append(itemText(item));
    }
    return texts.join(QLatin1String(", "));
}

/// The cyclic reads as they will be served, the one that is due first.
inline QList<VARIABLE> readsInTurn()
{
    return driver.cyclicReads.mid(driver.nextCyclicRead) +
           driver.cyclicReads.mid(0, driver.nextCyclicRead);
}

/// ENQ, `text`, EOT and the two characters of a block check, which the caller spells out.
inline QByteArray requestBytes(const QByteArray &text, const QByteArray &check)
{
    return QByteArray(1, '\x05') + text + QByteArray(1, '\x04') + check;
}

/// The answer to a block read of station 1: its data characters begin at byte 10.
inline QByteArray readAnswer(const QByteArray &data)
{
    return makeAnswer("01rSB0104" + data);
}

inline QByteArray writeAnswer()
{
    return makeAnswer("01wSB");
}
