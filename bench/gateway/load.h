#pragma once

#include "gateway/change/change.h"

#include <QVector>

namespace cnet::gateway {

/** Changes as 25 lines of 500 tags have them: every value is another one each time. */
class Load
{
public:
    /** @param tags 1 or more */
    explicit Load(int tags);

    /** The next one; tag by tag, a millisecond for ten of them. */
    const Change &next();

private:
    QVector<std::shared_ptr<const ChangeSource>> m_sources;
    Change m_change;
    qint64 m_count = 0;
};

} // namespace cnet::gateway
