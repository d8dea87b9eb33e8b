#include "exchange/memory_changes.h"

namespace exchange {

plc::Point pointOf(const QString &regName, int address)
{
    plc::Point point;
    point.device = regName.isEmpty() ? '\0' : regName.at(0).toLatin1();
    point.address = address;
    if (regName.endsWith(QLatin1String("_bit"))) {
        point.kind = plc::PointKind::Bit;
    } else if (regName.endsWith(QLatin1Char('X'))) {
        point.kind = plc::PointKind::Contact;
    }
    return point;
}

QStringList memoryChanges(const plc::Memory &before, const plc::Memory &after)
{
    QStringList changes;
    const auto compare = [&](const QString &name, int count) {
        for (int address = 0; address < count; ++address) {
            const auto value = after.value(pointOf(name, address));
            if (before.value(pointOf(name, address)) != value) {
                changes +=
                    QString::fromLatin1("%1 %2=%3").arg(name).arg(address).arg(value.value_or(0));
            }
        }
    };
    for (const char device : {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'}) {
        const QString letter(QLatin1Char{device});
        compare(letter + QLatin1String("_W"), after.wordCount(device));
        compare(letter + QLatin1Char('X'), after.contactCount(device));
    }
    return changes;
}

} // namespace exchange
