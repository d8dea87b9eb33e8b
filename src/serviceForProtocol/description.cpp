#include "serviceForProtocol/description.h"

#include <QtCore/QStringList>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/protocol.h"

// Protocol type of this driver, reported by two functions.
enum { kProtocolType = 0 };

void intf_getProtocolType(int *type)
{
    if (type != nullptr) {
        *type = kProtocolType;
    }
}

void intf_getDriverParameter(QString &out)
{
    const QString registers = QStringList(driver.regNames).join(QLatin1String(","));
    out = QString::fromLatin1("%1,%2,%3,%4,%5,%6,%7")
              .arg(kProtocolType)
              .arg(PROCOTOL_DEFALT_COM_PAR)
              .arg(0)
              .arg(1)
              .arg(PROCOTOL_DEFALT_IP_PAR)
              .arg(PROCOTOL_NAME)
              .arg(registers);
}

void intf_getDriverPropertyPage(QString &out)
{
    out = PROCOTOL_PAR_HMI_SET_MODE;
}

void intf_SetDriverPropertyPage(const QString &page)
{
    const DriverEntry inside;
    driver.propertyPage = page;
}

QString intf_getVersion()
{
    return PROCOTOL_VERSION;
}

int intf_getRegListByType(int type, QList<QString> &out)
{
    for (int i = 0; i < kRegisterCount; ++i) {
        const int width = ADDRESS_RANGE_PRO[i][kUnitWidthColumn].toInt();
        if (type == 0 ? width == 1 : width > 1) {
            out.append(REG_LIST[i]);
        }
    }
    return type == 0 || type == 1 ? 1 : 0;
}

static RegisterWidthCode widthCode(int unitBits)
{
    switch (unitBits) {
    case 1:
        return kWidthBit;
    case 32:
        return kWidthDoubleWord;
    default:
        return kWidthWord;
    }
}

static RegisterAccessCode accessCode(const QString &access)
{
    if (access == QLatin1String("R")) {
        return kAccessRead;
    }
    return access == QLatin1String("W") ? kAccessWrite : kAccessReadWrite;
}

void appendRowDescription(const QString *row, QList<QString> &out)
{
    out.append(row[kFormatColumn]);
    out.append(row[kLowestColumn]);
    out.append(row[kHighestColumn]);
    out.append(QString::number(widthCode(row[kUnitWidthColumn].toInt())));
    out.append(QString::number(accessCode(row[kAccessColumn])));
}

int intf_getRegDiscription(const QString &regName, QList<QString> &out)
{
    const int index = registerIndex(regName);
    if (index >= 0) {
        appendRowDescription(ADDRESS_RANGE_PRO[index], out);
    }
    return 0;
}
