#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/// Cap on the copies that one call makes; no screen has as many objects.
enum { kMaxCopies = 1000000 };

/// The step of a series, in units of the register.
///
/// @param interval  units, or a `SeriesInterval`
/// @param unitBits  unit width of the register
/// @param wordBits  word width of the register, 0 for an unknown register
/// @return          1 or more
int seriesStep(int interval, int unitBits, int wordBits);

/// Makes a series of addresses and appends their numbers and texts to the two vectors. Addresses
/// beyond the highest one are clamped to it. Pure; any thread.
///
/// @param format    address format of the register
/// @param count     number of addresses; below 1 makes none
/// @param interval  see `seriesStep`
/// @param maxAddr   highest address, as a number and as a text
/// @return          `kSeriesComplete`, or `kSeriesClamped` if an address was clamped or the series
///                  ended early because an address has no text
int multiCp(const QString &regName, const QString &format, int startAddr, int count, int interval,
            QVector<QString> &outText, QVector<int> &outAddr, int maxAddr, const QString &maxText);
