#include "panel/options/tag_input.h"

#include "host/address/value_text.h"
#include "host/tag/typed_item.h"
#include "panel/system/input_file.h"

#include <QSet>

#include <algorithm>

namespace cnet::panel {

namespace {

// Far more than the tags that a file may have take.
const int kLongestFile = 32 * 1024 * 1024;
// More would push everything else off the screen of a monitor.
const int kShownAgain = 3;

// What has no name in the file was not checked with the file.
bool areReadable(const Driver &driver, const QVector<Tag> &tags, QString &error)
{
    return std::all_of(tags.cbegin(), tags.cend(), [&driver, &error](const Tag &tag) {
        return !tag.name.isEmpty() || driver.check(tag.item, Access::Read, error);
    });
}

// Each one once, those of the first word first.
std::optional<ChosenTags> chosenOf(const Driver &driver, const TagSet &set, const TagChoice &choice,
                                   QString &error)
{
    if (choice.words.isEmpty()) {
        return ChosenTags{set, set.all()};
    }
    ChosenTags chosen{set, {}};
    QSet<QString> known;
    for (const ListedItem &word : choice.words) {
        const auto tags = tagsOrItem(word.text, set, choice.station, driver.registers(), error);
        if (!tags || !areReadable(driver, *tags, error)) {
            error = word.place + error;
            return std::nullopt;
        }
        for (const Tag &tag : *tags) {
            const int before = static_cast<int>(known.size());
            known.insert(tagText(tag));
            if (known.size() > before) {
                chosen.tags.append(tag);
            }
        }
    }
    return chosen;
}

} // namespace

std::optional<TagFile> readTagFile(const Invocation &invocation, const QString &path, int station,
                                   int limit, QString &error)
{
    const auto content = readInputFile(path, kLongestFile, error);
    if (!content) {
        return std::nullopt;
    }
    const auto check = [&invocation](const Item &item, TagAccess access, QString &why) {
        return invocation.driver.check(
            item, access == TagAccess::Read ? Access::Read : Access::Write, why);
    };
    return TagFile::parse(*content, {invocation.driver.registers(), check, station, limit});
}

std::optional<TagSet> readTagSet(const Invocation &invocation, const QString &path, int station,
                                 QString &error)
{
    const auto file = readTagFile(invocation, path, station, 1, error);
    if (!file) {
        return std::nullopt;
    }
    if (file->isGood()) {
        return TagSet(file->tags());
    }
    error = path + QLatin1Char(':') + file->mistakes().first().first().placed();
    const int more = file->mistakes().count() - 1;
    if (more > 0) {
        error += QString::fromLatin1("; and %1, which tags check lists")
                     .arg(counted(more, "more mistake"));
    }
    return std::nullopt;
}

void addTagsOption(QCommandLineParser &parser)
{
    parser.addOption({QLatin1String("tags"),
                      QLatin1String("Takes names from this tag file (CSV), and items among them."),
                      QLatin1String("FILE")});
}

std::optional<ChosenTags> chooseTags(const Invocation &invocation, const TagChoice &choice,
                                     QString &error)
{
    const auto set = readTagSet(invocation, choice.path, choice.station, error);
    return set ? chosenOf(invocation.driver, *set, choice, error) : std::nullopt;
}

std::optional<ChosenTags> chooseAgain(const Invocation &invocation, const TagChoice &choice,
                                      QStringList &complaints)
{
    QString error;
    const auto file = readTagFile(invocation, choice.path, choice.station, kShownAgain, error);
    if (file && file->isGood()) {
        if (auto chosen = chosenOf(invocation.driver, TagSet(file->tags()), choice, error)) {
            return chosen;
        }
    }
    const QString rest = QLatin1String("; the tags stay as they were");
    if (file && !file->isGood()) {
        for (const Finding &mistake : file->mistakes().first()) {
            complaints.append(choice.path + QLatin1Char(':') + mistake.placed());
        }
        const QString number = counted(file->mistakes().count(), "mistake");
        complaints.append(choice.path + QLatin1String(": ") + number + rest);
    } else {
        complaints.append(error + rest);
    }
    return std::nullopt;
}

} // namespace cnet::panel
