#include "serviceForProtocol/exchange/error_info.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/address/address_number.h"
#include "shared/protocol.h"

QString addressText(int address, const QString &regName, const QString &format)
{
    return isBitName(regName) ? addr_int2str(address, regName) : plainAddressText(address, format);
}

namespace {

/// Builds a short text with a single allocation: one is needed for every answer.
class LineBuilder
{
public:
    LineBuilder()
        : m_length(0)
    {}

    LineBuilder &add(char character)
    {
        if (m_length < kLongest) {
            m_characters[m_length++] = character;
        }
        return *this;
    }

    LineBuilder &add(const QString &latin1)
    {
        for (const QChar character : latin1) {
            add(character.toLatin1());
        }
        return *this;
    }

    LineBuilder &add(int number)
    {
        char digits[11];
        int count = 0;
        unsigned rest =
            number < 0 ? 0U - static_cast<unsigned>(number) : static_cast<unsigned>(number);
        do {
            digits[count++] = static_cast<char>('0' + rest % 10U);
            rest /= 10U;
        } while (rest != 0);
        if (number < 0) {
            add('-');
        }
        while (count > 0) {
            add(digits[--count]);
        }
        return *this;
    }

    QString text() const { return QString::fromLatin1(m_characters, m_length); }

private:
    enum { kLongest = 96 }; // five numbers, an address, the longest register name

    char m_characters[kLongest];
    int m_length;
};

} // namespace

// Handles plain decimal addresses, the most frequent ones, without a text of their own.
static void addAddress(LineBuilder &line, const VARIABLE &var, int index)
{
    const bool isBit = isBitName(var.regName);
    const QString &format = ADDRESS_RANGE_PRO[index][kFormatColumn];
    if (isBit || var.startAddr < 0 || !format.endsWith(QLatin1Char('D'))) {
        line.add(addressText(var.startAddr, var.regName, format));
    } else {
        line.add(var.startAddr);
    }
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
    LineBuilder line;
    line.add(var.stationNo).add('#').add(var.regName);
    addAddress(line, var, index);
    line.add('(').add(var.count).add(')');
    line.add('(').add(static_cast<int>(answer.size())).add(')');
    return line.text();
}
