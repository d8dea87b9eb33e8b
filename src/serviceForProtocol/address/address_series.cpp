#include "serviceForProtocol/address/address_series.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/address/address_number.h"

int seriesStep(int interval, int unitBits, int wordBits)
{
    int step = interval;
    if (interval == kIntervalWord || interval == kIntervalDoubleWord) {
        const int bits = interval == kIntervalWord ? 16 : 32;
        step = unitBits == 1 || wordBits < 1 ? 1 : bits / wordBits;
    }
    return step < 1 ? 1 : step;
}

int multiCp(const QString &regName, const QString &format, int startAddr, int count, int interval,
            QVector<QString> &outText, QVector<int> &outAddr, int maxAddr, const QString &maxText)
{
    const bool wordBit = isWordBitFormat(format);
    const int index = getIndexFromRegName(regName);
    const RegisterWidths widths = registerWidths(regName);
    const int step = seriesStep(interval, widths.unitBits, index < 0 ? 0 : widths.wordBits);
    int result = kSeriesComplete;
    for (int i = 0; i < count; ++i) {
        const qint64 addr = startAddr + static_cast<qint64>(i) * step;
        if (i == kMaxCopies) {
            return kSeriesClamped;
        }
        if (addr > maxAddr) {
            outAddr.append(maxAddr);
            outText.append(maxText);
            result = kSeriesClamped;
            continue;
        }
        const int number = static_cast<int>(addr);
        const QString text =
            wordBit ? addr_int2str(number, regName) : plainAddressText(number, format);
        if (text.isEmpty()) {
            return kSeriesClamped;
        }
        outAddr.append(number);
        outText.append(text);
    }
    return result;
}

int intf_multiCopy(QString &regName, int startAddr, int count, int interval,
                   QVector<QString> &outText, QVector<int> &outAddr)
{
    const int index = registerIndex(regName);
    if (index < 0) {
        return kSeriesUnknownName;
    }
    const QString *const row = ADDRESS_RANGE_PRO[index];
    int maxAddr = 0;
    a2i(row[kHighestColumn], maxAddr, row[kFormatColumn], regName);
    return multiCp(regName, row[kFormatColumn], startAddr, count, interval, outText, outAddr,
                   maxAddr, row[kHighestColumn]);
}
