#include "ls_master_k_cnet/register_row.h"

#include "ls_master_k_cnet/protocol_tables.h"

namespace {

/// The facts about a register that every request and answer needs, computed from its texts once.
struct RegisterFacts
{
    QString letter;
    RegisterWidths widths;
};

class FactTable
{
public:
    FactTable()
    {
        for (int row = 0; row < kRowCount; ++row) {
            const QString name = row < kRegisterCount ? REG_LIST[row] : QString();
            m_rows[row].letter = letterOf(name);
            m_rows[row].widths.unitBits = ADDRESS_RANGE_PRO[row][kUnitWidthColumn].toInt();
            m_rows[row].widths.wordBits = ADDRESS_RANGE_PRO[row][kWordWidthColumn].toInt();
            m_rows[row].widths.bitName = isBitName(name);
        }
        // All registers of one letter share the same text: records are recognised by comparing the
        // address of the text instead of its characters.
        for (int row = 0; row < kRegisterCount; ++row) {
            for (int first = 0; first < row; ++first) {
                if (m_rows[first].letter == m_rows[row].letter) {
                    m_rows[row].letter = m_rows[first].letter;
                    break;
                }
            }
        }
    }

    const RegisterFacts &at(int row) const { return m_rows[row]; }

    static QString letterOf(const QString &name)
    {
        return name.left(name.indexOf(QLatin1Char('_')));
    }

private:
    RegisterFacts m_rows[kRowCount];
};

} // namespace

static const FactTable &facts()
{
    static const FactTable table;
    return table;
}

int registerIndex(const QString &regName)
{
    if (regName.isEmpty()) {
        return -1;
    }
    const int length = static_cast<int>(regName.size());
    const QChar letter = regName.at(0);
    for (int i = 0; i < kRegisterCount; ++i) {
        const QString &name = REG_LIST[i];
        if (name.size() == length && name.at(0) == letter && name == regName) {
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
    const int row = registerRow(regName);
    RegisterWidths widths = facts().at(row).widths;
    if (row == kSpareRow) {
        widths.bitName = isBitName(regName);
    }
    return widths;
}

bool isBitName(const QString &regName)
{
    return regName.contains(QLatin1String("_bit"));
}

QString registerLetter(const QString &regName)
{
    const int index = registerIndex(regName);
    return index < 0 ? FactTable::letterOf(regName) : facts().at(index).letter;
}
