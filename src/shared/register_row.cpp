#include "shared/register_row.h"

#include "shared/protocol_tables.h"

int registerIndex(const QString &regName)
{
    for (int i = 0; i < kRegisterCount; ++i) {
        if (REG_LIST[i] == regName) {
            return i;
        }
    }
    return -1;
}

int registerRow(const QString &regName)
{
    const int index = registerIndex(regName);
    return index < 0 ? static_cast<int>(kSpareRow) : index;
}

RegisterWidths registerWidths(const QString &regName)
{
    const QString *const row = ADDRESS_RANGE_PRO[registerRow(regName)];
    const RegisterWidths widths = {row[kUnitWidthColumn].toInt(), row[kWordWidthColumn].toInt(),
                                   isBitName(regName)};
    return widths;
}

bool isBitName(const QString &regName)
{
    return regName.contains(QLatin1String("_bit"));
}

QString registerLetter(const QString &regName)
{
    return regName.left(regName.indexOf(QLatin1Char('_')));
}
