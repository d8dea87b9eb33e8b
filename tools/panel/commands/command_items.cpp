#include "panel/commands/command_items.h"

#include "host/tag/typed_item.h"
#include "panel/commands/item_list.h"

namespace cnet::panel {

bool readTags(const Invocation &invocation, int station, QVector<Tag> &tags, QString &error)
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

QVector<Item> itemsOf(const QVector<Tag> &tags)
{
    QVector<Item> items;
    for (const Tag &tag : tags) {
        items.append(tag.item);
    }
    return items;
}

} // namespace cnet::panel
