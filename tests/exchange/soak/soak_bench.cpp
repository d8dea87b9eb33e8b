#include "exchange/soak/soak_bench.h"

#include "support/driver_fixture.h"

#include <algorithm>
#include <utility>

namespace exchange::soak {

namespace {

constexpr std::size_t kTraced = 80;
constexpr int kTag = 2; // the host's own, of every request
constexpr int kDeepest = 3;

/** The bench of the phase that runs: the driver's calls carry nothing that would tell. */
Bench *&benchNow()
{
    static Bench *bench = nullptr;
    return bench;
}

QByteArray bytesOf(const Range &range, const std::vector<int> &values)
{
    QByteArray bytes;
    for (const int value : values) {
        bytes += static_cast<char>(value & 0xFF);
        if (range.reg->isWord()) {
            bytes += static_cast<char>(value >> 8 & 0xFF);
        }
    }
    return bytes;
}

/** Every word of every item lies in one block, at the item's place of the buffer. */
void checkBlocks(const QVector<_RCP_VAR_PRO> &items, const std::vector<RecipeBlock> &blocks)
{
    int words = 0;
    for (const _RCP_VAR_PRO &item : items) {
        const Range range = rangeOf(item.stationNo, item.regName, item.startAddr, item.count);
        const auto count =
            std::count_if(blocks.begin(), blocks.end(), [&](const RecipeBlock &block) {
                const int ahead = range.address - block.range.address;
                return block.range.station == range.station && block.range.reg == range.reg &&
                       ahead >= 0 && ahead + range.count <= block.range.count &&
                       block.offset + ahead == item.bufOffset;
            });
        require(count == 1,
                [&] { return QLatin1String("recipe item in no block: ") + text(range); });
        words += item.count;
    }
    for (const RecipeBlock &block : blocks) {
        words -= block.range.count;
    }
    require(words == 0, "the recipe's blocks hold other words than its items");
}

} // namespace

Range rangeOf(int station, const QString &regName, int address, int count)
{
    return {station, registerNamed(regName), address, count};
}

Bench::Bench(const Plan &plan, Tally &tally)
    : m_plan(plan)
    , m_tally(tally)
    , m_host(plan.properties().constData())
    , m_plant(m_host, tally)
    , m_jobs(tally)
    , m_view(plan.device, m_jobs, tally)
    , m_recipeBuffer(DriverFixture::kRecipeWords)
{
    m_host.keepTurns(0);
    m_host.timing.quietMs = plan.quietMs;
    m_expected.setHandler([this] { followReactions(); });
    for (int depth = 0; plan.severalThreads && depth <= kDeepest; ++depth) {
        m_panels.push_back(std::make_unique<OtherThread>());
    }
    benchNow() = this;
    intf_setAddrValueChangeCallBack(&hear);
    for (const StationPlan &station : plan.stations) {
        if (station.isThere) {
            m_plant.add(station.number, station.model, station.seed);
        }
    }
}

Bench::~Bench()
{
    benchNow() = nullptr;
}

int Bench::hear(int device, int station, QString &name, int address)
{
    if (benchNow() != nullptr) {
        const Register *const reg = registerNamed(name);
        const int seen = reg ? valuesOnPanel({station, reg, address, 1}).at(0) : 0;
        benchNow()->m_heard.push({device, station, name, address, seen});
        benchNow()->react();
    }
    return 0;
}

void Bench::setReaction(std::function<std::optional<Job>()> reaction)
{
    m_reaction = std::move(reaction);
}

void Bench::react()
{
    if (!m_reaction || m_depth == kDeepest) {
        return;
    }
    if (const std::optional<Job> job = m_reaction()) {
        m_reactions.push_back({m_heard.size(), *job});
        ++m_depth;
        tellDriver(*job);
        --m_depth;
    }
}

// The host's doings take effect here at the same call as they did in the driver.
void Bench::followReactions()
{
    while (m_followed < m_reactions.size() && m_reactions[m_followed].within == m_expected.size()) {
        const Job job = m_reactions[m_followed].job;
        ++m_followed;
        trace([&] { return QLatin1String("within a call: ") + text(job.range); });
        m_tally.count(Event::Reaction);
        if (job.values.empty()) {
            expectReading(job.range);
        } else {
            expectWrite(job);
        }
    }
}

void Bench::listen()
{
    m_expected.clear();
    m_heard.clear();
    m_reactions.clear();
    m_followed = 0;
}

void Bench::compareCalls()
{
    require(m_heard == m_expected, [this] {
        return QString::fromLatin1("the host heard %1 instead of %2")
            .arg(m_heard.text(), m_expected.text());
    });
    require(m_followed == m_reactions.size(), "a write within a call came at another time");
    for (const Reaction &reaction : m_reactions) {
        m_view.compare(reaction.job.range);
    }
}

void Bench::compareSizes() const
{
    const auto same = [](const char *what, int is, std::size_t must) {
        require(is == static_cast<int>(must), [&] {
            return QString::fromLatin1("%1 %2 instead of %3")
                .arg(QString::number(is), QLatin1String(what),
                     QString::number(static_cast<int>(must)));
        });
    };
    same("writes wait", static_cast<int>(driver.pendingWrites.size()), m_jobs.writes().size());
    same("condition reads wait", static_cast<int>(driver.conditionReads.size()),
         m_jobs.readings().size());
    same("cyclic blocks", static_cast<int>(driver.cyclicReads.size()), m_jobs.cyclic().size());
    same("units are known", static_cast<int>(driver.dataArea.size()),
         static_cast<std::size_t>(m_view.size()));
}

// Whoever tells the driver waits for the end, so that everything stays in its order.
void Bench::tellDriver(const Job &job) const
{
    if (m_panels.empty()) {
        callDriver(job);
    } else {
        m_panels[static_cast<std::size_t>(m_depth)]->call([&job] { callDriver(job); });
    }
}

void Bench::callDriver(const Job &job)
{
    const Range &range = job.range;
    if (job.values.empty()) {
        KEY_ADDRESS wanted =
            key(range.station, range.reg->name.toLatin1().constData(), range.address, range.count);
        intf_addConditionRead(wanted, kTag);
        return;
    }
    QString name = range.reg->name;
    QByteArray bytes = bytesOf(range, job.values);
    intf_setData(range.station, name, range.address, range.count, DriverFixture::bytes(bytes),
                 kTag);
}

// Words wait in pieces of a block, contacts one by one, bits together.
void Bench::expectWrite(const Job &job)
{
    const Range &range = job.range;
    const int most = range.reg->isBit() ? range.count : range.reg->isWord() ? m_plan.blockWords : 1;
    for (int done = 0; m_plan.isSent(*range.reg) && done < range.count; done += most) {
        Job piece;
        piece.range = {range.station, range.reg, range.address + done,
                       std::min(most, range.count - done)};
        piece.values.assign(job.values.begin() + done,
                            job.values.begin() + done + piece.range.count);
        m_jobs.addWrite(piece);
    }
    m_view.store(range, job.values, m_expected);
}

void Bench::expectReading(const Range &range)
{
    for (int done = 0; m_plan.blockWords > 0 && done < range.count; done += m_plan.blockWords) {
        m_jobs.addReading({range.station, range.reg, range.address + done,
                           std::min(m_plan.blockWords, range.count - done)});
    }
}

void Bench::write(const Range &range, const std::vector<int> &values)
{
    trace([&] { return QLatin1String("write ") + text(range); });
    listen();
    tellDriver({range, values});
    expectWrite({range, values});
    compareCalls();
    m_view.compare(range);
    compareSizes();
}

void Bench::readOnce(const Range &range)
{
    trace([&] { return QLatin1String("read once ") + text(range); });
    tellDriver({range, {}});
    expectReading(range);
    compareSizes();
}

void Bench::show(const Keys &screen)
{
    trace([&] { return QString::fromLatin1("new screen"); });
    m_screen = screen;
    m_view.watch(screen);
    Keys copy = screen;
    const int count = intf_addrMerge(copy);
    std::vector<Range> blocks;
    for (const VARIABLE &block : driver.cyclicReads) {
        blocks.push_back(rangeOf(block.stationNo, block.regName, block.startAddr, block.count));
        require(block.count <= m_plan.longestBlock(), "a block has more words than it may have");
    }
    require(count == static_cast<int>(blocks.size()), "another number of blocks than told");
    m_jobs.setCyclic(blocks);
    compareSizes();
}

void Bench::setRecipe(const QVector<_RCP_VAR_PRO> &items)
{
    m_recipeItems = items;
    require(m_host.setRecipe(items) == static_cast<int>(items.size()), "recipe items were lost");
    std::vector<RecipeBlock> blocks;
    for (const _RCP_VAR_PRO &block : driver.rcpBlocks) {
        blocks.push_back({rangeOf(block.stationNo, block.regName, block.startAddr, block.count),
                          block.bufOffset});
    }
    checkBlocks(items, blocks);
    m_jobs.setRecipe(blocks);
}

void Bench::setRecipeWord(int offset, int value)
{
    m_recipeBuffer.at(static_cast<std::size_t>(offset)) = value;
    m_host.setRecipeWords(offset, {value});
}

void Bench::restart()
{
    trace([&] { return QString::fromLatin1("restart"); });
    m_host.start(m_plan.properties().constData());
    m_jobs.clear();
    m_view.clear();
    m_tally.count(Event::Restart);
    show(m_screen);
}

std::vector<int> Bench::recipeWords(int offset, int count) const
{
    const auto first = m_recipeBuffer.begin() + offset;
    return std::vector<int>(first, first + count);
}

void Bench::expectRecipeWords(int offset, const std::vector<int> &words)
{
    std::copy(words.begin(), words.end(), m_recipeBuffer.begin() + offset);
}

void Bench::compareRecipeBuffer() const
{
    constexpr int kUsed = 512; // of 4096; every item of a plan ends before that
    const Values words = m_host.recipeWords(0, kUsed);
    require(std::equal(words.begin(), words.end(), m_recipeBuffer.begin()),
            "the recipe buffer holds other words than were read");
}

bool Bench::isRecipeRequested()
{
    return m_host.isRequested(Recipe::Write) || m_host.isRequested(Recipe::Read);
}

void Bench::trace(const std::function<QString()> &step)
{
    if (!m_traced) {
        return;
    }
    m_trace.push_back(step());
    if (m_trace.size() > kTraced) {
        m_trace.pop_front();
    }
}

QString Bench::traceText() const
{
    QString all;
    for (const QString &step : m_trace) {
        all += step + QLatin1Char('\n');
    }
    return all;
}

} // namespace exchange::soak
