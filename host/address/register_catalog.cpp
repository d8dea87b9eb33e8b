#include "host/address/register_catalog.h"

#include "host/address/address.h"

#include <algorithm>

namespace cnet {

namespace {

const int kDescriptionTexts = 5;

AddressForm formOf(const QString &pattern)
{
    const bool uniform = std::all_of(pattern.cbegin(), pattern.cend(),
                                     [&](QChar letter) { return letter == pattern.at(0); });
    return uniform ? AddressForm::Plain : AddressForm::WordBit;
}

int radixOf(const QString &pattern)
{
    if (pattern.endsWith(QLatin1Char('O'))) {
        return 8;
    }
    return pattern.endsWith(QLatin1Char('H')) ? 16 : 10;
}

// The driver writes the lowest address of some word.bit registers as "0", without a bit.
std::optional<int> limit(const RegisterInfo &info, const QString &text)
{
    const bool bare = info.form == AddressForm::WordBit && !text.contains(QLatin1Char('.'));
    return readAddress(info, bare ? text + QLatin1String(".0") : text);
}

} // namespace

const RegisterInfo *RegisterCatalog::find(const QString &name) const
{
    const auto found = std::find_if(m_registers.cbegin(), m_registers.cend(),
                                    [&](const RegisterInfo &info) { return info.name == name; });
    return found == m_registers.cend() ? nullptr : &*found;
}

QStringList RegisterCatalog::names() const
{
    QStringList names;
    for (const RegisterInfo &info : m_registers) {
        names.append(info.name);
    }
    return names;
}

std::optional<RegisterInfo> RegisterCatalog::read(const QString &name,
                                                  const QStringList &description)
{
    if (description.size() < kDescriptionTexts) {
        return std::nullopt;
    }
    RegisterInfo info;
    info.name = name;
    info.pattern = description.at(0);
    info.lowestText = description.at(1);
    info.highestText = description.at(2);
    info.width = static_cast<RegisterWidth>(description.at(3).toInt());
    info.access = static_cast<RegisterAccess>(description.at(4).toInt());
    info.form = formOf(info.pattern);
    info.radix = radixOf(info.pattern);
    const auto lowest = limit(info, info.lowestText);
    const auto highest = limit(info, info.highestText);
    if (!lowest || !highest) {
        return std::nullopt;
    }
    info.lowest = *lowest;
    info.highest = *highest;
    return info;
}

} // namespace cnet
