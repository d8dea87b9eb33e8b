#include "view/tags/tag_drag.h"

namespace cnet::view {

namespace {

const QLatin1String kType("application/x-cnet-tags");

} // namespace

std::unique_ptr<QMimeData> mimeOfTags(const QStringList &names)
{
    auto data = std::make_unique<QMimeData>();
    const QString text = names.join(QLatin1Char('\n'));
    data->setData(kType, text.toUtf8());
    data->setText(text);
    return data;
}

QStringList tagsOfMime(const QMimeData *data)
{
    if (data == nullptr || !data->hasFormat(kType)) {
        return {};
    }
    return QString::fromUtf8(data->data(kType)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace cnet::view
