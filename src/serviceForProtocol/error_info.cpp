#include "serviceForProtocol/error_info.h"

#include "ls_master_k_cnet/address_text.h"
#include "serviceForProtocol/address_number.h"
#include "shared/protocol.h"
#include "shared/protocol_tables.h"
#include "shared/register_row.h"

QString addressText(int address, const QString &regName, const QString &format)
{
    return isBitName(regName) ? addr_int2str(address, regName) : plainAddressText(address, format);
}

QString getErrorInfo(const QByteArray &answer)
{
    if (driver.frames.isEmpty()) {
        return QLatin1String("");
    }
    const VARIABLE &var = driver.frames.at(0).var;
    const int index = registerIndex(var.regName);
    if (index < 0) {
        return QLatin1String("");
    }
    const QString &format = ADDRESS_RANGE_PRO[index][kFormatColumn];
    return QString::fromLatin1("%1#%2%3(%4)(%5)")
        .arg(QString::number(var.stationNo), var.regName,
             addressText(var.startAddr, var.regName, format), QString::number(var.count),
             QString::number(answer.size()));
}
