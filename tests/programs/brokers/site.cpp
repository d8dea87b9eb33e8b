#include "brokers/site.h"

#include "outages/standing.h"

#include <QFileInfo>
#include <QTest>

#include <csignal>

using namespace cnet::gateway;

namespace {

// A busy line: whenever one of its tags is read, it has changed.
const int kTags = 100;
const int kPatienceMs = 120000; // a cluster that has lost a member is slow for long
// The gateway says once a second how it stands.
const int kNewsMs = 1200;

QString addressOf(int tag)
{
    return QString::number(100 + 2 * tag);
}

} // namespace

bool Site::start(const QByteArray &sink)
{
    QStringList counters;
    for (int i = 0; i < kTags; ++i) {
        counters << QLatin1String("--counter")
                 << QString::fromLatin1("D_W:%1=%2..4294967295@%3")
                        .arg(addressOf(i))
                        .arg((i + 1) * 100000)
                        .arg(20 + i % 60);
    }
    return m_plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")}, counters) &&
           (QFile::exists(ledgerFile()) ||
            makeWatchedLedger(ledgerFile(), {QLatin1String("centre")})) &&
           storeFiles(sink) &&
           m_folder.start(m_gateway, {"run", QFile::encodeName(file("gateway.toml"))});
}

bool Site::storeFiles(const QByteArray &sink) const
{
    QByteArray tags = "name,register,address,type\n";
    for (int i = 0; i < kTags; ++i) {
        tags += "zone" + QByteArray::number(i) + ".count,D_W," + addressOf(i).toLatin1() + ",u32\n";
    }
    return m_folder.store("tags.csv", tags) &&
           m_folder.store("gateway.toml",
                          "[batch]\nage = \"100ms\"\n[line.press]\ntags = \"tags.csv\"\n"
                          "interval = \"200ms\"\nlink = \"tcp:" +
                              m_plc.place().toLatin1() +
                              "\"\n[sink.centre]\nkind = \"mqtt\"\nsite = \"plant\"\n"
                              "keep_alive = \"5s\"\n" +
                              sink);
}

void Site::endChanges()
{
    m_plc.signal(SIGKILL);
    m_plc.exitCode();
}

bool Site::isDrained() const
{
    const Standing standing = standingIn(QFileInfo(ledgerFile()).path());
    return standing.sinks == 1 && standing.waitingBatches == 0 && !standing.isLineOpen;
}

bool Site::waitUntilDrained() const
{
    const auto holds = [this] { return isDrained(); };
    if (!QTest::qWaitFor(holds, kPatienceMs)) {
        return false;
    }
    QTest::qWait(kNewsMs);
    return QTest::qWaitFor(holds, kPatienceMs);
}

LedgerRecord Site::end()
{
    m_gateway.signal(SIGKILL);
    m_gateway.exitCode();
    m_messages = m_gateway.errors();
    return readLedger(ledgerFile());
}
