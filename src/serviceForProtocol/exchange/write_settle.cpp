#include "serviceForProtocol/exchange/write_settle.h"

#include <algorithm>
#include <cstring>

#include "serviceForProtocol/cache/change_notify.h"
#include "serviceForProtocol/cache/data_area.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/unit_limits.h"
#include "shared/wrap.h"

namespace {

enum WriteOutcome { kWriteFailed, kWriteConfirmed };

/// What is reported to the host for a unit whose write failed.
enum FailureReport {
    kReportAddress,          ///< the address itself, monitored or not
    kReportAll,              ///< every monitored view, with all monitored bits
    kReportWrittenConfirmed, ///< every monitored view, but only the bits that differ
    kReportWrittenWritten    ///< every monitored view except bits
};

/// How the units of a write are visited when it ends. For some widths the first unit is settled
/// repeatedly and the others stay pending. Kept for compatibility; do not fix.
struct SettleRule
{
    int passesPerTwo; ///< passes for every two units of the count: 4, 2 or 1
    int step;         ///< units between two passes: 0 or 1
    bool fullName;    ///< records have the whole register name as key, not its letter
    int bytes;        ///< bytes of a unit: 1, 2 or 4
    FailureReport report;
};

} // namespace

static SettleRule settleRule(const RegisterWidths &widths)
{
    const SettleRule contact = {2, 1, true, 1, kReportAddress};
    const SettleRule byte = {2, 0, false, 1, kReportAll};
    const SettleRule word = {2, 1, false, 2, kReportWrittenConfirmed};
    const SettleRule wordOfBytes = {4, 0, false, 1, kReportWrittenWritten};
    const SettleRule doubleOfBytes = {4, 1, false, 1, kReportWrittenConfirmed};
    const SettleRule doubleWhole = {1, 1, true, 4, kReportAll};
    const SettleRule none = {0, 0, false, 1, kReportAll};
    switch (widths.unitBits) {
    case 1:
        return contact;
    case 8:
        return byte;
    case 16:
        return widths.wordBits == 8 ? wordOfBytes : word;
    case 32:
        if (widths.wordBits == 16) {
            return word;
        }
        return widths.wordBits == 8 ? doubleOfBytes : doubleWhole;
    default:
        return none;
    }
}

// Reports all monitored views, with the change routine for the unit's width.
static void reportAllViews(int bytes, int index)
{
    if (bytes == 1) {
        _byteDataChange(nullptr, nullptr, index, 0);
    } else if (bytes == 2) {
        _wordDataChange(nullptr, nullptr, index, 0);
    } else {
        _dwordDataChange(nullptr, nullptr, index, 0);
    }
}

static void settleUnit(const SettleRule &rule, int stationNo, const QString &regName,
                       const QString &key, int address, WriteOutcome outcome)
{
    const int index = getIndexOfDataArea(stationNo, key, address, driver.dataArea);
    _DATA_ &record = driver.dataArea[index];
    record.writePending = 0;
    if (outcome == kWriteConfirmed) {
        std::memcpy(record.readValue, record.writeValue, static_cast<size_t>(rule.bytes));
        ++driver.valuesStamp;
        return;
    }
    const int written = unitNumber(record.writeValue, rule.bytes);
    const int confirmed = unitNumber(record.readValue, rule.bytes);
    switch (rule.report) {
    case kReportAddress:
        notifyHost(driver.deviceNo, stationNo, regName, address);
        break;
    case kReportAll:
        reportAllViews(rule.bytes, index);
        break;
    case kReportWrittenConfirmed:
        notifyUnitChange(rule.bytes, written, confirmed, index);
        break;
    case kReportWrittenWritten:
        notifyUnitChange(rule.bytes, written, written, index);
        break;
    }
}

// Clears the mark of one queued write of a bit: of the first one, or of the second if the first is
// gone.
static int retirePendingBit(int pendingBits, int bit)
{
    const int first = 2 * bit;
    return _setBitValue(pendingBits, bitOf(pendingBits, first) == 0 ? first + 1 : first, 0);
}

static void settleBit(int stationNo, const QString &letter, int address, int wordBits,
                      WriteOutcome outcome)
{
    const int bytes = wordBits / 8;
    const int bit = address % wordBits;
    const int index = getIndexOfDataArea(stationNo, letter, address / wordBits, driver.dataArea);
    _DATA_ &record = driver.dataArea[index];
    record.pendingBits = retirePendingBit(record.pendingBits, bit);
    if (record.pendingBits == 0) {
        record.writePending = 0;
    }
    if (outcome == kWriteConfirmed) {
        const int written = unitNumber(record.writeValue, bytes);
        const int confirmed = unitNumber(record.readValue, bytes);
        setUnitNumber(record.readValue, bytes, _setBitValue(confirmed, bit, bitOf(written, bit)));
        ++driver.valuesStamp;
    }
    if (record.writePending == 0) {
        reportAllViews(bytes, index);
    }
}

static void settleBits(const RegisterWidths &widths, int stationNo, const QString &regName,
                       int startAddr, int count, WriteOutcome outcome)
{
    if (widths.wordBits != 16 && widths.wordBits != 8) {
        return;
    }
    const QString letter = registerLetter(regName);
    const int bits = std::min<int>(count, kMaxBits);
    for (int i = 0; i < bits; ++i) {
        settleBit(stationNo, letter, wrapAdd(startAddr, i), widths.wordBits, outcome);
    }
}

void settleWrite(const RegisterWidths &widths, int stationNo, const QString &regName, int startAddr,
                 int count, int success)
{
    const WriteOutcome outcome = success != 0 ? kWriteConfirmed : kWriteFailed;
    if (widths.unitBits == 1 && widths.bitName) {
        settleBits(widths, stationNo, regName, startAddr, count, outcome);
        return;
    }
    const SettleRule rule = settleRule(widths);
    const QString key = rule.fullName ? regName : registerLetter(regName);
    const int passes = std::max(0, std::min<int>(count, kMaxUnits)) * rule.passesPerTwo / 2;
    for (int i = 0; i < passes; ++i) {
        settleUnit(rule, stationNo, regName, key, wrapAdd(startAddr, i * rule.step), outcome);
    }
}

void _write_FailOrSuc(int stationNo, const QString &regName, int startAddr, int count, int success)
{
    settleWrite(registerWidths(regName), stationNo, regName, startAddr, count, success);
}
