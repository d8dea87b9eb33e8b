#include "plc/setup/one_line.h"

namespace plc {

QString oneLine(QString text)
{
    constexpr int kLongest = 600;
    if (text.size() > kLongest) {
        text = text.left(kLongest / 2) + QLatin1String("...") + text.right(kLongest / 2);
    }
    for (QChar &letter : text) {
        if (!letter.isPrint()) {
            letter = QLatin1Char('?');
        }
    }
    return text;
}

} // namespace plc
