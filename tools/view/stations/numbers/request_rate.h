#pragma once

#include <QPair>
#include <QVector>

#include <optional>

namespace cnet::view {

/** How fast a counter rises, from looking at it now and then. */
class RequestRate
{
public:
    /** The rate is taken over the last so many milliseconds, or since the look before these. */
    static constexpr qint64 kWindowMs = 5000;

    /** @param nowMs from any zero; @param total less than before: counting has begun anew */
    void note(qint64 nowMs, qint64 total);

    /** Of one second; nothing before time has passed between two looks. */
    std::optional<double> perSecond() const;

private:
    QVector<QPair<qint64, qint64>> m_looks; ///< time and total, rising
};

} // namespace cnet::view
