#include "gateway/lines/line_tags.h"

#include <QFile>

#include <set>

namespace cnet::gateway {

namespace {

// Far more than the tags that a file may have take.
constexpr qint64 kLongestFile = 32LL * 1024 * 1024;

} // namespace

std::optional<TagFile> readLineTags(const LineConfig &line, const Driver &driver, QString &error)
{
    QFile file(line.tagFile);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QString::fromLatin1("cannot read %1: %2").arg(line.tagFile, file.errorString());
        return std::nullopt;
    }
    const QByteArray content = file.read(kLongestFile + 1);
    if (file.error() != QFileDevice::NoError || content.size() > kLongestFile) {
        const bool isTooLong = content.size() > kLongestFile;
        error = QString::fromLatin1("cannot read %1: %2")
                    .arg(line.tagFile,
                         isTooLong ? QLatin1String("it is longer than 32 MB") : file.errorString());
        return std::nullopt;
    }
    const auto check = [&driver](const Item &item, TagAccess access, QString &why) {
        return driver.check(item, access == TagAccess::Read ? Access::Read : Access::Write, why);
    };
    return TagFile::parse(content, {driver.registers(), check, line.station, 100});
}

QVector<int> stationsOf(const TagSet &tags)
{
    std::set<int> stations;
    for (const Tag &tag : tags.all()) {
        stations.insert(tag.item.station);
    }
    QVector<int> found;
    for (const int station : stations) {
        found.append(station);
    }
    return found;
}

} // namespace cnet::gateway
