#pragma once

#include <QtCore/QString>

#include "ls_master_k_cnet/view_names.h"
#include "shared/data_record.h"

/// Calls of the host: one for each monitored view of a unit that changed, its bits first, then the
/// unit, then the wider values that it is a part of. They run on the calling thread, which
/// leaves the driver for them. The host may call back into the driver, and other threads enter it,
/// so whoever calls one of these looks its records up again afterwards.
///
/// @param oldValue  bytes of the unit before, as a number; null, here or in `newValue`: every
///                  monitored bit is reported without a comparison
/// @param newValue  bytes of the unit now
/// @param index     record in `driver.dataArea`; an index outside reports nothing
/// @param skipBits  not 0: the bits are left out

/// A 16-bit unit: "_bit", "_W", "_D".
void _wordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// An 8-bit unit: "_bit", "_B", "_W", "_D".
void _byteDataChange(const unsigned char *oldValue, const unsigned char *newValue, int index,
                     int skipBits);

/// A 32-bit unit: "_bit", and the unit under the bare register letter.
void _dwordDataChange(const int *oldValue, const int *newValue, int index, int skipBits);

/// A unit that is one bit (a contact), under the bare register letter.
void _bitDataChange(int index);

struct WiderView;

/// Tells the host of changed units, one after the other. It keeps the names from one unit to the
/// next: the units of an answer mostly have the same.
class ChangeNotifier
{
public:
    ChangeNotifier();

    /// Reports a unit of `bytes` (1, 2 or 4).
    /// @param record   of `driver.dataArea`; not to be used afterwards
    /// @param changed  its bits that have changed
    void unitChanged(const _DATA_ &record, int bytes, int changed);

    /// The routines above, one each.
    void word(const int *oldValue, const int *newValue, int index, int skipBits);
    void byte(const unsigned char *oldValue, const unsigned char *newValue, int index,
              int skipBits);
    void doubleWord(const int *oldValue, const int *newValue, int index, int skipBits);
    void bit(int index);

    struct UnitViews;

private:
    /// What the host must hear of one record.
    struct Unit
    {
        int deviceNo;
        int stationNo;
        int unitAddr;
        int monitorFlags;
    };

    // @param changed  bits of the unit that are to be reported where they are watched
    void report(const _DATA_ &record, const UnitViews &views, int changed);
    void reportAt(int index, const UnitViews &views, int changed);
    void findNamesOf(const QString &letter);
    void callBits(const Unit &unit, int bitsPerUnit, unsigned watchedBits);
    void callWider(const Unit &unit, const WiderView &view);
    void call(const Unit &unit, ViewSuffix suffix, int address);

    const ViewNames *m_names; ///< of the last unit's letter; null before the first
    ViewNames m_ownNames;     ///< of the last letter that no register has
    QString m_hostsName;      ///< what the host is handed, and may change

    Q_DISABLE_COPY(ChangeNotifier)
};

/// `ChangeNotifier::unitChanged` for a single unit; an index outside reports nothing.
void notifyUnitChange(int bytes, int oldNumber, int newNumber, int index);

/// Calls the host if it has installed a callback.
void notifyHost(int deviceNo, int stationNo, const QString &name, int address);
