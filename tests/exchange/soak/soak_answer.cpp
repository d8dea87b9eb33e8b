// What the driver makes of an answer, and what comes of that.

#include "exchange/soak/soak_exchange.h"

#include "plc/wire.h"
#include "support/driver_fixture.h"

#include <algorithm>

namespace exchange::soak {

namespace {

bool isSound(const QByteArray &answer, int length)
{
    return answer.size() == length && isPositive(answer) &&
           answer.at(length - kEndLength) == plc::kEtx &&
           plc::blockCheck(answer.left(length - 2)) == answer.right(2);
}

/** The text behind the station number: the driver does not look at that. */
QByteArray content(const QByteArray &answer)
{
    return answer.mid(kCommandPosition, answer.size() - kCommandPosition - 2);
}

} // namespace

void Exchanger::takeStray(QByteArray answer)
{
    if (m_inFlight) {
        return;
    }
    m_bench.listen();
    QString description;
    require(intf_dealRcvFrame(answer, description) == kAnswerUnexpected && description.isEmpty(),
            "an answer was taken while no frame was out");
    m_bench.compareCalls();
    m_bench.compareSizes();
    m_bench.tally().count(Event::StrayAnswer);
}

// "1#D_W100(2)(7)": what was asked for, and how long the answer was.
void Exchanger::checkDescription(const Turn &turn) const
{
    const Range &range = m_job.range;
    const QString begin = QString::number(range.station) + QLatin1Char('#') + range.reg->name;
    const QString end = QString::fromLatin1("(%1)(%2)")
                            .arg(QString::number(range.count), QString::number(turn.answer.size()));
    require(turn.description.startsWith(begin) && turn.description.endsWith(end),
            "an answer is described as another request's");
}

std::optional<Ended> Exchanger::judge(int result)
{
    const Turn &turn = m_bench.host().lastTurn();
    const bool good = isSound(turn.answer, goodLength());
    require(good || !isPositive(m_seen.answer) || turn.answer != m_seen.answer,
            "a PLC's own answer is none");
    m_bad += good ? 0 : 1;
    const bool over = !good && m_bad >= std::max(1, m_bench.plan().maxRetries);
    const int wanted = good ? kAnswerGood : over ? kAnswerGivenUp : kAnswerResend;
    require(result == wanted, [&] {
        return QString::fromLatin1("result %1 instead of %2 after %3 bad answers to %4")
            .arg(QString::number(result), QString::number(wanted), QString::number(m_bad),
                 text(m_job.range));
    });
    checkDescription(turn);
    std::optional<Ended> ended;
    if (good) {
        ended = accept(turn);
    } else if (over) {
        ended = giveUp();
    }
    m_bench.compareCalls();
    m_bench.compareSizes();
    if (ended && m_kind != JobKind::RecipeWrite && m_kind != JobKind::RecipeRead) {
        m_bench.view().compare(m_job.range);
    }
    return ended;
}

// An answer has no number: what comes late upon an earlier request of the same kind and length
// passes for this one's. Everything else must be what the PLC has said.
void Exchanger::checkAccepted(const Turn &turn)
{
    Tally &tally = m_bench.tally();
    const bool isOwn = content(turn.answer) == content(m_seen.answer);
    require(isOwn || turn.isLate, "an answer was accepted that no PLC has given");
    if (isWriteFrame()) {
        require(m_carriedOut || turn.isLate, "a write was acknowledged that no PLC carried out");
        tally.count(Excuse::ForeignAcknowledged, m_carriedOut ? 0 : 1);
    } else {
        tally.count(Excuse::ForeignRead, isOwn ? 0 : 1);
        checkRead(valuesIn(turn.answer), isOwn);
    }
}

void Exchanger::checkRead(const std::vector<int> &values, bool isOwn) const
{
    Range range = m_job.range;
    if (m_hasReadHalf) {
        range = {range.station, &wordsOf(*range.reg), range.address / kBitsPerWord,
                 wordsRead(range)};
    }
    require(static_cast<int>(values.size()) == range.count, "an answer has other words than asked");
    for (int i = 0; isOwn && i < range.count; ++i) {
        require(m_bench.plant().held(range, i) == values[static_cast<std::size_t>(i)], [&] {
            return QLatin1String("another place of the PLC was read than ") + text(range);
        });
    }
}

void Exchanger::checkInPlc()
{
    const Range &range = m_job.range;
    const int sent = m_throughWords ? bitsInFirstWord(range) : range.count;
    m_bench.tally().count(Excuse::BitsBeyondWord, sent < range.count ? 1 : 0);
    for (int i = 0; i < sent; ++i) {
        require(m_bench.plant().held(range, i) == m_job.values[static_cast<std::size_t>(i)], [&] {
            return QLatin1String("an acknowledged write is not in the PLC: ") + text(range);
        });
    }
}

std::vector<int> Exchanger::valuesIn(const QByteArray &answer) const
{
    const int digits = m_job.range.reg->isContact() ? 2 : 4;
    plc::FieldReader reader(answer.mid(kDataPosition, answer.size() - kDataPosition - kEndLength));
    std::vector<int> values;
    while (const auto value = reader.takeHex(digits)) {
        values.push_back(m_job.range.reg->isContact() ? *value & 1 : *value);
    }
    return values;
}

std::optional<Ended> Exchanger::accept(const Turn &turn)
{
    checkAccepted(turn);
    m_bad = 0;
    if (m_hasReadHalf) {
        m_wordsRead = valuesIn(turn.answer);
        m_hasReadHalf = false;
        m_request.clear();
        return std::nullopt;
    }
    if (isWriteFrame()) {
        if (!turn.isLate) {
            checkInPlc();
        }
        if (m_kind == JobKind::Write) {
            m_bench.view().settle(m_job.range, m_job.values, true, m_bench.expected());
        }
    } else {
        receiveValues(valuesIn(turn.answer));
    }
    return end(true);
}

void Exchanger::receiveValues(const std::vector<int> &values)
{
    Calls &expected = m_bench.expected();
    if (m_kind == JobKind::RecipeRead) {
        const int offset = m_bench.jobs().recipeOffset();
        m_bench.expectRecipeWords(offset, values);
        for (int i = 0; i < static_cast<int>(values.size()); ++i) {
            expected.push({0, -1, QLatin1String("RWI"), offset + i, 0});
        }
        m_bench.compareRecipeBuffer();
        return;
    }
    m_bench.view().receive(m_job.range, values, expected);
}

std::optional<Ended> Exchanger::giveUp()
{
    Tally &tally = m_bench.tally();
    if (m_kind == JobKind::Write) {
        m_bench.view().settle(m_job.range, m_job.values, false, m_bench.expected());
        tally.count(Excuse::BitsOverWords,
                    m_throughWords && !m_hasReadHalf && wordsRead(m_job.range) > 1 ? 1 : 0);
    }
    tally.count(Excuse::CarriedOutAndGivenUp, m_carriedOut ? 1 : 0);
    tally.count(Excuse::FrameTooLong, m_request.size() > plc::kMaxFrameBytes ? 1 : 0);
    return end(false);
}

Ended Exchanger::end(bool good)
{
    if (m_kind == JobKind::ConditionRead && m_bench.jobs().isAwaited()) {
        m_bench.expected().push({-1, -1, QLatin1String("-1"), good ? 0 : -1, 0});
    }
    m_inFlight = false;
    const bool transferOver = m_bench.jobs().finish(good);
    const bool isRecipe = m_kind == JobKind::RecipeWrite || m_kind == JobKind::RecipeRead;
    if (isRecipe) {
        const Recipe direction = m_kind == JobKind::RecipeWrite ? Recipe::Write : Recipe::Read;
        require(m_bench.host().isRequested(direction) == !transferOver,
                "a recipe's request was taken back too early or too late");
    }
    return {m_kind, m_job.range, good,
            !m_seen.answer.isEmpty() && m_seen.answer.at(0) == plc::kNak};
}

} // namespace exchange::soak
