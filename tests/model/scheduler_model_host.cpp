#include "model/scheduler_model.h"

#include "model/register_name.h"

#include <algorithm>
#include <sstream>

/** What the host asks of the model outside the exchange loop. */
namespace model {

namespace {

constexpr int kMostValueBytes = 1024;
constexpr int kBitsPerBlockWord = 8;
constexpr int kContactScale = 16;

/** The whole text as a number; 0 when it is none. */
int numberOf(const std::string &text)
{
    std::istringstream stream(text);
    int number = 0;
    stream >> number;
    return stream && stream.peek() == std::char_traits<char>::eof() ? number : 0;
}

std::vector<std::string> fields(const std::string &text)
{
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == '#') {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

/** The host's bytes for one unit: two for a word, else one. */
int unitSize(const std::string &name)
{
    return isWordRegister(name) ? 2 : 1;
}

} // namespace

SchedulerModel::SchedulerModel(std::size_t recipeBytes, std::function<void()> heard)
    : recipeBuffer(recipeBytes)
    , m_heard(std::move(heard))
    , m_values([this](int station, const std::string &name, int address) {
        tell(m_device, station, name, address);
    })
{}

void SchedulerModel::start(const Settings &settings)
{
    const std::vector<std::string> parts = fields(settings.properties);
    if (parts.size() >= 5) {
        m_device = numberOf(parts[0]);
        m_cacheOnly = numberOf(parts[1]) != 0;
        m_tries = numberOf(parts[3]);
        m_words = numberOf(parts[4]);
    }
    m_recipesShared = settings.recipesShared;
    m_cyclic.clear();
    m_writes.clear();
    m_onceReads.clear();
    m_values.clear();
    m_frames.clear();
    m_job = Job::Idle;
    m_sinceCyclic = 0;
    m_handshakeDue = false;
    m_badAnswers = 0;
    m_failed = false;
}

int SchedulerModel::monitor(const std::vector<Range> &keys)
{
    m_values.clearMonitors();
    for (const Range &key : keys) {
        m_values.monitor(key);
    }
    const std::vector<Range> blocks = mergeMonitored(keys, m_words);
    m_cyclic.assign(blocks.begin(), blocks.end());
    return static_cast<int>(m_cyclic.size());
}

int SchedulerModel::setRecipe(const std::vector<RecipeItem> &items)
{
    m_parts.clear();
    for (const RecipeItem &item : items) {
        if (item.device == m_device) {
            m_parts.push_back(item.part);
        }
    }
    if (!m_parts.empty()) {
        sortParts(m_parts);
        m_blocks = mergeRecipe(m_parts, m_words);
    }
    return static_cast<int>(m_parts.size());
}

void SchedulerModel::write(const Range &range, const Bytes &values, int tag)
{
    const int size = unitSize(range.name);
    if (range.count < 0 || (!m_cacheOnly && range.count * size > kMostValueBytes)) {
        return;
    }
    if (!m_cacheOnly && isContact(range.name)) {
        for (int i = 0; i < range.count; ++i) {
            const Range contact = {range.station, range.name, range.start + i, 1};
            const Bytes value(1, values[static_cast<std::size_t>(i)]);
            m_writes.add({contact, tag, value});
        }
    } else if (!m_cacheOnly) {
        Bytes area(2 * kMostValueBytes); // the second half is what lies beyond: zeros
        std::copy_n(values.begin(), range.count * size, area.begin());
        const int most = isWordRegister(range.name) ? m_words : kBitsPerBlockWord * m_words;
        const std::vector<Range> pieces = cut(range, most);
        for (const Range &piece : pieces) {
            // The values of later pieces are looked for two bytes a unit further on, even for bits.
            const auto from = area.begin() + 2 * (piece.start - range.start);
            m_writes.add({piece, tag, Bytes(from, from + piece.count * size)});
        }
    }
    m_values.store(range, values, [this, &range] { return m_writes.countOf(range); });
}

void SchedulerModel::readOnce(const Range &range, bool oneByteEach, int tag)
{
    if (isBitName(range.name)) {
        return;
    }
    for (Range piece : cut(range, oneByteEach ? kBitsPerBlockWord * m_words : m_words)) {
        if (isContact(range.name)) {
            piece.count *= kContactScale;
        }
        m_onceReads.add({piece, tag, {}});
        m_awaited = piece;
    }
}

} // namespace model
