#include "panel/views/values_columns.h"

#include "host/tag/typed_item.h"

#include <algorithm>

namespace cnet::panel {

namespace {

const int kWordCell = 14;   // "65535 0xFFFF", a mark and a blank
const int kDecimalCell = 7; // "65535", the same
const int kBitCell = 2;     // "1" and a mark
const int kLeastAddress = 10;
const int kQuality = 21;
const int kShortQuality = 10; // "never read", the longest but one
const int kExtremes = 32;     // two numbers and a curve
const int kTime = 14;         // "12:34:56.789" and two blanks
const int kAge = 8;
const int kBitsOfLine = 16;
const int kWordsOfLine = 4;

int addressWidth(const Monitor &monitor, const QVector<Tag> &tags, int columns)
{
    int width = kLeastAddress;
    bool isNamed = false;
    for (int i = 0; i < monitor.items().size(); ++i) {
        const Item &item = monitor.items().at(i).item;
        const Tag tag = tags.value(i);
        width = std::max(width, static_cast<int>(placeText(tag, item, item.count - 1).size()) + 2);
        isNamed = isNamed || !tag.name.isEmpty();
    }
    return isNamed ? std::min(width, std::max(kLeastAddress, columns / 2)) : width;
}

} // namespace

ValueColumns valueColumns(const Monitor &monitor, Trend trend, int columns,
                          const QVector<Tag> &tags)
{
    ValueColumns widths;
    widths.address = addressWidth(monitor, tags, columns);
    widths.values = kWordCell;
    int left = columns - ValueColumns::kMark - widths.address - widths.values;
    const auto take = [&left](int width) {
        const int taken = left >= width ? width : 0;
        left -= taken;
        return taken;
    };
    if (left < kShortQuality) {
        widths.isDecimalOnly = true;
        widths.values = kDecimalCell;
        left += kWordCell - kDecimalCell;
    }
    widths.quality = take(std::clamp(left, 0, kQuality));
    widths.extremes = trend == Trend::Shown ? take(kExtremes) : 0;
    widths.age = take(kAge);
    widths.change = take(kTime);
    if (trend == Trend::Hidden && !widths.isDecimalOnly) {
        widths.values = std::min(kWordsOfLine * kWordCell, kWordCell + std::max(0, left));
    }
    return widths;
}

int valuesOfLine(const RegisterInfo &reg, const ValueColumns &widths, Trend trend)
{
    const int fitting = std::max(1, widths.values / cellWidth(reg, widths));
    const int most = trend == Trend::Shown ? 1 : reg.isBit() ? kBitsOfLine : kWordsOfLine;
    return std::min(fitting, most);
}

int cellWidth(const RegisterInfo &reg, const ValueColumns &widths)
{
    return reg.isBit() ? kBitCell : widths.isDecimalOnly ? kDecimalCell : kWordCell;
}

QString placeText(const Tag &tag, const Item &item, int offset)
{
    if (!tag.name.isEmpty()) {
        return tagText(tag, offset / tag.type.unitsPerValue());
    }
    return QString::fromLatin1("%1/%2:%3")
        .arg(item.station)
        .arg(item.reg.name, item.addressText(offset));
}

// The end of a name tells more than its beginning, which it shares with its neighbours.
QString shortenedName(const QString &name, int width)
{
    return name.size() <= width ? name : QLatin1String("..") + name.right(width - 2);
}

QString searchedText(const Tag &tag, const ItemState &state)
{
    return QStringList{tag.name, tag.group, state.item.text(), qualityText(state.quality)}.join(
        QLatin1Char(' '));
}

} // namespace cnet::panel
