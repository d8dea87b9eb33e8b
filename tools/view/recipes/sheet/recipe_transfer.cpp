#include "view/recipes/sheet/recipe_transfer.h"

#include "host/decode/frame_decoder.h"
#include "host/recipe/recipe_layout.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

int wordsOf(const QVector<RecipeItem> &items)
{
    int words = 0;
    for (const RecipeItem &item : items) {
        words += item.item.count;
    }
    return words;
}

// Words are written in the order in which the recipe is laid out, block after block.
QVector<bool> confirmedWords(const QVector<RecipeItem> &items, const RecipeLayout &layout,
                             int written)
{
    QVector<bool> confirmed;
    for (int i = 0; i < items.size(); ++i) {
        for (int word = 0; word < items.at(i).item.count; ++word) {
            confirmed.append(layout.firstWord.at(i) + word < written);
        }
    }
    return confirmed;
}

} // namespace

int TransferOutcome::count(WordFate fate) const
{
    return static_cast<int>(
        std::count_if(words.cbegin(), words.cend(),
                      [fate](const WordOutcome &word) { return word.fate == fate; }));
}

bool RecipeTransfer::start(Session *session, Kind kind, const QVector<RecipeItem> &items,
                           const RegisterCatalog &registers)
{
    if (m_isRunning || session == nullptr) {
        return false;
    }
    m_isRunning = true;
    m_kind = kind;
    m_session = session;
    m_items = items;
    m_registers = registers;
    m_outcome = TransferOutcome();
    m_wanted.clear();
    m_isConfirmed.fill(false, wordsOf(items));
    m_isSent.fill(false, wordsOf(items));
    m_written = 0;
    if (kind != Kind::Write) {
        startRead();
        return true;
    }
    for (const RecipeItem &item : items) {
        m_wanted += item.values;
    }
    // Read back here and not by the job: it tells of the first word that differs, and the table
    // has a place for each.
    m_writing = session->transfer(items, RecipeDirection::Write, Verify::No);
    connect(m_writing, &Job::progressed, this, [this](int done, int total) {
        m_written = done;
        Q_EMIT progressed(done, 2 * total);
    });
    connect(m_writing, &Job::finished, this, &RecipeTransfer::writeEnded);
    connect(session, &Session::requestSent, this, &RecipeTransfer::noteSent);
    return true;
}

void RecipeTransfer::noteSent(const QByteArray &frame)
{
    const DecodedFrame request = decodeFrame(frame, nullptr, Detail::Summary);
    if (!m_writing || !request.writes()) {
        return;
    }
    for (const FrameRange &range : request.ranges) {
        int index = 0;
        for (const RecipeItem &item : std::as_const(m_items)) {
            const bool isSameRegister = item.item.station == range.item.station &&
                                        item.item.reg.name == range.item.reg.name;
            for (int word = 0; word < item.item.count; ++word, ++index) {
                const int address = item.item.start + word;
                if (isSameRegister && address >= range.item.start &&
                    address < range.item.start + range.item.count) {
                    m_isSent[index] = true;
                }
            }
        }
    }
}

void RecipeTransfer::cancel()
{
    if (m_writing) {
        m_writing->cancel();
    } else if (m_reading) {
        m_reading->cancel();
    } else if (m_isRunning) {
        m_outcome.isCancelled = true; // between writing and reading back
    }
}

void RecipeTransfer::leaveSession(const QString &reason)
{
    if (!m_isRunning) {
        return;
    }
    m_outcome.isCancelled = true;
    if (m_writing) {
        m_writing->disconnect(this);
        m_isConfirmed =
            confirmedWords(m_items, layOutRecipe(m_items, m_registers, 0, 1), m_written);
    }
    if (m_outcome.failure.isEmpty()) {
        m_outcome.failure = reason;
    }
    if (m_reading) {
        m_reading->disconnect(this);
    }
    takeRead(m_reading ? m_reading->results() : QVector<ReadResult>(), reason);
    conclude();
}

void RecipeTransfer::writeEnded()
{
    const bool isDone = m_writing->state() == Job::State::Done;
    m_outcome.failure = isDone ? QString() : m_writing->failure();
    m_outcome.isCancelled = m_outcome.isCancelled || m_writing->state() == Job::State::Cancelled;
    m_isConfirmed = confirmedWords(m_items, layOutRecipe(m_items, m_registers, 0, 1),
                                   isDone ? wordsOf(m_items) : m_writing->progress().words);
    m_writing->deleteLater();
    m_writing.clear();
    // The session knows only when this has returned whether its line is lost.
    QTimer::singleShot(0, this, &RecipeTransfer::readBack);
}

void RecipeTransfer::readBack()
{
    if (!m_isRunning || m_writing || m_reading) {
        return;
    }
    const bool isOpen = m_session && m_session->state() == Session::State::Open;
    if (!m_outcome.isCancelled && isOpen) {
        startRead();
        return;
    }
    if (m_outcome.failure.isEmpty()) {
        m_outcome.failure = m_outcome.isCancelled ? tr("cancelled before it was read back")
                                                  : tr("the line was lost");
    }
    takeRead({}, m_outcome.failure);
    conclude();
}

void RecipeTransfer::startRead()
{
    QVector<Item> items;
    for (const RecipeItem &item : m_items) {
        items.append(item.item);
    }
    m_reading = m_session->read(items);
    connect(m_reading, &Job::progressed, this, [this](int done, int total) {
        const int before = m_kind == Kind::Write ? total : 0;
        Q_EMIT progressed(before + done, before + total);
    });
    connect(m_reading, &Job::finished, this, &RecipeTransfer::readEnded);
}

void RecipeTransfer::readEnded()
{
    m_outcome.isCancelled = m_reading->state() == Job::State::Cancelled;
    if (m_outcome.failure.isEmpty()) {
        m_outcome.failure = m_reading->failure();
    }
    takeRead(m_reading->results(), m_reading->failure());
    conclude();
}

void RecipeTransfer::takeRead(const QVector<ReadResult> &results, const QString &reason)
{
    for (int i = 0; i < m_items.size(); ++i) {
        const ReadResult result = results.value(i);
        const QString why = result.failure.isNone() ? reason : result.failure.text();
        for (int word = 0; word < m_items.at(i).item.count; ++word) {
            const bool isKnown = result.known.value(word, false);
            m_outcome.words.append(outcomeOf(
                static_cast<int>(m_outcome.words.size()),
                isKnown ? std::optional<quint16>(result.values.value(word)) : std::nullopt, why));
        }
    }
}

WordOutcome RecipeTransfer::outcomeOf(int index, std::optional<quint16> plc,
                                      const QString &reason) const
{
    if (m_kind != Kind::Write) {
        return plc ? WordOutcome{WordFate::Read, plc, QString()}
                   : WordOutcome{WordFate::NotRead, plc, reason};
    }
    const bool isConfirmed = m_isConfirmed.value(index, false);
    if (!plc) {
        const WordFate fate = isConfirmed             ? WordFate::Written
                              : m_isSent.value(index) ? WordFate::Unconfirmed
                                                      : WordFate::NotSent;
        return {fate, plc, reason};
    }
    if (*plc == m_wanted.value(index)) {
        return {WordFate::Verified, plc, QString()};
    }
    return isConfirmed ? WordOutcome{WordFate::Mismatch, plc, QString()}
                       : WordOutcome{WordFate::NotWritten, plc, m_outcome.failure};
}

void RecipeTransfer::conclude()
{
    if (m_writing) {
        m_writing->deleteLater();
        m_writing.clear();
    }
    if (m_reading) {
        m_reading->deleteLater();
        m_reading.clear();
    }
    if (m_session) {
        m_session->disconnect(this);
        m_session.clear();
    }
    m_isRunning = false;
    // Who hears this may begin the next one.
    const TransferOutcome outcome = std::move(m_outcome);
    m_outcome = TransferOutcome();
    Q_EMIT finished(outcome);
}

} // namespace cnet::view
