#include "serviceForProtocol/exchange/answer_decode.h"

#include <algorithm>
#include <cstring>

#include "serviceForProtocol/cache/change_notify.h"
#include "serviceForProtocol/cache/data_area.h"
#include "serviceForProtocol/exchange/bit_patch.h"
#include "serviceForProtocol/exchange/known_block.h"
#include "serviceForProtocol/recipe/recipe_deliver.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/unit_limits.h"
#include "shared/wrap.h"

// A word is sent high byte first, a 32-bit unit low byte first.
static inline int numberAt(const char *digits, int bytes)
{
    switch (bytes) {
    case 1:
        return byteOfDigits(digits);
    case 2:
        return byteOfDigits(digits) << 8 | byteOfDigits(digits + 2);
    default:
        return uchar2int32(static_cast<unsigned char>(byteOfDigits(digits)),
                           static_cast<unsigned char>(byteOfDigits(digits + 2)),
                           static_cast<unsigned char>(byteOfDigits(digits + 4)),
                           static_cast<unsigned char>(byteOfDigits(digits + 6)));
    }
}

// The data characters of an answer that does not contain all of them: missing ones become "0".
static QByteArray paddedDigits(const QByteArray &answer, int dataPos, int length)
{
    QByteArray digits(length, '0');
    const qint64 first = dataPos;
    for (qint64 i = std::max<qint64>(0, -first); i < length && first + i < answer.size(); ++i) {
        digits[static_cast<int>(i)] = answer.at(static_cast<int>(first + i));
    }
    return digits;
}

namespace {

/// Stores the units of one answer in the data area and notifies the host of each that changed. It
/// looks up the record again after every call of the host: the area may have grown meanwhile.
class AnswerStore
{
public:
    /// @param kept   memory of this answer; must outlive the store
    /// @param known  the digits of the last answer, to be compared; null: none
    AnswerStore(const VARIABLE &var, const KeptAnswer &kept, const char *known)
        : m_firstAddr(var.startAddr)
        , m_kept(kept)
        , m_ownsUnits(kept.standsAlone())
        , m_known(known)
        , m_letter(registerLetter(var.regName))
        , m_cursor(var.stationNo, m_letter, driver.dataArea)
    {
        m_cursor.startAt(m_firstAddr, kept.firstRecord());
    }

    /// @return  the predicted index of the first unit
    int firstRecord() const { return m_cursor.likelyIndexOf(m_firstAddr); }

    void storeUnits(const char *digits, int units, int bytes)
    {
        switch (bytes) {
        case 1:
            storeUnitsOf<1>(digits, units);
            break;
        case 2:
            storeUnitsOf<2>(digits, units);
            break;
        default:
            storeUnitsOf<4>(digits, units);
            break;
        }
    }

    void storeContacts(const char *digits, int contacts)
    {
        for (int i = 0; i < contacts; ++i) {
            storeContact(indexOf(i), bitOf(byteOfDigits(digits + i / 8 * 2), i % 8));
        }
    }

private:
    int indexOf(int unit) { return m_cursor.indexOf(wrapAdd(m_firstAddr, unit)); }

    // The width is a template parameter because this loop takes most of the time of an answer.
    template <int Bytes>
    void storeUnitsOf(const char *digits, int units)
    {
        enum { kDigits = 2 * Bytes };
        for (int i = 0; i < units; ++i) {
            const int pos = kDigits * i;
            if (m_known == nullptr || std::memcmp(digits + pos, m_known + pos, kDigits) != 0) {
                const int index = indexOf(i);
                fetchAhead(driver.dataArea, wrapAdd(index, kUnitsAhead));
                storeUnit<Bytes>(index, numberAt(digits + pos, Bytes));
            }
        }
    }

    // What is remembered of any other block with this unit becomes invalid.
    void moveStamp()
    {
        if (!m_ownsUnits) {
            ++driver.valuesStamp;
        }
    }

    void hostWasCalled()
    {
        if (!m_kept.isUndisturbed()) {
            m_ownsUnits = false;
            m_known = nullptr;
        }
    }

    // A received value ends a pending write only if no write is queued any more.
    template <int Bytes>
    void storeUnit(int index, int number)
    {
        _DATA_ &record = driver.dataArea[index];
        const int before = unitNumber(record.readValue, Bytes);
        if (before == number) {
            return;
        }
        setUnitNumber(record.readValue, Bytes, number);
        moveStamp();
        if (record.writePending != 1 || driver.pendingWrites.isEmpty()) {
            record.writePending = 0;
        }
        m_notifier.unitChanged(record, Bytes, before ^ number);
        hostWasCalled();
    }

    void storeContact(int index, int on)
    {
        _DATA_ &record = driver.dataArea[index];
        if (record.readValue[0] == on) {
            return;
        }
        record.readValue[0] = static_cast<unsigned char>(on);
        moveStamp();
        record.writePending = 0;
        m_notifier.bit(index);
        hostWasCalled();
    }

    const int m_firstAddr;
    const KeptAnswer &m_kept;
    bool m_ownsUnits;
    const char *m_known;
    const QString m_letter;
    UnitCursor m_cursor;
    ChangeNotifier m_notifier;
};

} // namespace

void decodeToDataArea(const RegisterWidths &widths, const QByteArray &answer, int unitCount,
                      int dataPos, const VARIABLE &var)
{
    const int bytes = widths.wordBits / 8;
    const bool isContact = widths.wordBits == 1;
    if (!isContact && bytes != 1 && bytes != 2 && bytes != 4) {
        return;
    }
    const int units = std::max(0, std::min<int>(unitCount, kMaxUnits));
    const int length = isContact ? (units + 7) / 8 * 2 : 2 * bytes * units;
    const bool isWhole = dataPos >= 0 && answer.size() - dataPos >= length;
    const QByteArray padded = isWhole ? QByteArray() : paddedDigits(answer, dataPos, length);
    const char *const digits = isWhole ? answer.constData() + dataPos : padded.constData();
    KeptAnswer kept(answer);
    const bool isComparable = isWhole && kept.lastCharacters() != nullptr;
    AnswerStore store(var, kept, isComparable ? kept.lastCharacters() + dataPos : nullptr);
    if (isContact) {
        store.storeContacts(digits, units);
    } else {
        store.storeUnits(digits, units, bytes);
    }
    kept.keep(store.firstRecord());
}

void analyzeFrameOfVal(const QByteArray &answer, int unitCount, int dataPos, const VARIABLE &var)
{
    const RegisterWidths widths = registerWidths(var.regName);
    if (driver.sendState == kJobWrite && widths.bitName) {
        patchBitsIntoWrite(widths, answer, unitCount, dataPos, var);
    } else if (driver.sendState == kJobRecipeRead) {
        deliverRecipeBlock(widths, answer, dataPos);
    } else {
        decodeToDataArea(widths, answer, unitCount, dataPos, var);
    }
}
