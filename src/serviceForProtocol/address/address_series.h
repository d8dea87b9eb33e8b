#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/// Copies that one call makes at most; a screen never has as many objects.
enum { kMaxCopies = 1000000 };

/// Step in register units of a series.
///
/// @param interval  units, or a `SeriesInterval`
/// @param unitBits  unit width of the register
/// @param wordBits  word width of the register, 0 for a register that is not listed
/// @return          1 or more
int seriesStep(int interval, int unitBits, int wordBits);

/// Makes a series of addresses as numbers and texts, appended to the two vectors; addresses beyond
/// the highest one become the highest one. Pure; any thread.
///
/// @param format   address format of the register
/// @param count    number of addresses; below 1 makes none
/// @param interval  see `seriesStep`
/// @param maxAddr  highest address, as a number and as a text
/// @return         `kSeriesComplete`; `kSeriesClamped` also when the series stopped early because
/// an
///                 address has no text
int multiCp(const QString &regName, const QString &format, int startAddr, int count, int interval,
            QVector<QString> &outText, QVector<int> &outAddr, int maxAddr, const QString &maxText);
