#include "plc/setup/cut_text.h"

namespace plc {

std::optional<QString> cutBehind(QString &text, QLatin1Char mark)
{
    const auto place = text.lastIndexOf(mark);
    if (place < 0) {
        return std::nullopt;
    }
    const QString behind = text.mid(place + 1);
    text.truncate(place);
    return behind;
}

} // namespace plc
