#pragma once

#include "host/address/register_catalog.h"
#include "host/tag/tag.h"

#include <functional>

namespace cnet {

/** What a tag file is read with. */
struct TagReading
{
    /** Tells whether the addresses of an item are good for an access; if not, why. */
    using AddressCheck = std::function<bool(const Item &item, TagAccess access, QString &error)>;

    const RegisterCatalog &registers; ///< must outlive the reading
    AddressCheck check;
    int station = 1; ///< of tags that name none
    int limit = 100; ///< mistakes and warnings that are kept; all are counted
};

} // namespace cnet
