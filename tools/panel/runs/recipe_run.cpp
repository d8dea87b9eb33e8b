#include "panel/runs/recipe_run.h"

#include "panel/system/exit_code.h"
#include "panel/runs/one_off.h"
#include "panel/terminal/progress_bar.h"
#include "host/recipe/recipe_transfer.h"
#include "panel/terminal/screen.h"
#include "host/address/value_text.h"
#include "host/jobs/writer.h"

#include <QElapsedTimer>

#include <unistd.h>

#include <algorithm>

namespace cnet::panel {

namespace {

QVector<int> stationsOfRecipe(const QVector<RecipeItem> &items)
{
    QVector<Item> all;
    for (const RecipeItem &item : items) {
        all.append(item.item);
    }
    return stationsOf(all);
}

// A block write must fit the PLC's buffer; a block read may be as long as the settings say.
LinkSettings recipeSettings(LinkSettings link, RecipeDirection direction)
{
    if (direction == RecipeDirection::Write) {
        link.blockWords = std::min(link.blockWords, kHighestWriteWords);
    }
    return link;
}

// The parts of a running transfer and what they tell one another.
class RecipeSession
{
public:
    RecipeSession(const DriverFunctions &driver, const LinkSettings &link,
                  const QVector<int> &stations, Messages &messages);
    ~RecipeSession() { m_messages.setSink(m_sink); }
    RecipeSession(const RecipeSession &) = delete;
    RecipeSession &operator=(const RecipeSession &) = delete;

    int run(const RecipeLayout &layout, RecipeDirection direction);
    RecipeTransfer &transfer() { return m_transfer; }

private:
    void giveUp(const QString &reason);

    Messages &m_messages;
    Messages::Sink m_sink; ///< as it was before
    OneOff m_oneOff;
    RecipeTransfer m_transfer;
    ProgressBar m_bar;
    bool m_asked = false; ///< the user asked for the end once
};

RecipeSession::RecipeSession(const DriverFunctions &driver, const LinkSettings &link,
                             const QVector<int> &stations, Messages &messages)
    : m_messages(messages)
    , m_sink(messages.sink())
    , m_oneOff(driver, link, stations, messages)
    , m_transfer(m_oneOff.session().driver(), m_oneOff.session().exchange())
    , m_bar(standardErrorTerminal(), terminalSize(STDERR_FILENO).width())
{
    m_messages.setSink([this](const QString &line) {
        m_bar.clear();
        m_sink(line);
    });
    QObject::connect(&m_transfer, &RecipeTransfer::advanced, &m_oneOff.session(), [this] {
        m_bar.show(m_transfer.progress().words, m_transfer.progress().total);
    });
    QObject::connect(&m_transfer, &RecipeTransfer::ended, &m_oneOff.session(), [this] {
        const bool fine = m_transfer.progress().failure.isEmpty();
        m_oneOff.session().finish(fine ? kFine : kDeviceFailed);
    });
    m_oneOff.onGiveUp([this](const QString &reason) { giveUp(reason); });
}

// Half a recipe is worse than none or all of it, so the first request for the end is put off.
void RecipeSession::giveUp(const QString &reason)
{
    if (m_oneOff.isStopped() && !m_asked) {
        m_asked = true;
        m_bar.clear();
        m_messages.say(QLatin1String("the transfer is finished first; interrupt again to cut it "
                                     "off in the middle"));
        return;
    }
    m_oneOff.session().exchange().stop();
    m_transfer.cutOff(reason);
    m_oneOff.session().finish(kDeviceFailed);
}

int RecipeSession::run(const RecipeLayout &layout, RecipeDirection direction)
{
    if (!m_transfer.start(layout, direction)) {
        m_messages.say(QLatin1String("the recipe has nothing to transfer"));
        return kUsage;
    }
    m_bar.show(0, layout.words);
    const int exitCode = m_oneOff.run();
    m_bar.clear();
    // The link may have failed to open at all.
    m_transfer.cutOff(QLatin1String("not sent"));
    return exitCode;
}

QString endText(const RecipeProgress &progress, RecipeDirection direction, qint64 elapsedMs)
{
    const QString verb =
        direction == RecipeDirection::Write ? QLatin1String("write") : QLatin1String("read");
    if (!progress.failure.isEmpty()) {
        return QString::fromLatin1("recipe %1 failed at %2; %3 of %4 words had been transferred")
            .arg(verb, progress.failure)
            .arg(progress.words)
            .arg(progress.total);
    }
    return QString::fromLatin1("recipe %1: %2, %3, %4 s")
        .arg(verb, counted(progress.blocks, "block"), counted(progress.words, "word"))
        .arg(static_cast<double>(elapsedMs) / 1000, 0, 'f', 2);
}

} // namespace

int runRecipe(const DriverFunctions &driver, const LinkSettings &link,
              const RegisterCatalog &registers, const QVector<RecipeItem> &items,
              RecipeDirection direction, Messages &messages, QVector<QVector<quint16>> &values)
{
    const LinkSettings settings = recipeSettings(link, direction);
    const RecipeLayout layout =
        layOutRecipe(items, registers, DriverProperties().deviceNumber, settings.blockWords);
    RecipeSession session(driver, settings, stationsOfRecipe(items), messages);
    RecipeArea &area = session.transfer().area();
    for (int i = 0; i < items.size(); ++i) {
        for (int word = 0; word < items.at(i).values.size(); ++word) {
            area.setWord(layout.firstWord.at(i) + word, items.at(i).values.at(word));
        }
    }
    QElapsedTimer clock;
    clock.start();
    const int exitCode = session.run(layout, direction);
    if (exitCode == kFine || exitCode == kDeviceFailed) {
        messages.say(endText(session.transfer().progress(), direction, clock.elapsed()));
    }
    for (int i = 0; exitCode == kFine && i < items.size(); ++i) {
        QVector<quint16> words;
        for (int word = 0; word < items.at(i).item.count; ++word) {
            words.append(area.word(layout.firstWord.at(i) + word));
        }
        values.append(words);
    }
    return exitCode;
}

} // namespace cnet::panel
