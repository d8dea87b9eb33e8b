#include "host/tag/tag_writing.h"

#include "host/address/address.h"
#include "host/address/value_text.h"
#include "host/tag/scaling.h"
#include "host/value/value_codec.h"

#include <algorithm>

namespace cnet {

namespace {

/// The bit of a word as an item of its own. @return nothing where the PLC has no such register
std::optional<Item> bitItem(const Tag &tag, int index, const RegisterCatalog &registers,
                            QString &error)
{
    Item item = tag.item;
    const RegisterInfo *bits = registers.find(item.reg.letter() + QLatin1String("_bit"));
    const int address = (item.start + index) * kBitsPerWord + tag.type.bit;
    if (bits == nullptr || !bits->isBit() || address < bits->lowest || address > bits->highest) {
        error = QString::fromLatin1("%1: a bit of %2 cannot be written by itself, since the PLC "
                                    "has no register for it; write the whole word")
                    .arg(quotable(tag.title()), item.reg.name);
        return std::nullopt;
    }
    item.reg = *bits;
    item.start = address;
    item.count = 1;
    return item;
}

/// The units of one value, with all checks.
std::optional<QVector<quint16>> unitsOf(const Tag &tag, const Scalar &value, QString &error)
{
    QString what;
    const auto raw = unscaledValue(tag, value, what);
    auto units = raw ? encodeValue(tag.type, *raw, what) : std::nullopt;
    if (units && tag.item.reg.isBit() && units->first() > 1) {
        what = QString::fromLatin1("%1 takes 0 or 1").arg(tag.item.reg.name);
        units.reset();
    }
    if (!units) {
        error = QString::fromLatin1("%1: %2").arg(quotable(tag.title()), what);
    }
    return units;
}

QVector<Assignment> cutAtValues(const Tag &tag, const QVector<quint16> &units, int mostWords)
{
    const int perValue = tag.type.unitsPerValue();
    const int step = tag.item.reg.isBit() ? static_cast<int>(units.size())
                                          : std::max(1, mostWords / perValue) * perValue;
    QVector<Assignment> assignments;
    for (int first = 0; first < units.size(); first += step) {
        Assignment part{tag.item, units.mid(first, step)};
        part.item.start += first;
        part.item.count = static_cast<int>(part.values.size());
        assignments.append(part);
    }
    return assignments;
}

} // namespace

std::optional<QVector<Assignment>> assignmentsOf(const Tag &tag, const QVector<Scalar> &values,
                                                 const RegisterCatalog &registers, int mostWords,
                                                 QString &error)
{
    if (tag.access == TagAccess::Read) {
        error = QString::fromLatin1("%1 can only be read").arg(quotable(tag.title()));
        return std::nullopt;
    }
    if (values.size() != tag.count) {
        error = QString::fromLatin1("%1 takes %2, not %3")
                    .arg(quotable(tag.title()), counted(tag.count, "value"))
                    .arg(values.size());
        return std::nullopt;
    }
    QVector<quint16> units;
    QVector<Assignment> bits;
    for (int i = 0; i < values.size(); ++i) {
        const auto own = unitsOf(tag, values.at(i), error);
        if (!own) {
            return std::nullopt;
        }
        units += *own;
        if (tag.type.kind == ValueKind::Bit) {
            const auto item = bitItem(tag, i, registers, error);
            if (!item) {
                return std::nullopt;
            }
            bits.append({*item, *own});
        }
    }
    return bits.isEmpty() ? cutAtValues(tag, units, mostWords) : bits;
}

} // namespace cnet
