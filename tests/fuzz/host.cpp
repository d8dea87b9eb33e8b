// A host that calls the driver's functions in any order with any arguments, also from within the
// value-change callback. The PLC is a right one, silent, or talks nonsense.
#include "fuzz/driver_rules.h"
#include "plc/stations/bus.h"

#include <QList>
#include <QVector>

#include <climits>
#include <cstring>
#include <memory>

namespace {

using namespace fuzz;

const int kMostCalls = 150;
const int kDeepest = 3; ///< calls within callbacks within calls
const int kStations = 4;

/** Stations 0 to 3, made when they are first asked and new for each input. */
class Plcs
{
public:
    QByteArray answer(const QByteArray &request)
    {
        bool isNumber = false;
        const int number = request.mid(1, 2).toInt(&isNumber, 16);
        if (!isNumber || number >= kStations) {
            return QByteArray();
        }
        std::unique_ptr<plc::Station> &station = m_stations[number];
        if (!station) {
            station = std::make_unique<plc::Station>(number);
        }
        return station->answer(request);
    }

private:
    std::unique_ptr<plc::Station> m_stations[kStations];
};

class Host
{
public:
    Host(const uint8_t *data, size_t size)
        : m_input(data, size)
    {
        current() = this;
        renewDriver();
        start();
    }

    ~Host() { current() = nullptr; }

    void run()
    {
        while (!m_input.atEnd() && m_callsLeft > 0) {
            call();
            requireBoundedLists();
        }
        drain();
    }

private:
    static Host *&current()
    {
        static Host *host = nullptr;
        return host;
    }

    static int changed(int deviceNo, int stationNo, QString &name, int address)
    {
        current()->onChange(deviceNo, stationNo, name, address);
        return 42;
    }

    void onChange(int deviceNo, int stationNo, QString &name, int address)
    {
        if (name == QLatin1String("-1")) {
            require(deviceNo == -1 && stationNo == -1 && (address == 0 || address == -1),
                    "the end of a condition read has its own form");
        } else if (name == QLatin1String("RWI")) {
            require(deviceNo == 0 && stationNo == -1 && address >= 0 && address < kRecipeWords,
                    "a recipe word lies in the buffer");
        } else {
            require(deviceNo == driver.deviceNo, "a change is this device's");
        }
        if (m_depth >= kDeepest || m_input.atEnd()) {
            return;
        }
        ++m_depth;
        const int choice = m_input.byte();
        if ((choice & 0x80) != 0) {
            name = QLatin1String("changed by the host");
            spoilArguments();
        }
        for (int left = choice & 3; left > 0 && m_callsLeft > 0; --left) {
            callFromAnywhere(m_input.below(kFromAnywhere));
        }
        --m_depth;
    }

    /** The host may use what it has handed over for something else, while the call still runs. */
    void spoilArguments()
    {
        m_reply.fill('?', 3);
        m_regName = QLatin1String("CX");
        if (m_values) {
            std::memset(m_values.get(), 0xA5, m_valueBytes);
        }
    }

    enum { kFromAnywhere = 16, kOutsideOnly = 12 };

    void call()
    {
        const int choice = m_input.below(kFromAnywhere + kOutsideOnly);
        if (choice < kFromAnywhere) {
            callFromAnywhere(choice);
        } else {
            callFromOutside(choice - kFromAnywhere);
        }
    }

    using Call = void (Host::*)();

    void callFromAnywhere(int choice)
    {
        static const Call kCalls[kFromAnywhere] = {
            &Host::write,    &Host::write,       &Host::write,          &Host::write,
            &Host::write,    &Host::readOnce,    &Host::readOnce,       &Host::readOnce,
            &Host::show,     &Host::show,        &Host::checkAddress,   &Host::copySeries,
            &Host::describe, &Host::setCallback, &Host::askRecipeWrite, &Host::askRecipeRead};
        --m_callsLeft;
        const Call made = kCalls[choice];
        (this->*made)();
    }

    void callFromOutside(int choice)
    {
        static const Call kCalls[] = {&Host::start,   &Host::monitor,    &Host::setRecipe,
                                      &Host::askOnly, &Host::answerOnly, &Host::exchange};
        --m_callsLeft;
        const Call made = kCalls[std::min(choice, 5)]; // most often an exchange
        (this->*made)();
    }

    void setCallback()
    {
        intf_setAddrValueChangeCallBack(m_input.below(8) == 0 ? nullptr : &Host::changed);
    }

    void askRecipeWrite() { setRecipeRequest(kRecipeWriteByte, m_input.below(4) != 0); }
    void askRecipeRead() { setRecipeRequest(kRecipeReadByte, m_input.below(4) != 0); }

    QString name()
    {
        static const char *const kOdd[] = {"",    "_",      "_bit",   "d_w",   "D",   "D_W ",
                                           "X_W", "TX_bit", "CX_bit", "M_D",   "M_B", "RWI",
                                           "-1",  "D_bit_", "Q_bit",  "\xC4_W"};
        const int choice = m_input.byte();
        if (choice < 224) {
            return REG_LIST[choice % kRegisterCount];
        }
        return QString::fromLatin1(kOdd[choice & 15]);
    }

    int station()
    {
        const int choice = m_input.byte();
        return choice < 240 ? choice % (kStations + 1) : m_input.number();
    }

    /** Not beyond what a call can carry: a hundred thousand units show no more, and take their
     * time.
     */
    int count()
    {
        const int choice = m_input.byte();
        if (choice < 128) {
            return choice;
        }
        if (choice < 232) {
            return choice & 15;
        }
        return choice < 240 ? (choice & 7) * 128 : std::min(m_input.number(), 300);
    }

    void start()
    {
        static const char *const kProperties[] = {
            "7#0#0#3#60", "7#0#0#1#60", "7#0#0#3#1",   "7#0#0#2#8", "1#1#0#3#60", "7#0#0#3#300",
            "7#0#0#3#0",  "7#0#0#0#16", "7#0#0#3#512", "",          "-1#0#0#3#60"};
        const int choice = m_input.byte();
        startCommunication(choice < 11 ? kProperties[choice] : kProperties[0]);
        if ((choice & 0xC0) == 0xC0) {
            intf_initProperty(nullptr, m_input.number(), nullptr, nullptr,
                              m_input.bytes(30).constData(), nullptr);
        }
        intf_setAddrValueChangeCallBack(&Host::changed);
        m_unknownWaits = false;
    }

    void write()
    {
        m_regName = name();
        const QString regName = m_regName;
        const int stationNo = station();
        const int address = m_input.number();
        const int units = count();
        const bool isBit = registerUnitIsBit(regName);
        const int most = driver.cacheOnlyWrites != 0 ? INT_MAX : isBit ? 1024 : 512;
        const int taken = units < 0 || units > most ? 0 : units;
        const QByteArray given = m_input.bytes(8);
        std::unique_ptr<unsigned char[]> outer = std::move(m_values);
        const size_t outerBytes = m_valueBytes;
        m_valueBytes = static_cast<size_t>(taken) * (isBit ? 1 : 2);
        m_values.reset(new unsigned char[m_valueBytes]);
        for (size_t i = 0; i < m_valueBytes; ++i) {
            const int at = static_cast<int>(i);
            m_values[i] = at < given.size() ? static_cast<unsigned char>(given.at(at)) : at & 1;
        }
        noteUnknown(regName);
        require(intf_setData(stationNo, m_regName, address, units, m_values.get(), 1) == 1,
                "a write gives 1");
        m_values = std::move(outer);
        m_valueBytes = outerBytes;
    }

    static bool registerUnitIsBit(const QString &regName)
    {
        for (int i = 0; i < kRowCount; ++i) {
            if (i == kSpareRow || REG_LIST[i] == regName) {
                return ADDRESS_RANGE_PRO[i][kUnitWidthColumn] == QLatin1String("1");
            }
        }
        return true;
    }

    void noteUnknown(const QString &regName)
    {
        m_unknownWaits = m_unknownWaits || driver.regNames.indexOf(regName) < 0;
    }

    KEY_ADDRESS key()
    {
        KEY_ADDRESS key = KEY_ADDRESS();
        key.regName = name();
        key.stationNo = station();
        key.startAddr = m_input.number();
        key.count = count();
        key.bitFlag = m_input.below(3) == 1 ? -1 : 0;
        return key;
    }

    void readOnce()
    {
        KEY_ADDRESS wanted = key();
        noteUnknown(wanted.regName);
        require(intf_addConditionRead(wanted, m_input.byte()) == 1, "a condition read gives 1");
    }

    void show()
    {
        QString regName = name();
        const int stationNo = station();
        const int address = m_input.number();
        const int units = count();
        // The unit of an unlisted name is a bit.
        const int most = registerUnitIsBit(regName) ? 1024 : 512;
        const size_t bytes = static_cast<size_t>(std::max(0, std::min(units, most)));
        const size_t size = most == 512 ? 2 * bytes : bytes;
        const std::unique_ptr<unsigned char[]> values(new unsigned char[size]);
        require(intf_getData(stationNo, regName, address, units, values.get()) == 1,
                "reading gives 1");
        for (size_t i = 0; most == 1024 && i < size && driver.regNames.contains(regName) &&
                           regName.contains(QLatin1String("_bit"));
             ++i) {
            require(values[i] <= 1, "a bit is 0 or 1");
        }
        require(intf_getData(stationNo, regName, address, units, nullptr) == 1, "reading gives 1");
    }

    void checkAddress()
    {
        const QString regName = name();
        const QString text = QString::fromLatin1(m_input.bytes(12));
        int address = m_input.number();
        const int code =
            intf_checkAddr(regName, text, address, m_input.number(), count(), m_input.byte());
        require(code >= kAddressValid && code <= kAddressReadOnly, "a documented code");
        const int other = intf_checkAddrValidity(regName, text, address, count(), m_input.byte());
        require(other >= kAddressValid && other <= kAddressMalformed, "a documented code");
    }

    void copySeries()
    {
        QString regName = name();
        QVector<QString> texts;
        QVector<int> numbers;
        const int units = std::min(count(), 1000);
        const int result =
            intf_multiCopy(regName, m_input.number(), units, m_input.number(), texts, numbers);
        require(result >= 0 && result <= 2 && texts.size() == numbers.size(), "a whole series");
    }

    void describe()
    {
        QString text;
        intf_getDriverParameter(text);
        intf_getDriverPropertyPage(text);
        intf_SetDriverPropertyPage(text);
        QList<QString> texts;
        intf_getRegListByType(m_input.number(), texts);
        intf_getRegDiscription(name(), texts);
        int type = 1;
        intf_getProtocolType(&type);
        require(intf_getVersion().count(QLatin1Char('.')) == 3, "a version");
    }

    void monitor()
    {
        QList<KEY_ADDRESS> keys;
        for (int left = m_input.below(9); left > 0; --left) {
            keys.append(key());
            noteUnknown(keys.last().regName);
        }
        const int blocks = intf_addrMerge(keys);
        require(blocks >= 0 && blocks <= keys.size(), "merging makes no more of the keys");
    }

    /** Words in the order of their addresses, without gaps; also bits, which take a word each. */
    void setRecipe()
    {
        QVector<_RCP_VAR_PRO> items;
        int offset = m_input.below(16);
        int stationNo = 0;
        int row = 0;
        int address = 0;
        for (int left = m_input.below(8); left > 0 && offset < kRecipeWords; --left) {
            const int step = m_input.byte();
            if ((step & 0xC0) == 0xC0) {
                row += step & 7;
                address = m_input.number() & 0x3FFF;
            } else {
                address += step & 7;
            }
            stationNo += row / kRegisterCount;
            row %= kRegisterCount;
            _RCP_VAR_PRO item = _RCP_VAR_PRO();
            item.deviceNo = (step & 0x3F) == 0x3F ? 9 : driver.deviceNo;
            item.stationNo = stationNo;
            item.regName = REG_LIST[row];
            item.startAddr = address;
            item.count = std::min(m_input.byte() * 2, kRecipeWords - offset);
            item.bufOffset = offset;
            offset += item.count;
            address += item.count;
            items.append(item);
        }
        const int kept = intf_setRcpAddress(items);
        require(kept >= 0 && kept <= items.size(), "no item is made up");
    }

    QByteArray answerTo(const FRAME_PRO &frame)
    {
        const int choice = m_input.byte();
        switch (choice & 7) {
        case 0: // silence
            return QByteArray();
        case 1: // nonsense
            return m_input.bytes(40);
        case 2: { // nonsense within a right frame
            const int room = frame.recvLen - 9;
            return room < 0 || room > 2000
                       ? m_input.bytes(40)
                       : acknowledged(frame, m_input.bytes(40).leftJustified(room, '7', true));
        }
        case 3: // the answer to the frame before
            return m_answerBefore;
        default:
            return m_plcs.answer(requestOf(frame));
        }
    }

    void askOnly()
    {
        FRAME_PRO frame = FRAME_PRO();
        const int result = intf_getSendFrame(frame);
        require(result == 0 || result == 1, "a frame or none");
        requireRequest(frame, true);
        m_frame = frame;
    }

    void answerOnly()
    {
        m_reply = answerTo(m_frame);
        handOver();
    }

    void exchange()
    {
        for (int left = 1 + (m_input.byte() & 15); left > 0; --left) {
            askOnly();
            m_reply = answerTo(m_frame);
            handOver();
        }
    }

    int handOver()
    {
        m_answerBefore = m_reply;
        const bool wasOut = !driver.frames.isEmpty();
        QString description;
        const int result = intf_dealRcvFrame(m_reply, description);
        require(wasOut
                    ? result == kAnswerGood || result == kAnswerGivenUp || result == kAnswerResend
                    : result == kAnswerUnexpected,
                "a documented result");
        return result;
    }

    /** With right PLCs and a panel that waits every job comes to its end. */
    void drain()
    {
        const int jobs =
            static_cast<int>(driver.pendingWrites.size() + driver.conditionReads.size());
        const int retries = std::max(1, driver.maxRetries);
        if (jobs > 40 || retries > 3 || m_unknownWaits || driver.rcpBlocks.size() > 20) {
            return;
        }
        intf_setAddrValueChangeCallBack(nullptr);
        if (driver.rcpBlocks.isEmpty() || driver.rcpIndex >= driver.rcpBlocks.size()) {
            setRecipeRequest(kRecipeReadByte, false); // never ends without blocks
            setRecipeRequest(kRecipeWriteByte, false);
        }
        // Each job has two frames at most and waits for a cyclic read, or for nothing, at most
        // once.
        const int recipes = 2 * static_cast<int>(driver.rcpBlocks.size());
        int turns = 3 * retries * (2 * (jobs + recipes) + 4);
        while (turns > 0 && jobsWait()) {
            --turns;
            askOnly();
            m_reply = m_plcs.answer(requestOf(m_frame));
            handOver();
        }
        require(turns > 0 || !jobsWait(), "every job ends");
    }

    static bool jobsWait()
    {
        return !driver.pendingWrites.isEmpty() || !driver.conditionReads.isEmpty();
    }

    Input m_input;
    Plcs m_plcs;
    int m_callsLeft = kMostCalls;
    int m_depth = 0;
    bool m_unknownWaits = false; ///< a request without a frame holds up those behind it
    FRAME_PRO m_frame = FRAME_PRO();
    QByteArray m_answerBefore;

    // Arguments of the call that runs, which the host may change from within its callback.
    QByteArray m_reply;
    QString m_regName;
    std::unique_ptr<unsigned char[]> m_values;
    size_t m_valueBytes = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Host(data, size).run();
    return 0;
}
