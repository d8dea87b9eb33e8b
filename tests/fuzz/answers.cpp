// Any bytes as the answer to any request. The first bytes of an input choose the properties and the
// job; then come the answers, one behind the other. Where no request is left, the next job begins.
#include "fuzz/driver_rules.h"

#include <QList>
#include <QVector>

namespace {

using namespace fuzz;

const int kDevice = 7;
const int kOneWordWrite = 25;   ///< bytes of a block write of one word
const int kPatchedDataPos = 18; ///< of a block write that waited for the words it changes

enum Job {
    kHandshake,
    kWordWrite,
    kBitWrite,  ///< one bit of a relay, or of a data register: read, modify, write
    kBitsWrite, ///< several bits: read, modify, write
    kContactWrite,
    kConditionRead,
    kCyclicRead,
    kRecipeRead,
    kRecipeWrite,
    kEveryKind, ///< all of them wait at once
    kJobKinds
};

struct Place
{
    int station;
    QString regName;
    int address;
};

const char *const kWordNames[] = {"D_W", "C_W", "T_W", "K_W", "P_W", "F_W", "L_W", "M_W"};
const char *const kBitNames[] = {"P_bit", "K_bit", "M_bit", "L_bit",
                                 "F_bit", "D_bit", "D_bit", "M_bit"};
const char *const kContactNames[] = {"TX", "CX", "TX", "CX", "TX", "CX", "TX", "CX"};

/** A byte for the register and the station, and a number for the address. */
Place placeOf(Input &input, const char *const (&names)[8])
{
    const int choice = input.byte();
    return {choice >> 3, QString::fromLatin1(names[choice & 7]), input.number()};
}

void start(Input &input)
{
    static const char *const kProperties[] = {
        "7#0#0#3#60",  "7#0#0#1#60",        "7#0#0#3#1",   "7#0#0#2#8",
        "7#0#0#5#58",  "7#0#0#3#255",       "7#0#0#3#300", "7#0#0#0#60",
        "7#1#0#3#60",  "7#0#0#-1#2",        "7#0#0#3#0",   "7#0#0#100#60",
        "7#0#0#3#512", "7#0#0#1#268435456", "7#0#0#3#16",  "7#0#0#2#60"};
    startCommunication(kProperties[input.byte() & 15]);
}

void queueWrite(Input &input, const char *const (&names)[8], int count)
{
    Place place = placeOf(input, names);
    QByteArray data = input.bytes();
    data.append(QByteArray(kValueAreaSize - static_cast<int>(data.size()), '\x01'));
    intf_setData(place.station, place.regName, place.address, count,
                 reinterpret_cast<unsigned char *>(data.data()), 1);
}

KEY_ADDRESS keyOf(Input &input, const char *const (&names)[8], int mostUnits)
{
    const Place place = placeOf(input, names);
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = place.station;
    key.regName = place.regName;
    key.startAddr = place.address;
    key.count = 1 + input.below(mostUnits);
    return key;
}

void queueConditionRead(Input &input)
{
    const bool contact = (input.byte() & 7) == 7;
    KEY_ADDRESS key = contact ? keyOf(input, kContactNames, 4) : keyOf(input, kWordNames, 150);
    key.bitFlag = contact ? -1 : 0;
    intf_addConditionRead(key, 2);
}

void monitor(Input &input)
{
    QList<KEY_ADDRESS> keys;
    for (int left = 1 + input.below(4); left > 0; --left) {
        switch (input.below(4)) {
        case 0:
            keys.append(keyOf(input, kBitNames, 40));
            break;
        case 1:
            keys.append(keyOf(input, kContactNames, 2));
            break;
        default:
            keys.append(keyOf(input, kWordNames, 64));
            break;
        }
    }
    const int blocks = intf_addrMerge(keys);
    require(blocks >= 0 && blocks <= keys.size(), "merging makes no more of the keys");
}

// Values lie in the order of the addresses and without gaps, as a host must lay them out.
void setRecipe(Input &input)
{
    QVector<_RCP_VAR_PRO> items;
    const int choice = input.byte();
    int address = input.number() % 10000;
    int offset = 0;
    for (int left = 1 + (choice & 3); left > 0; --left) {
        _RCP_VAR_PRO item = _RCP_VAR_PRO();
        item.deviceNo = kDevice;
        item.stationNo = choice >> 5;
        item.regName = QString::fromLatin1(kWordNames[choice >> 2 & 7]);
        item.startAddr = address;
        item.count = 1 + input.below(70);
        item.bufOffset = offset;
        offset += item.count;
        address += item.count + input.below(4);
        items.append(item);
    }
    require(intf_setRcpAddress(items) == items.size(), "every item of this device is kept");
}

void begin(Job job, Input &input)
{
    switch (job) {
    case kHandshake:
        driver.needHandshake = 1;
        break;
    case kWordWrite:
        queueWrite(input, kWordNames, input.between(1, kValueAreaSize / 2));
        break;
    case kBitWrite:
        queueWrite(input, kBitNames, 1);
        break;
    case kBitsWrite:
        queueWrite(input, kBitNames, input.below(80));
        break;
    case kContactWrite:
        queueWrite(input, kContactNames, 1 + input.below(4));
        break;
    case kConditionRead:
        queueConditionRead(input);
        break;
    case kCyclicRead:
        monitor(input);
        break;
    case kRecipeRead:
    case kRecipeWrite:
        setRecipe(input);
        setRecipeRequest(job == kRecipeRead ? kRecipeReadByte : kRecipeWriteByte, true);
        break;
    case kEveryKind:
    case kJobKinds:
        for (int other = kRecipeWrite; other > kHandshake; --other) {
            begin(static_cast<Job>(other), input);
        }
        break;
    }
}

/** The data part of a good answer in which only the data are the input's. */
QByteArray hexData(Input &input, int characters)
{
    const QByteArray head =
        "01" + QByteArray::number(characters / 2 & 255, 16).rightJustified(2, '0');
    const QByteArray data = input.bytes().toHex().toUpper();
    return (head + data).leftJustified(characters + head.size(), '0', true);
}

QByteArray answerTo(const FRAME_PRO &frame, Input &input)
{
    const int overhead = 9; // ACK st(2) command(3) ETX BCC(2)
    const int room = frame.recvLen - overhead;
    const int kind = room < 0 || room > 4096 ? 0 : input.byte() & 7;
    switch (kind) {
    case 1: // anything within a frame that is right
        return acknowledged(frame, input.bytes().leftJustified(room, '0', true));
    case 2: // what a PLC would say
    case 3:
        return acknowledged(frame, room < 4 ? QByteArray() : hexData(input, room - 4));
    case 4: // silence
        return QByteArray();
    case 5: // right but for its length
        return acknowledged(frame, input.bytes());
    case 6: { // right but for one byte
        QByteArray answer = acknowledged(frame, QByteArray(room, '0'));
        const int place = input.between(0, static_cast<int>(answer.size()) - 1);
        answer[place] = static_cast<char>(answer.at(place) ^ input.byte());
        return answer;
    }
    default:
        return input.bytes();
    }
}

/** After a good answer to a cyclic or condition read the host gets what the PLC said. */
void requireValues(const FRAME_PRO &frame, const QByteArray &answer)
{
    unsigned char values[kValueAreaSize];
    QString regName = frame.var.regName;
    const int words = std::min(frame.unitCount, kValueAreaSize / 2);
    intf_getData(frame.var.stationNo, regName, frame.var.startAddr, words, values);
    for (int i = 0; i < words; ++i) {
        const int value = values[2 * i] + values[2 * i + 1] * 256;
        require(value == answer.mid(10 + 4 * i, 4).toInt(nullptr, 16), "the value read is shown");
    }
}

/** Hands answers over and knows what must come of each. */
class Exchange
{
public:
    explicit Exchange(bool readsOnly)
        : m_readsOnly(readsOnly)
    {}

    void answer(const FRAME_PRO &frame, Input &input)
    {
        // Bits that reach into a second word are not written right, and no PLC takes them.
        const bool patched = frame.dataPos == kPatchedDataPos;
        requireRequest(frame, patched && (m_patchedByAnything || frame.sendLen > kOneWordWrite));
        const QByteArray given = answerTo(frame, input);
        const bool hexadecimal =
            given.mid(10, given.size() - 13).toUpper() ==
            QByteArray::fromHex(given.mid(10, given.size() - 13)).toHex().toUpper();
        QByteArray handedOver = given;
        QString description;
        const int result = intf_dealRcvFrame(handedOver, description);
        requireResult(frame, given, result);
        require(frame.sendLen == 0 || !description.isEmpty(), "a request is described");
        requireBoundedLists();
        if (result == kAnswerGood && frame.unitCount != 0) {
            m_patchedByAnything = !hexadecimal;
        }
        if (result == kAnswerGood && hexadecimal && m_readsOnly &&
            frame.var.regName.endsWith(QLatin1String("_W"))) {
            requireValues(frame, given);
        }
    }

private:
    void requireResult(const FRAME_PRO &frame, const QByteArray &given, int result)
    {
        if (isGoodAnswer(frame, given)) {
            require(result == kAnswerGood, "a good answer is taken");
            m_failures = 0;
            return;
        }
        ++m_failures;
        const bool last = m_failures >= driver.maxRetries;
        require(result == (last ? kAnswerGivenUp : kAnswerResend),
                "a bad answer is given up at the last retry");
        if (last) {
            m_failures = 0;
            return;
        }
        FRAME_PRO again = FRAME_PRO();
        require(intf_getSendFrame(again) == 1, "a frame in flight goes out again");
        require(requestOf(again) == requestOf(frame), "the same frame goes out again");
    }

    bool m_readsOnly;
    bool m_patchedByAnything = false;
    int m_failures = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    renewDriver();
    intf_setAddrValueChangeCallBack(&ignoreChange);
    start(input);
    const Job job = static_cast<Job>(input.below(kJobKinds));
    Exchange exchange(job == kConditionRead || job == kCyclicRead);
    begin(job, input);
    while (!input.atEnd()) {
        FRAME_PRO frame = FRAME_PRO();
        if (intf_getSendFrame(frame) == 1) {
            exchange.answer(frame, input);
            continue;
        }
        QByteArray unexpected = input.bytes(3);
        QString description;
        require(intf_dealRcvFrame(unexpected, description) == kAnswerUnexpected,
                "no frame, no answer");
        require(description.isEmpty(), "no frame, no description");
        begin(job, input);
    }
    return 0;
}
