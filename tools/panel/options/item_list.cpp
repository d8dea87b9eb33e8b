#include "panel/options/item_list.h"

#include "panel/system/input_file.h"

namespace cnet::panel {

namespace {

// A line for each word of all stations.
const int kLongestList = 16 * 1024 * 1024;

void addLines(const QByteArray &content, const QString &name, QVector<ListedItem> &items)
{
    const QByteArray mark = "\xEF\xBB\xBF";
    const QString text =
        QString::fromUtf8(content.startsWith(mark) ? content.mid(mark.size()) : content);
    int number = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        ++number;
        const QString item = line.trimmed();
        if (!item.isEmpty() && !item.startsWith(QLatin1Char('#'))) {
            items.append({item, QString::fromLatin1("%1:%2: ").arg(name).arg(number)});
        }
    }
}

} // namespace

bool readLists(const QStringList &arguments, QVector<ListedItem> &items, QString &error)
{
    for (const QString &argument : arguments) {
        const bool isInput = argument == QLatin1String("-");
        if (!isInput && !(argument.startsWith(QLatin1Char('@')) && argument.size() > 1)) {
            items.append({argument, QString()});
            continue;
        }
        const QString path = argument.mid(1);
        const auto content = isInput ? readStandardInput(kLongestList, error)
                                     : readInputFile(path, kLongestList, error);
        if (!content) {
            return false;
        }
        const QString name = isInput ? QLatin1String("standard input") : path;
        // What stands behind it would be lost, and nobody would notice.
        if (const auto zero = content->indexOf('\0'); zero >= 0) {
            error = QString::fromLatin1("%1:%2: a zero byte; expected text in UTF-8")
                        .arg(name)
                        .arg(content->left(zero).count('\n') + 1);
            return false;
        }
        addLines(*content, name, items);
    }
    return true;
}

} // namespace cnet::panel
