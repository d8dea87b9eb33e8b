#include "ls_master_k_cnet/address_text.h"

#include <QtCore/QStringList>

#include "ls_master_k_cnet/register_row.h"
#include "shared/wrap.h"

int getIndexFromReg(const QString &regName)
{
    return registerIndex(regName);
}

int addr_str2int(const QString &text, const QString &regName)
{
    if (!isBitName(regName)) {
        return 0;
    }
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2) {
        return -1;
    }
    bool wordIsNumber = false;
    bool bitIsNumber = false;
    const int word = parts.at(0).toInt(&wordIsNumber);
    const int bit = parts.at(1).toInt(&bitIsNumber);
    if (!wordIsNumber || !bitIsNumber || bit >= 16) {
        return -1;
    }
    return wrapAdd(wrapMul(word, 16), bit);
}

QString addr_int2str(int value, const QString &regName)
{
    if (!isBitName(regName)) {
        return QString();
    }
    return QString::number(value / 16) + QLatin1Char('.') + QString::number(value % 16);
}

int addrOffset(const QString &, int addr)
{
    return addr;
}
