// What the threads of the host do.

#include "threads/host.h"

#include <algorithm>
#include <thread>

namespace threads {

namespace {

constexpr int kLostAnswer = 17;   // every so many answers one does not come
constexpr int kCyclicTag = 4;     // the driver's own, of its cyclic reads
constexpr int kQuietFrames = 60;  // cyclic reads in a row: nothing else waits, all was read again
constexpr int kRecipeEvery = 100; // turns of the panel

bool isRecipeAskedFor(Host &host)
{
    const QMutexLocker lock(&host.requests);
    return host.shared[kRecipeWriteByte] != 0 || host.shared[kRecipeReadByte] != 0;
}

// Called while the other threads may be anywhere in the driver.
void useEditor(int turn)
{
    QString text;
    QList<QString> list;
    int number = 0;
    const QString &reg = turn % 2 == 0 ? names().words : names().relayBits;
    intf_getDriverParameter(text);
    intf_getDriverPropertyPage(text);
    intf_SetDriverPropertyPage(names().words);
    intf_getProtocolType(&number);
    intf_getVersion();
    intf_getRegListByType(turn % 2, list);
    intf_getRegDiscription(reg, list);
    const QString address = QString::fromLatin1(turn % 2 == 0 ? "100" : "3.5");
    intf_checkAddrValidity(reg, address, number, 1, turn % 2 == 0 ? 1 : 0);
    intf_checkAddr(reg, address, number, turn % 2 == 0 ? 0 : -1, 1, 1);
    QString series = reg;
    QVector<QString> texts;
    QVector<int> numbers;
    intf_multiCopy(series, number, 20, 1, texts, numbers);
}

// The buffer is the driver's while a transfer runs. A host may ask for values under this lock.
void askForRecipe(Host &host, bool writes, int value)
{
    const QMutexLocker lock(&host.requests);
    if (host.shared[kRecipeWriteByte] != 0 || host.shared[kRecipeReadByte] != 0) {
        return;
    }
    if (writes) {
        std::fill(host.recipe.begin(), host.recipe.end(), static_cast<unsigned char>(value));
    }
    host.shared[writes ? kRecipeWriteByte : kRecipeReadByte] = 1;
    std::array<unsigned char, 2 * kRecipeWords> data{};
    intf_getData(kStation, names().words, kRecipeWord, kRecipeWords, data.data());
}

/** The places of one panel thread, in turn: words, bits of data words, relay bits, contacts. */
Written placeOf(int thread, int turn)
{
    Names &reg = names();
    const int bit = turn / 4 % (16 * kBitWords);
    const int word = thread * kBitWords + bit / 16;
    switch (turn % 4) {
    case 0:
    case 1:
        return {&reg.words,
                {'D', plc::PointKind::Word, kPanelWord + thread * kPanelWords + turn % kPanelWords},
                turn & 0xFFFF};
    case 2:
        return {&reg.dataBits,
                {'D', plc::PointKind::Bit, 16 * (kBitWord + word) + bit % 16},
                turn / 16 % 2};
    default:
        break;
    }
    if (bit % 8 == 0) {
        return {&reg.contacts,
                {'T', plc::PointKind::Contact, thread * kBitWords + bit / 8 % kBitWords},
                turn / 3 % 2};
    }
    return {&reg.relayBits, {'M', plc::PointKind::Bit, 16 * word + bit % 16}, turn / 16 % 2};
}

void note(std::vector<Written> &all, const Written &write)
{
    const auto same = std::find_if(all.begin(), all.end(), [&](const Written &other) {
        return other.regName == write.regName && other.point.address == write.point.address;
    });
    if (same == all.end()) {
        all.push_back(write);
    } else {
        same->value = write.value;
    }
}

} // namespace

// The line and the PLC belong to this thread. Once the panel has ended no answer is lost and the
// PLC keeps still, so that both ends come to hold the same.
void exchange(Host &host, plc::Bus &bus)
{
    beThread(kExchangeThread);
    plc::Line line(bus);
    plc::Memory &memory = bus.find(kStation)->station.memory();
    FRAME_PRO frame = FRAME_PRO();
    int quiet = 0;
    for (int turn = 0; quiet < kQuietFrames; ++turn) {
        const bool isEnd = host.panelEnded;
        if (!isEnd) {
            memory.setWord('D', turn % kLiveWords, static_cast<quint16>(turn));
        }
        bool hasFrame = false;
        {
            const Calling calling(host, false);
            hasFrame = intf_getSendFrame(frame) != 0;
        }
        quiet = isEnd && (!hasFrame || frame.var.opKind == kCyclicTag) ? quiet + 1 : 0;
        if (hasFrame) {
            const QByteArray request(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
            QByteArray answer = plc::joined(line.receive(request));
            if (!isEnd && turn % kLostAnswer == 0) {
                answer.clear();
            }
            QString text;
            const Calling calling(host, false);
            intf_dealRcvFrame(answer, text);
            ++host.exchanges;
        }
        quiet = isRecipeAskedFor(host) ? 0 : quiet;
    }
}

std::vector<Written> usePanel(Host &host, int thread, int turns)
{
    beThread(thread);
    std::vector<Written> written;
    std::array<unsigned char, kValueAreaSize> data{};
    for (int turn = 0; turn < turns || host.exchanges < turns / 2; ++turn) {
        if (turn % 4 == 0) {
            useEditor(turn / 4);
        }
        const Calling calling(host, true);
        const Written write = placeOf(thread, turn);
        data[0] = static_cast<unsigned char>(write.value & 0xFF);
        data[1] = static_cast<unsigned char>(write.value >> 8);
        intf_setData(kStation, *write.regName, write.point.address, 1, data.data(), 1);
        note(written, write);
        intf_getData(kStation, names().words, kPanelWord, kPanelWords, data.data());
        if (turn % 7 == 0) {
            KEY_ADDRESS once = KEY_ADDRESS();
            once.stationNo = kStation;
            once.regName = names().words;
            once.startAddr = 2000 + turn % 500;
            once.count = 5;
            intf_addConditionRead(once, 2);
        }
        if (thread == 0 && turn % kRecipeEvery == 0) {
            askForRecipe(host, turn / kRecipeEvery % 2 == 0, turn / kRecipeEvery);
        }
    }
    return written;
}

} // namespace threads
