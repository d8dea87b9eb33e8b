#pragma once

#include <QString>

#include <functional>
#include <type_traits>
#include <utility>

namespace cnet::gateway {

/** How much a line matters to whoever looks after the gateway. */
enum class Weight {
    Notice, ///< good to know
    Warning ///< something is not as it should be
};

/** Says one line to whoever looks after the gateway. For several threads. */
class Say
{
public:
    using Taker = std::function<void(Weight weight, const QString &line)>;

    /** @param taker a Taker, or what takes the line alone */
    template <typename Callable,
              typename = std::enable_if_t<!std::is_same_v<std::decay_t<Callable>, Say>>>
    Say(Callable taker)
    {
        if constexpr (std::is_invocable_v<Callable, Weight, const QString &>) {
            m_taker = std::move(taker);
        } else {
            m_taker = [own = std::move(taker)](Weight, const QString &line) { own(line); };
        }
    }

    void operator()(const QString &line) const { m_taker(Weight::Notice, line); }
    void warn(const QString &line) const { m_taker(Weight::Warning, line); }

private:
    Taker m_taker;
};

} // namespace cnet::gateway
