#include "threads/host.h"

#include <thread>

namespace threads {

namespace {

constexpr int kEchoEvery = 5; // calls of a thread
constexpr int kAskEvery = 31;
constexpr int kPauseEvery = 8;

// The callback carries nothing that would tell.
std::atomic<Host *> s_host{nullptr};
thread_local int t_thread = 0;
thread_local int t_calls = 0;
thread_local int t_depth = 0;

KEY_ADDRESS key(const QString &reg, int address, int count)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = kStation;
    key.regName = reg;
    key.startAddr = address;
    key.count = count;
    return key;
}

QList<KEY_ADDRESS> screen()
{
    const Names &reg = names();
    QList<KEY_ADDRESS> keys;
    keys.append(key(reg.words, 0, kLiveWords));
    keys.append(key(reg.words, kPanelWord, 2 * kPanelWords));
    keys.append(key(reg.dataBits, 16 * kBitWord, 2 * 16 * kBitWords));
    keys.append(key(reg.relayBits, 0, 2 * 16 * kBitWords));
    keys.append(key(reg.words, kEchoWord, kThreads));
    for (int i = 0; i < 2 * kBitWords; ++i) {
        keys.append(key(reg.contacts, i, 1));
    }
    return keys;
}

QVector<_RCP_VAR_PRO> recipe(int firstWord)
{
    QVector<_RCP_VAR_PRO> items;
    for (int i = 0; i < 2; ++i) { // two blocks
        _RCP_VAR_PRO item = _RCP_VAR_PRO();
        item.stationNo = kStation;
        item.regName = names().words;
        item.startAddr = firstWord + i * kRecipeWords;
        item.count = kRecipeWords / 2;
        item.bufOffset = i * kRecipeWords / 2;
        items.append(item);
    }
    return items;
}

// The panel draws what changed, and now and then something follows from it.
void react(Host &host, int stationNo, const QString &name, int address)
{
    std::array<unsigned char, kValueAreaSize> data{};
    QString reg = names().words;
    if (stationNo == kStation && name == reg) {
        intf_getData(stationNo, reg, address, 1, data.data());
    }
    if (t_depth > 1) {
        return;
    }
    ++t_calls;
    if (t_calls % kEchoEvery == 0) {
        const auto thread = static_cast<std::size_t>(t_thread);
        const int value = host.echoes[thread] = (host.echoes[thread] + 1) & 0xFFFF;
        data[0] = static_cast<unsigned char>(value & 0xFF);
        data[1] = static_cast<unsigned char>(value >> 8);
        intf_setData(kStation, reg, kEchoWord + t_thread, 1, data.data(), 3);
    }
    if (t_calls % kAskEvery == 0) {
        KEY_ADDRESS once = key(reg, 1000 + t_thread, 3);
        intf_addConditionRead(once, 3);
    }
    if (t_calls % kPauseEvery == 0) {
        std::this_thread::yield();
    }
}

int noteChange(int /*deviceNo*/, int stationNo, QString &name, int address)
{
    Host &host = *s_host;
    std::unique_lock<std::recursive_mutex> lock(host.own, std::defer_lock);
    if (host.hostLock != HostLock::None) {
        lock.lock();
    }
    host.meetings += host.inCallback++ > 0 && t_depth == 0 ? 1 : 0;
    ++host.changes;
    ++t_depth;
    react(host, stationNo, name, address);
    --t_depth;
    --host.inCallback;
    return 0;
}

void begin(Host &host)
{
    int status = -1;
    intf_initProperty(host.shared.data(), 0, host.recipe.data(), &status, "0#0#0#3#60",
                      &host.requests);
}

} // namespace

std::atomic<const QMutex *> requestsLock{nullptr};

Names &names()
{
    static Names all;
    return all;
}

void beThread(int thread)
{
    t_thread = thread;
}

Calling::Calling(Host &host, bool isPanel)
    : m_lock(host.own, std::defer_lock)
{
    if (host.hostLock == HostLock::All || (host.hostLock == HostLock::Panel && isPanel)) {
        m_lock.lock();
    }
}

void start(Host &host)
{
    s_host = &host;
    requestsLock = &host.requests;
    intf_setAddrValueChangeCallBack(&noteChange);
    begin(host);
    QList<KEY_ADDRESS> keys = screen();
    intf_addrMerge(keys);
    QVector<_RCP_VAR_PRO> items = recipe(kRecipeWord);
    intf_setRcpAddress(items);
}

void startAgain(Host &host, int turn)
{
    QList<KEY_ADDRESS> keys;
    QVector<_RCP_VAR_PRO> items;
    switch (turn % 5) {
    case 0:
        begin(host);
        break;
    case 1:
        keys = screen();
        intf_addrMerge(keys);
        break;
    case 2:
        keys.append(key(names().words, 0, 200 + turn % 7));
        intf_addrMerge(keys);
        break;
    case 3:
        items = recipe(kRecipeWord + turn % 3);
        intf_setRcpAddress(items);
        break;
    default:
        intf_setAddrValueChangeCallBack(turn % 2 == 0 ? &noteChange : nullptr);
        intf_SetDriverPropertyPage(names().words);
        break;
    }
}

} // namespace threads
