#include "gateway/store/ledger_identity.h"

#include <QFile>
#include <QUuid>

namespace cnet::gateway {

namespace {

QString newName()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

} // namespace

QString currentBoot()
{
    QFile file(QLatin1String("/proc/sys/kernel/random/boot_id"));
    const QString boot =
        file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().trimmed()) : QString();
    // Where nobody tells, each start of the program may be one of the computer.
    return boot.isEmpty() ? newName() : boot;
}

// Kept is the start of the computer in which commits did not wait for the disk; none where they
// did.
StoreError readIdentity(Database &ledger, Database::Durability durability, const QString &boot,
                        QString &identity)
{
    Statement read(ledger, "SELECT (SELECT value FROM setting WHERE name = 'identity'),"
                           " coalesce((SELECT value FROM setting WHERE name = 'boot'), '')");
    if (read.step() != Statement::Step::Row) {
        return ledger.error();
    }
    const QString before = read.text(1);
    const bool isSame = before.isEmpty() || before == boot;
    identity = isSame && !read.text(0).isEmpty() ? read.text(0) : newName();
    Statement keep(ledger, "INSERT OR REPLACE INTO setting VALUES ('identity', ?), ('boot', ?)");
    keep.bind(1, identity);
    keep.bind(2, durability == Database::Durability::Normal ? boot : QString(QLatin1String("")));
    return keep.run() ? StoreError() : ledger.error();
}

} // namespace cnet::gateway
