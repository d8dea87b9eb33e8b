#include "serviceForProtocol/address/address_check.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/address/address_number.h"

namespace {

struct AddressLimits
{
    int lowest;
    int highest;
};

} // namespace

// The data type of bit objects.
enum { kBitDataType = -1 };

// The host counts in words of 16 bits, whatever the register's words are.
static const int kHostWordBits = 16;

static bool isWriting(int accessMode)
{
    return accessMode == 1 || accessMode == 2;
}

// The host's codes of the data types that are 32 bits wide.
static bool isDoubleWordType(int dataType)
{
    return dataType == 1 || dataType == 3 || dataType == 5 || dataType == 6 || dataType == 9;
}

static int checkKind(const QString *row, int dataType)
{
    const bool isBitRegister = row[kUnitWidthColumn] == QLatin1String("1");
    return isBitRegister == (dataType == kBitDataType) ? kAddressValid : kAddressWrongKind;
}

static int checkUse(const QString *row, int dataType, int accessMode)
{
    if (row[kAccessColumn] == QLatin1String("R") && isWriting(accessMode)) {
        return kAddressReadOnly;
    }
    if (row[kUnitWidthColumn] == QLatin1String("32") && !isDoubleWordType(dataType)) {
        return kAddressWrongType;
    }
    return kAddressValid;
}

// The lowest address of a row may not match its own pattern ("0" for "DDD.dd"). The limit is 0
// then.
static AddressLimits limitsOf(const QString *row, const QString &regName)
{
    AddressLimits limits = {0, 0};
    a2i(row[kHighestColumn], limits.highest, row[kFormatColumn], regName);
    a2i(row[kLowestColumn], limits.lowest, row[kFormatColumn], regName);
    return limits;
}

// The size of a bit object counts in bits, that of a word object in the register's words.
static bool isWithin(const AddressLimits &limits, int addr, int wordCount, int width)
{
    const double size = wordCount / (static_cast<double>(width) / kHostWordBits);
    return addr >= limits.lowest && size + addr <= static_cast<double>(limits.highest) + 1;
}

static int checkPlace(const QString *row, const QString &regName, const QString &addrText,
                      int &addr, int dataType, int wordCount)
{
    if (a2i(addrText, addr, row[kFormatColumn], regName) != 1) {
        return kAddressMalformed;
    }
    const int width = dataType == kBitDataType ? kHostWordBits : row[kWordWidthColumn].toInt();
    if (!isWithin(limitsOf(row, regName), addr, wordCount, width)) {
        return kAddressOutOfRange;
    }
    addr = addrOffset(regName, addr);
    return kAddressValid;
}

// An unknown name is checked against the limits 0 to 0 first. Kept for the panel editors that rely
// on this order.
static int checkWithoutRow(int addr, int wordCount)
{
    const AddressLimits none = {0, 0};
    return isWithin(none, addr, wordCount, kHostWordBits) ? kAddressUnknownName
                                                          : kAddressOutOfRange;
}

int checkAddressInRow(const QString *row, const QString &regName, const QString &addrText,
                      int &addr, int dataType, int wordCount, int accessMode)
{
    if (row == nullptr) {
        return checkWithoutRow(addr, wordCount);
    }
    int code = checkKind(row, dataType);
    if (code == kAddressValid) {
        code = checkUse(row, dataType, accessMode);
    }
    if (code == kAddressValid) {
        code = checkPlace(row, regName, addrText, addr, dataType, wordCount);
    }
    return code;
}

static const QString *rowOf(const QString &regName)
{
    const int index = registerIndex(regName);
    return index < 0 ? nullptr : ADDRESS_RANGE_PRO[index];
}

int intf_checkAddr(const QString &regName, const QString &addrText, int &addr, int dataType,
                   int wordCount, int accessMode)
{
    return checkAddressInRow(rowOf(regName), regName, addrText, addr, dataType, wordCount,
                             accessMode);
}

// Only distinguishes words from bits, so it checks neither access nor 32-bit types.
int intf_checkAddrValidity(const QString &regName, const QString &addrText, int &addr,
                           int wordCount, int wordAccess)
{
    const QString *const row = rowOf(regName);
    const int dataType = wordAccess != 0 ? 0 : kBitDataType;
    if (row == nullptr) {
        return checkWithoutRow(addr, wordCount);
    }
    const int code = checkKind(row, dataType);
    return code != kAddressValid ? code
                                 : checkPlace(row, regName, addrText, addr, dataType, wordCount);
}
