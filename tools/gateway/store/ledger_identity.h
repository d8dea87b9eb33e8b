#pragma once

#include "gateway/store/database.h"

namespace cnet::gateway {

/** Of this start of the computer: another one after each. */
QString currentBoot();

/**
 * What the numbers of a ledger's batches belong to. It stays as long as a number means one batch
 * for ever: as the file does, but where a power cut may have taken the last commits, since they did
 * not wait for the disk. Their numbers come again then, and a sink that has them has to know that
 * these are others.
 * @param boot currentBoot()
 */
StoreError readIdentity(Database &ledger, Database::Durability durability, const QString &boot,
                        QString &identity);

} // namespace cnet::gateway
