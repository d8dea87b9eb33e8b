#include "view/values/list/tag_document.h"

#include "host/text/whole_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace cnet::view {

namespace {

// Much more than a file with the most tags has.
constexpr qint64 kMostBytes = qint64(64) * 1024 * 1024;

DocumentResult failed(const QString &error, const QString &advice)
{
    return {false, error, advice, std::nullopt};
}

QString freeName(const Tag &tag, const QSet<QString> &taken)
{
    Item one = tag.item;
    one.count = 1;
    const QString place = one.addressText(0);
    const QString wanted = QString::fromLatin1("%1_%2").arg(tag.item.reg.name, place);
    QString name = wanted;
    for (int i = 2; taken.contains(name); ++i) {
        name = QString::fromLatin1("%1_%2").arg(wanted).arg(i);
    }
    return name;
}

} // namespace

QVector<Tag> namedTags(const QVector<Tag> &tags)
{
    QSet<QString> taken;
    for (const Tag &tag : tags) {
        taken.insert(tag.name);
    }
    QVector<Tag> named = tags;
    for (Tag &tag : named) {
        if (tag.name.isEmpty()) {
            tag.name = freeName(tag, taken);
            taken.insert(tag.name);
        }
    }
    return named;
}

void TagDocument::take(const QString &path, const QByteArray &content, const TagFile &file)
{
    m_path = path;
    m_content = content;
    m_file = file;
}

DocumentResult TagDocument::open(const QString &path, const TagReading &reading)
{
    if (isNoFile(path)) {
        return failed(tr("%1 cannot be opened: it is no file").arg(path),
                      tr("Choose a file with tags."));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return failed(tr("%1 cannot be opened: %2").arg(path, file.errorString()),
                      tr("Look whether it is there and may be read."));
    }
    const QByteArray content = file.read(kMostBytes + 1);
    if (content.size() > kMostBytes) {
        return failed(tr("%1 is no tag file: it is too large").arg(path), QString());
    }
    DocumentResult result;
    result.file = TagFile::parse(content, reading);
    result.isDone = result.file->isGood();
    if (result.isDone) {
        take(path, content, *result.file);
    }
    return result;
}

DocumentResult TagDocument::save(const QString &path, const QVector<Tag> &tags,
                                 const TagReading &reading)
{
    if (isNoFile(path)) {
        return failed(tr("%1 was not saved: it is no file").arg(path),
                      tr("Save under another name or in another place."));
    }
    std::optional<TagFile> base = m_file;
    if (QFile before(path); before.open(QIODevice::ReadOnly)) {
        const QByteArray content = before.read(kMostBytes);
        if (QFileInfo(path) == QFileInfo(m_path) && content != m_content) {
            return failed(tr("%1 was not saved: somebody has changed it since").arg(path),
                          tr("Save under another name, or open it again."));
        }
        const TagFile there = TagFile::parse(content, reading);
        if (!base && there.isGood()) {
            base = there;
        }
    }
    const QByteArray content = base ? base->updated(tags) : TagFile::written(tags);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !replaceFile(file, content)) {
        return failed(tr("%1 was not saved: %2").arg(path, file.errorString()),
                      tr("Save under another name or in another place."));
    }
    DocumentResult result;
    result.isDone = true;
    result.file = TagFile::parse(content, reading);
    take(path, content, *result.file);
    return result;
}

} // namespace cnet::view
