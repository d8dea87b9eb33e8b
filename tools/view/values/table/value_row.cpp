#include "view/values/table/value_row.h"

#include "host/tag/tag_set.h"
#include "host/tag/typed_item.h"

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace cnet::view {

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kMinute = 60 * kSecond;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

int rankOf(const Scalar &value)
{
    if (std::holds_alternative<std::monostate>(value)) {
        return 0;
    }
    return std::holds_alternative<QString>(value) ? 2 : 1;
}

template <typename Number>
int compare(const Number &left, const Number &right)
{
    return left < right ? -1 : right < left ? 1 : 0;
}

double numberOf(const Scalar &value)
{
    const bool *const truth = std::get_if<bool>(&value);
    return truth != nullptr ? (*truth ? 1 : 0) : approximately(value);
}

} // namespace

int compareScalars(const Scalar &left, const Scalar &right)
{
    if (const int ranks = compare(rankOf(left), rankOf(right)); ranks != 0 || rankOf(left) == 0) {
        return ranks;
    }
    if (rankOf(left) == 2) {
        return compare(std::get<QString>(left), std::get<QString>(right));
    }
    const auto *const first = std::get_if<qint64>(&left);
    const auto *const second = std::get_if<qint64>(&right);
    if (first != nullptr && second != nullptr) {
        return compare(*first, *second);
    }
    const auto *const large = std::get_if<quint64>(&left);
    const auto *const larger = std::get_if<quint64>(&right);
    if (large != nullptr && larger != nullptr) {
        return compare(*large, *larger);
    }
    return compare(numberOf(left), numberOf(right));
}

Tag valueTag(const Tag &tag, int index)
{
    return tag.count == 1 ? tag : oneValue(tag, index);
}

ValueRow rowOf(const Tag &tag, int tagIndex, int index)
{
    ValueRow row;
    row.tag = tagIndex;
    row.index = index;
    row.name = tagText(tag, index);
    row.key = row.name + QLatin1Char('\n') + typedItemText(tag, index);
    row.searched =
        QStringList({row.name, tag.group, tag.description}).join(QLatin1Char('\n')).toLower();
    row.isWritable =
        tag.access == TagAccess::ReadWrite && tag.item.reg.access != RegisterAccess::Read;
    return row;
}

void widen(ValueRow &row)
{
    const Scalar &value = row.now.value.value;
    // What waits for the PLC may never get there.
    const bool isRead = row.now.quality == Quality::Good || row.now.quality == Quality::Implausible;
    if (!isRead || !isNumber(value)) {
        return;
    }
    if (!isNumber(row.least) || compareScalars(value, row.least) < 0) {
        row.least = value;
    }
    if (!isNumber(row.greatest) || compareScalars(value, row.greatest) > 0) {
        row.greatest = value;
    }
}

QString rawText(const QVector<quint16> &units, bool isBit)
{
    QStringList texts;
    for (const quint16 unit : units) {
        texts.append(isBit
                         ? QString::number(unit)
                         : QLatin1String("0x") + QString::number(unit, 16).toUpper().rightJustified(
                                                     4, QLatin1Char('0')));
    }
    return texts.join(QLatin1Char(' '));
}

QString ageText(qint64 ms)
{
    if (ms < 0) {
        return {};
    }
    if (ms < 10 * kSecond) {
        const double seconds = static_cast<double>(ms) / static_cast<double>(kSecond);
        return QCoreApplication::translate("Age", "%1 s").arg(QString::number(seconds, 'f', 1));
    }
    if (ms < 2 * kMinute) {
        return QCoreApplication::translate("Age", "%1 s").arg(ms / kSecond);
    }
    if (ms < 2 * kHour) {
        return QCoreApplication::translate("Age", "%1 min").arg(ms / kMinute);
    }
    if (ms < 2 * kDay) {
        return QCoreApplication::translate("Age", "%1 h").arg(ms / kHour);
    }
    return QCoreApplication::translate("Age", "%1 d").arg(ms / kDay);
}

} // namespace cnet::view
