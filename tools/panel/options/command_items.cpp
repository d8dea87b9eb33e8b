#include "panel/options/command_items.h"

#include "host/tag/typed_item.h"
#include "panel/options/item_list.h"

namespace cnet::panel {

bool readItems(const Invocation &invocation, int station, QVector<Tag> &tags, QString &error)
{
    QVector<ListedItem> items;
    if (!readLists(invocation.arguments, items, error)) {
        return false;
    }
    for (const ListedItem &given : items) {
        const auto tag = parseTypedItem(given.text, station, invocation.driver.registers(), error);
        if (!tag || !invocation.driver.check(tag->item, Access::Read, error)) {
            error = given.place + error;
            return false;
        }
        tags.append(*tag);
    }
    if (tags.isEmpty()) {
        error = QLatin1String("expected at least one item, for example D_W:100*10");
    }
    return !tags.isEmpty();
}

bool readTags(const Invocation &invocation, TagChoice &choice, ChosenTags &chosen, QString &error)
{
    if (!invocation.parser.isSet(QLatin1String("tags"))) {
        return readItems(invocation, choice.station, chosen.tags, error);
    }
    choice.path = invocation.parser.value(QLatin1String("tags"));
    if (!readLists(invocation.arguments, choice.words, error)) {
        return false;
    }
    const auto read = chooseTags(invocation, choice, error);
    chosen = read.value_or(ChosenTags());
    return read.has_value();
}

QVector<Item> itemsOf(const QVector<Tag> &tags)
{
    QVector<Item> items;
    for (const Tag &tag : tags) {
        items.append(tag.item);
    }
    return items;
}

} // namespace cnet::panel
