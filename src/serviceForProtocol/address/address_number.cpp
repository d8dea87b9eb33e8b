#include "serviceForProtocol/address/address_number.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/protocol.h"

int getIndexFromRegName(const QString &regName)
{
    return registerIndex(regName);
}

bool isWordBitFormat(const QString &format)
{
    for (int i = 1; i < format.size(); ++i) {
        if (format.at(i) != format.at(0)) {
            return true;
        }
    }
    return false;
}

static int radixOf(const QString &format)
{
    if (format.endsWith(QLatin1Char('O'))) {
        return 8;
    }
    return format.endsWith(QLatin1Char('H')) ? 16 : 10;
}

int a2i(const QString &text, int &value, const QString &format, const QString &regName)
{
    if (isWordBitFormat(format)) {
        const int address = addr_str2int(text, regName);
        if (address == -1) {
            return -1;
        }
        value = address;
        return 1;
    }
    bool isNumber = false;
    value = text.toInt(&isNumber, radixOf(format));
    return isNumber ? 1 : -1;
}

QString plainAddressText(int address, const QString &format)
{
    return QString::number(static_cast<uint>(address), radixOf(format));
}

quint32 getRegAddressWeight(int stationNo, const QString &regName, int addr)
{
    const quint32 names = static_cast<quint32>(driver.regNames.size());
    const quint32 position = static_cast<quint32>(driver.regNames.indexOf(regName));
    return (static_cast<quint32>(stationNo) * names + position) * 65535U +
           static_cast<quint32>(addr);
}
