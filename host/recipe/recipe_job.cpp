#include "host/recipe/recipe_job.h"

#include "host/address/value_text.h"
#include "host/driver/driver_core.h"
#include "host/exchange/exchange_report.h"
#include "host/recipe/recipe_area.h"
#include "host/recipe/recipe_layout.h"

#include <algorithm>

namespace cnet {

RecipeJob::RecipeJob(DriverCore &driver, const QVector<RecipeItem> &items,
                     RecipeDirection direction, Verify verify, const RegisterCatalog &registers,
                     int blockWords, QObject *parent)
    : Job(parent)
    , m_driver(driver)
    , m_items(items)
    , m_direction(direction)
    , m_verify(direction == RecipeDirection::Write ? verify : Verify::No)
    , m_registers(registers)
    , m_blockWords(blockWords)
    , m_layout(std::make_unique<RecipeLayout>(
          layOutRecipe(items, registers, DriverProperties::kDeviceNumber, blockWords)))
{
    m_progress.total = m_layout->words;
}

RecipeJob::~RecipeJob()
{
    withdraw();
}

std::optional<BlockRequest> RecipeJob::next()
{
    if (!m_transferred && !m_items.isEmpty() && m_failure.isEmpty()) {
        BlockRequest request;
        request.kind = BlockRequest::Recipe;
        request.item = m_items.first().item;
        for (const RecipeItem &item : m_items) {
            if (!request.stations.contains(item.item.station)) {
                request.stations.append(item.item.station);
            }
        }
        return request;
    }
    if (m_verify == Verify::No || !m_failure.isEmpty() || m_items.isEmpty()) {
        return std::nullopt;
    }
    if (!m_reading) {
        QVector<Item> items;
        for (const RecipeItem &item : m_items) {
            items.append(item.item);
        }
        m_reading = std::make_unique<ReadJob>(items, m_registers, m_blockWords, Merging::Together);
    }
    auto request = m_reading->next();
    if (!request) {
        compare();
    }
    return request;
}

// Of a driver that has other words in its buffer the values are put there now, and not earlier:
// several recipes may wait.
void RecipeJob::begun(const BlockRequest &request)
{
    Job::begun(request);
    if (request.kind != BlockRequest::Recipe) {
        return;
    }
    // The driver joins what touches, up to its own block length.
    m_usualBlockWords = m_driver.blockWords();
    m_driver.setBlockWords(m_blockWords);
    RecipeArea area(m_driver);
    for (int i = 0; i < m_items.size(); ++i) {
        for (int word = 0; word < m_items.at(i).values.size(); ++word) {
            area.setWord(m_layout->firstWord.at(i) + word, m_items.at(i).values.at(word));
        }
    }
    // A request that is left from before would start a transfer of its own.
    area.clearRequests();
    QVector<_RCP_VAR_PRO> parts = m_layout->items;
    if (m_driver.functions().setRcpAddress(parts) > 0) {
        m_transferring = true;
        area.request(m_direction);
    }
}

bool RecipeJob::blockEnded(const ExchangeReport &report)
{
    if (report.good) {
        ++m_progress.blocks;
        m_progress.words += report.range.count;
        Q_EMIT progressed(m_progress.words, m_progress.total);
    } else {
        m_failure = atBlock(QString::fromLatin1("%1/%2): %3")
                                .arg(report.station())
                                .arg(report.block(), report.failure().text()));
    }
    RecipeArea area(m_driver);
    m_transferring = area.isRequested(m_direction);
    if (!m_transferring) {
        m_driver.setBlockWords(m_usualBlockWords);
    }
    return !m_transferring;
}

void RecipeJob::ended(const BlockRequest &request, const BlockResult &result)
{
    if (request.kind == BlockRequest::Read) {
        m_reading->ended(request, result);
        return;
    }
    m_transferred = true;
    if (m_failure.isEmpty() && !result.failure.isNone()) {
        // Of several stations any may be the one, before the first block.
        m_failure = state() == State::Waiting ? QString::fromLatin1("station %1: %2")
                                                    .arg(request.item.station)
                                                    .arg(result.failure.text())
                                              : QString::fromLatin1("block %1: %2")
                                                    .arg(m_progress.blocks + 1)
                                                    .arg(result.failure.text());
    }
    // The next recipe takes the same buffer.
    if (m_failure.isEmpty() && m_direction == RecipeDirection::Read) {
        takeValues();
    }
}

QString RecipeJob::atBlock(const QString &what) const
{
    return QString::fromLatin1("block %1 (%2").arg(m_progress.blocks + 1).arg(what);
}

// What a PLC confirmed it may have lost again, as when it was restarted midway.
void RecipeJob::compare()
{
    m_verify = Verify::No;
    int wrong = 0;
    QString first;
    for (int i = 0; i < m_items.size(); ++i) {
        const ReadResult &read = m_reading->results().at(i);
        if (!read.isGood()) {
            m_failure =
                QString::fromLatin1("verifying: %1: %2").arg(read.item.text(), read.failure.text());
            return;
        }
        for (int word = 0; word < read.values.size(); ++word) {
            const quint16 wanted = m_items.at(i).values.value(word);
            if (read.values.at(word) == wanted) {
                continue;
            }
            Item at = read.item;
            at.start += word;
            at.count = 1;
            if (++wrong == 1) {
                first = QString::fromLatin1("%1 holds %2, %3 was written")
                            .arg(at.text())
                            .arg(read.values.at(word))
                            .arg(wanted);
            }
        }
    }
    if (wrong > 0) {
        m_failure = QString::fromLatin1("verifying: %1 of %2 words differ; %3")
                        .arg(wrong)
                        .arg(m_progress.total)
                        .arg(first);
    }
}

void RecipeJob::takeValues()
{
    RecipeArea area(m_driver);
    for (int i = 0; i < m_items.size(); ++i) {
        QVector<quint16> words;
        for (int word = 0; word < m_items.at(i).item.count; ++word) {
            words.append(area.word(m_layout->firstWord.at(i) + word));
        }
        m_values.append(words);
    }
}

// The driver remembers at which block a transfer was cut off, even when communication starts anew,
// and would begin the next one there. Only a transfer that ends, well or not, makes it begin at the
// first block again. So this one is brought to a bad end: its frame is answered with nothing, which
// reaches no line, until the driver gives it up and withdraws the request.
void RecipeJob::withdraw()
{
    if (!m_transferring) {
        return;
    }
    m_transferring = false;
    RecipeArea area(m_driver);
    FRAME_PRO frame{};
    for (int i = 0; i < kMostAttempts && area.isRequested(m_direction); ++i) {
        if (m_driver.functions().getSendFrame(frame) == 0) {
            break;
        }
        QByteArray nothing;
        QString requestText;
        m_driver.functions().dealRcvFrame(nothing, requestText);
    }
    area.clearRequests();
    m_driver.setBlockWords(m_usualBlockWords);
}

void RecipeJob::giveUp(const Failure &reason)
{
    withdraw();
    m_transferred = true;
    m_verify = Verify::No;
    if (m_failure.isEmpty()) {
        m_failure =
            QString::fromLatin1("block %1: %2").arg(m_progress.blocks + 1).arg(reason.text());
    }
}

} // namespace cnet
