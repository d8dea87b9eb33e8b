// A host with an exchange thread and a panel thread that keeps to the driver's rules: no two calls
// at a time, but for the functions that any thread may call at any time. Ends with 0 when all that
// the panel wrote has reached the PLC; the thread sanitizer ends it when two threads met in the
// driver.

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "plc/line.h"

#include <QMutex>

#include <array>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr int kStation = 1;
constexpr int kTurns = 4000;     ///< of the panel
constexpr int kLostAnswer = 17;  ///< every so many answers one does not come
constexpr int kIdleTurns = 3000; ///< of the exchange, after the panel has ended
constexpr int kWords = 64;       ///< that the panel writes, from kFirstWord on
constexpr int kFirstWord = 200;
constexpr int kRecipeWord = 500;
constexpr int kRecipeWords = 8;
constexpr std::size_t kSharedBytes = 60117;
constexpr std::size_t kWriteRequest = 60115;
constexpr std::size_t kReadRequest = 60116;

// What both threads know; the driver is called with its lock held only. Texts that were given to
// it, or came from it, are made and dropped with the lock held too: Qt counts their users safely,
// but since Qt itself is not instrumented, the sanitizer does not see that it does.
struct Host
{
    std::mutex driver;
    QMutex recipeLock; ///< the driver takes it by itself
    std::vector<unsigned char> shared = std::vector<unsigned char>(kSharedBytes, 0);
    std::vector<unsigned char> recipe = std::vector<unsigned char>(2 * kRecipeWords, 0);
    std::atomic<int> exchanges{0};
    std::atomic<bool> panelEnded{false};
};

std::atomic<int> s_changes{0};

int noteChange(int /*deviceNo*/, int stationNo, QString &name, int address)
{
    // From within either thread's call, and so with the lock held already.
    std::array<unsigned char, kValueAreaSize> data{};
    QString reg = QString::fromLatin1("D_W");
    if (stationNo == kStation && name == reg) {
        intf_getData(stationNo, reg, address, 1, data.data());
    }
    ++s_changes;
    return 0;
}

KEY_ADDRESS key(const char *reg, int start, int count)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = kStation;
    key.regName = QString::fromLatin1(reg);
    key.startAddr = start;
    key.count = count;
    return key;
}

void start(Host &host)
{
    int status = -1;
    intf_setAddrValueChangeCallBack(&noteChange);
    intf_initProperty(host.shared.data(), 0, host.recipe.data(), &status, "0#0#0#3#60",
                      &host.recipeLock);
    QList<KEY_ADDRESS> keys;
    keys.append(key("D_W", kFirstWord, kWords));
    keys.append(key("M_W", 0, 10));
    intf_addrMerge(keys);
    _RCP_VAR_PRO item = _RCP_VAR_PRO();
    item.stationNo = kStation;
    item.regName = QString::fromLatin1("D_W");
    item.startAddr = kRecipeWord;
    item.count = kRecipeWords;
    QVector<_RCP_VAR_PRO> items;
    items.append(item);
    intf_setRcpAddress(items);
}

// The line and the PLC belong to this thread.
void exchange(Host &host, plc::Line &line)
{
    FRAME_PRO frame = FRAME_PRO();
    for (int turn = 0, idle = 0; idle < kIdleTurns; ++turn) {
        QByteArray answer;
        bool hasFrame = false;
        {
            const std::lock_guard<std::mutex> lock(host.driver);
            hasFrame = intf_getSendFrame(frame) != 0;
        }
        if (hasFrame) {
            const QByteArray request(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
            answer = plc::joined(line.receive(request));
            if (turn % kLostAnswer == 0) {
                answer.clear();
            }
            const std::lock_guard<std::mutex> lock(host.driver);
            QString text;
            intf_dealRcvFrame(answer, text);
            ++host.exchanges;
        } else {
            std::this_thread::yield();
        }
        idle = host.panelEnded ? idle + 1 : 0;
    }
    const std::lock_guard<std::mutex> lock(host.driver);
    frame = FRAME_PRO();
}

// Called while the other thread may be anywhere in the driver.
void useEditor(int turn)
{
    QString text;
    QList<QString> names;
    int number = 0;
    const QString reg = QString::fromLatin1(turn % 2 == 0 ? "D_W" : "M_bit");
    intf_getDriverParameter(text);
    intf_getDriverPropertyPage(text);
    intf_getProtocolType(&number);
    intf_getVersion();
    intf_getRegListByType(turn % 2, names);
    intf_getRegDiscription(reg, names);
    const QString address = QString::fromLatin1(turn % 2 == 0 ? "100" : "3.5");
    intf_checkAddrValidity(reg, address, number, 1, turn % 2 == 0 ? 1 : 0);
    intf_checkAddr(reg, address, number, turn % 2 == 0 ? 0 : -1, 1, 1);
    QString series = reg;
    QVector<QString> texts;
    QVector<int> numbers;
    intf_multiCopy(series, number, 20, 1, texts, numbers);
}

void askForRecipe(Host &host, std::size_t request)
{
    host.recipeLock.lock();
    host.shared[request] = 1;
    host.recipeLock.unlock();
}

void usePanel(Host &host)
{
    std::array<unsigned char, kValueAreaSize> data{};
    for (int turn = 0; turn < kTurns; ++turn) {
        // Neither runs away from the other.
        while (host.exchanges < turn / 2) {
            useEditor(turn);
        }
        useEditor(turn);
        const std::lock_guard<std::mutex> lock(host.driver);
        QString reg = QString::fromLatin1("D_W");
        data[0] = static_cast<unsigned char>(turn & 0xFF);
        data[1] = static_cast<unsigned char>(turn >> 8);
        intf_setData(kStation, reg, kFirstWord + turn % kWords, 1, data.data(), 1);
        intf_getData(kStation, reg, kFirstWord, kWords, data.data());
        if (turn % 7 == 0) {
            KEY_ADDRESS once = key("D_W", turn, 5);
            intf_addConditionRead(once, 2);
        }
        if (turn % 100 == 0) {
            host.recipe[0] = static_cast<unsigned char>(turn / 100);
            askForRecipe(host, turn % 200 == 0 ? kWriteRequest : kReadRequest);
        }
    }
    host.panelEnded = true;
}

int checkPlc(plc::Bus &bus)
{
    int wrong = 0;
    for (int turn = kTurns - kWords; turn < kTurns; ++turn) {
        const auto held = bus.find(kStation)->station.memory().value(
            {'D', plc::PointKind::Word, kFirstWord + turn % kWords});
        wrong += held && *held == turn ? 0 : 1;
    }
    return wrong;
}

} // namespace

int main()
{
    Host host;
    plc::Bus bus;
    bus.add(kStation);
    plc::Line line(bus);
    start(host);
    std::thread exchangeThread([&] { exchange(host, line); });
    std::thread panelThread([&] { usePanel(host); });
    panelThread.join();
    exchangeThread.join();
    intf_setAddrValueChangeCallBack(nullptr);
    intf_initProperty(nullptr, 0, nullptr, nullptr, "", nullptr);
    const int wrong = checkPlc(bus);
    std::printf("%d turns of the panel, %d changes, %d words not in the PLC\n", kTurns,
                s_changes.load(), wrong);
    return wrong == 0 && s_changes > 0 ? 0 : 1;
}
