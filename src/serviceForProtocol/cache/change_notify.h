#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/view_names.h"
#include "shared/data_record.h"

/// Notifies the host of a changed unit, with one call for each monitored view: its bits first, then
/// the unit, then the wider values that it is part of. The calls run on the calling thread, which
/// releases the driver's lock. The host may call back into the driver, and other threads may enter
/// it, so callers must look up their records again afterwards.
///
/// @param oldValue  previous bytes of the unit, as a number; null, here or in `newValue`: all
///                  monitored bits are reported without comparison
/// @param newValue  current bytes of the unit
/// @param index     record in `driver.dataArea`; nothing is reported for an invalid index
/// @param skipBits  not 0: the bits are not reported

/// A 16-bit unit: "_bit", "_W", "_D".
void _wordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// An 8-bit unit: "_bit", "_B", "_W", "_D".
void _byteDataChange(const unsigned char *oldValue, const unsigned char *newValue, int index,
                     int skipBits);

/// A 32-bit unit: "_bit", and the unit under the bare register letter.
void _dwordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// A one-bit unit (a contact), under the bare register letter.
void _bitDataChange(int index);

struct WiderView;

/// Notifies the host of several changed units. It keeps the names for the next unit, because the
/// units of an answer usually have the same letter.
class ChangeNotifier
{
public:
    ChangeNotifier();

    /// Reports a unit of `bytes` (1, 2 or 4).
    /// @param record   of `driver.dataArea`; do not use it afterwards
    /// @param changed  the bits that have changed
    void unitChanged(const _DATA_ &record, int bytes, int changed);

    /// The same as the functions above.
    void word(const int *oldValue, const int *newValue, int index, int skipBits);
    void byte(const unsigned char *oldValue, const unsigned char *newValue, int index,
              int skipBits);
    void doubleWord(const int *oldValue, const int *newValue, int index, int skipBits);
    void bit(int index);

    struct UnitViews;

private:
    /// The part of a record that the calls need.
    struct Unit
    {
        int deviceNo;
        int stationNo;
        int unitAddr;
        int monitorFlags;
    };

    // @param changed  bits of the unit to report if they are monitored
    void report(const _DATA_ &record, const UnitViews &views, int changed);
    void reportAt(int index, const UnitViews &views, int changed);
    void findNamesOf(const QString &letter);
    void callBits(const Unit &unit, int bitsPerUnit, unsigned watchedBits);
    void callWider(const Unit &unit, const WiderView &view);
    void call(const Unit &unit, ViewSuffix suffix, int address);

    const ViewNames *m_names; ///< names of the last unit; null before the first one
    ViewNames m_ownNames;     ///< names for the last letter that no register has
    QString m_hostsName;      ///< passed to the host, which may change it

    Q_DISABLE_COPY(ChangeNotifier)
};

/// `ChangeNotifier::unitChanged` for a single unit; nothing is reported for an invalid index.
void notifyUnitChange(int bytes, int oldNumber, int newNumber, int index);

/// Calls the host if it has installed a callback.
void notifyHost(int deviceNo, int stationNo, const QString &name, int address);
