#include "host/driver/change_slot.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cnet {

namespace {

struct Place
{
    bool taken = false;
    ChangeSlot::Handler handler;
};

using Places = std::array<Place, kMostDrivers>;

Places &places()
{
    static Places all;
    return all;
}

template <size_t number>
int report(int /*deviceNo*/, int stationNo, QString &name, int address)
{
    const ChangeSlot::Handler &handler = places().at(number).handler;
    if (handler) {
        handler(stationNo, name, address);
    }
    return 0;
}

template <size_t... numbers>
constexpr std::array<ChangeSlot::Function, kMostDrivers> functionsOf(
    std::index_sequence<numbers...> /*all*/)
{
    return {&report<numbers>...};
}

constexpr auto kFunctions = functionsOf(std::make_index_sequence<kMostDrivers>());

} // namespace

ChangeSlot::ChangeSlot()
    : m_number(-1)
{
    Places &all = places();
    const auto free =
        std::find_if(all.begin(), all.end(), [](const Place &place) { return !place.taken; });
    if (free != all.end()) {
        free->taken = true;
        m_number = static_cast<int>(free - all.begin());
    }
}

ChangeSlot::~ChangeSlot()
{
    if (m_number >= 0) {
        places().at(static_cast<size_t>(m_number)) = Place();
    }
}

ChangeSlot::Function ChangeSlot::function() const
{
    return m_number < 0 ? nullptr : kFunctions.at(static_cast<size_t>(m_number));
}

void ChangeSlot::setHandler(Handler handler)
{
    if (m_number >= 0) {
        places().at(static_cast<size_t>(m_number)).handler = std::move(handler);
    }
}

} // namespace cnet
