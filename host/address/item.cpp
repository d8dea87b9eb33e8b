#include "host/address/item.h"

#include "host/address/address.h"
#include "host/address/value_text.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace cnet {

namespace {

QString itemError(const QString &text, const QString &what)
{
    return QString::fromLatin1("'%1': %2").arg(quotable(text), what);
}

// What people try who know it from elsewhere.
QString rangeHint(const QString &text)
{
    const int colon = static_cast<int>(text.lastIndexOf(QLatin1Char(':')));
    const QStringList ends = text.mid(colon + 1).split(QLatin1Char('-'));
    bool isFirst = false;
    bool isLast = false;
    const int first = ends.first().toInt(&isFirst);
    const int last = ends.last().toInt(&isLast);
    if (ends.size() != 2 || !isFirst || !isLast || last < first) {
        return QString();
    }
    return QString::fromLatin1("; did you mean %1%2*%3?")
        .arg(text.left(colon + 1), ends.first())
        .arg(qint64(last) - first + 1);
}

QString formError()
{
    return QLatin1String("expected [STATION/]REGISTER:ADDRESS[*COUNT], for example 1/D_W:100*10");
}

QString rangeError(const RegisterInfo &reg)
{
    return QString::fromLatin1("an address of %1 is %2").arg(reg.name, addressHint(reg));
}

} // namespace

QString Item::text() const
{
    const QString first =
        QString::fromLatin1("%1/%2:%3").arg(station).arg(reg.name, addressText(0));
    return count == 1 ? first : QString::fromLatin1("%1*%2").arg(first).arg(count);
}

QString Item::addressText(int offset) const
{
    return cnet::addressText(reg, start + offset);
}

std::optional<Item> parseItem(const QString &text, int defaultStation,
                              const RegisterCatalog &registers, QString &error)
{
    static const QRegularExpression form(
        QLatin1String("\\A(?:([0-9]+)/)?([^:/*\\s]+):([^:/*\\s]+)(?:\\*([0-9]+))?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        error = itemError(text, formError());
        return std::nullopt;
    }
    Item item;
    bool ok = true;
    item.station = match.captured(1).isEmpty() ? defaultStation : match.captured(1).toInt(&ok);
    if (!ok || item.station > kHighestStation) {
        error = itemError(
            text, QString::fromLatin1("a station is a number from 0 to %1").arg(kHighestStation));
        return std::nullopt;
    }
    const RegisterInfo *reg = registers.find(match.captured(2));
    if (reg == nullptr) {
        error = itemError(
            text, QString::fromLatin1("the driver has no register '%1', it has %2")
                      .arg(quotable(match.captured(2)), registers.names().join(QLatin1Char(' '))));
        return std::nullopt;
    }
    item.reg = *reg;
    const auto address = readAddress(*reg, match.captured(3));
    if (!address || *address < reg->lowest || *address > reg->highest) {
        error = itemError(text, rangeError(*reg) + rangeHint(text));
        return std::nullopt;
    }
    item.start = *address;
    item.count = match.captured(4).isEmpty() ? 1 : match.captured(4).toInt(&ok);
    const int highestCount = reg->highest - item.start + 1;
    if (!ok || item.count < 1 || item.count > highestCount) {
        const QString counts = highestCount == 1 ? QString::fromLatin1("1")
                                                 : QString::fromLatin1("1 to %1").arg(highestCount);
        error = itemError(
            text,
            QString::fromLatin1("expected a count of %1, since %2").arg(counts, rangeError(*reg)));
        return std::nullopt;
    }
    return item;
}

QVector<ItemBlock> blocksOf(const Item &item, int blockWords)
{
    QVector<ItemBlock> blocks;
    for (int offset = 0; offset < item.count;) {
        int room = blockWords;
        if (item.reg.isContact()) {
            room = 1;
        } else if (item.reg.isBit()) {
            room = blockWords * kBitsPerWord - (item.start + offset) % kBitsPerWord;
        }
        const int count = std::min(room, item.count - offset);
        blocks.append({offset, count});
        offset += count;
    }
    return blocks;
}

} // namespace cnet
