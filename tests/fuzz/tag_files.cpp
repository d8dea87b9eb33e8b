// Tag files as people and spreadsheets leave them: read, written back, written anew. The first byte
// of an input says what else is done with the rest, which is the file.
#include "fuzz/input.h"
#include "host/tag/tag_set.h"
#include "host/tagfile/tag_diff.h"
#include "host/tagfile/tag_file.h"
#include "ls_master_k_cnet/ls_master_k_cnet.h"

#include <algorithm>

namespace {

using namespace fuzz;
using namespace cnet;

const int kLimit = 20;

const RegisterCatalog &registers()
{
    static const RegisterCatalog catalog = [] {
        RegisterCatalog all;
        QList<QString> names;
        intf_getRegListByType(1, names);
        intf_getRegListByType(0, names);
        for (const QString &name : names) {
            QList<QString> texts;
            intf_getRegDiscription(name, texts);
            if (const auto info = RegisterCatalog::read(name, QStringList(texts))) {
                all.add(*info);
            }
        }
        return all;
    }();
    return catalog;
}

TagFile parse(const QByteArray &content)
{
    const auto check = [](const Item &item, TagAccess, QString &error) {
        int number = 0;
        const int code = intf_checkAddr(item.reg.name, item.addressText(0), number,
                                        item.reg.isBit() ? -1 : 0, item.count, 1);
        error = QLatin1String("refused");
        return code == kAddressValid && number == item.start;
    };
    return TagFile::parse(content, {registers(), check, 5, kLimit});
}

void requireFindings(const Findings &findings)
{
    require(findings.first().size() <= std::min(kLimit, findings.count()), "findings are bounded");
    const Finding *before = nullptr;
    for (const Finding &finding : findings.first()) {
        require(finding.line >= 1 && finding.column >= 1, "a finding has a place");
        require(!finding.text.isEmpty() && finding.text.size() < 1000,
                "a finding is told in short");
        require(before == nullptr || before->line <= finding.line, "findings are in order");
        before = &finding;
    }
}

void requireTag(const Tag &tag)
{
    require(isTagName(tag.name), "a tag has a name");
    require(tag.scale != 0 && tag.count >= 1, "a tag can be scaled");
    require(tag.item.count == tag.count * tag.type.unitsPerValue(), "a tag has all its words");
    require(tag.item.start >= tag.item.reg.lowest &&
                tag.item.start + tag.item.count - 1 <= tag.item.reg.highest,
            "a tag lies within its register");
    require(!tag.min || !tag.max || *tag.min <= *tag.max, "bounds are in order");
}

void requireSame(const QVector<Tag> &tags, const QByteArray &content)
{
    const TagFile again = parse(content);
    require(again.mistakes().isEmpty() == !tags.isEmpty(), "a written file is good");
    require(tagDiff(TagSet(tags), TagSet(again.tags())).isEmpty(), "tags survive their file");
}

/** Another value for one of the tags, that the rules allow. */
void change(Tag &tag, int choice)
{
    switch (choice % 5) {
    case 0:
        tag.unit = QLatin1String("a;\"b\",c");
        break;
    case 1:
        tag.description = QLatin1String("one\nother");
        break;
    case 2:
        tag.item.station = choice % 32;
        break;
    case 3:
        tag.group = QLatin1String("press/oil");
        break;
    default:
        tag.name += QLatin1String("_2");
        break;
    }
}

void requireUpdates(const TagFile &file, const QByteArray &content, int choice)
{
    QVector<Tag> tags = file.tags();
    require(file.updated(tags) == content, "what does not change is left alone");
    change(tags[choice % tags.size()], choice);
    QStringList names = TagSet(tags).names();
    if (names.removeDuplicates() == 0 && isTagName(names.at(choice % names.size()))) {
        requireSame(tags, file.updated(tags));
        requireSame(tags, TagFile::written(tags, ";,\t"[choice % 3]));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const int choice = input.byte();
    const QByteArray content = input.rest();
    const TagFile file = parse(content);
    requireFindings(file.mistakes());
    requireFindings(file.warnings());
    for (const Tag &tag : file.tags()) {
        requireTag(tag);
    }
    require(!file.isGood() || !file.tags().isEmpty(), "a good file has tags");
    if (file.isGood()) {
        requireUpdates(file, content, choice);
    }
    return 0;
}
