#include "model/side_by_side.h"

#include <algorithm>

namespace model {

namespace {

[[noreturn]] void part(const std::string &expected, const std::string &seen)
{
    throw Difference("  model:  " + expected + "\n  driver: " + seen);
}

std::string requestText(const unsigned char *requests)
{
    return "request bytes " + std::to_string(requests[0]) + " and " + std::to_string(requests[1]);
}

std::string sizesText(const Sizes &sizes)
{
    std::string text = "writes, one-off reads, cyclic reads, values:";
    for (const std::size_t size : sizes) {
        text += ' ' + std::to_string(size);
    }
    return text;
}

} // namespace

void SideBySide::step(const Operation &operation, const std::string &answer)
{
    if (!m_model.mayApply(operation)) {
        return;
    }
    ++m_steps;
    m_shown = m_model.apply(operation, answer);
    const std::string what = difference(m_shown, m_driver.apply(operation, answer));
    if (!what.empty()) {
        throw Difference(what);
    }
    const unsigned char *const requests = m_driver.block().data() + DriverSide::kRequestPlace;
    if (!std::equal(std::begin(model().requests), std::end(model().requests), requests)) {
        part(requestText(model().requests), requestText(requests));
    }
    compareBuffers();
    if (m_model.sizes() != DriverSide::sizes()) {
        part(sizesText(m_model.sizes()), sizesText(DriverSide::sizes()));
    }
}

void SideBySide::compareBuffers() const
{
    const Bytes &expected = model().recipeBuffer;
    const Bytes &seen = m_driver.recipeBuffer();
    if (expected != seen) {
        const auto [there, here] = std::mismatch(expected.begin(), expected.end(), seen.begin());
        const std::string place = "recipe byte " + std::to_string(here - seen.begin()) + " is ";
        part(place + std::to_string(*there), place + std::to_string(*here));
    }
}

} // namespace model
