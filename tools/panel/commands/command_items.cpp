#include "panel/commands/command_items.h"

namespace cnet::panel {

bool readItems(const Invocation &invocation, int station, QVector<Item> &items, QString &error)
{
    for (const QString &text : invocation.arguments) {
        const auto item = parseItem(text, station, invocation.driver.registers(), error);
        if (!item || !invocation.driver.check(*item, Access::Read, error)) {
            return false;
        }
        items.append(*item);
    }
    if (items.isEmpty()) {
        error = QLatin1String("expected at least one item, for example D_W:100*10");
    }
    return !items.isEmpty();
}

} // namespace cnet::panel
