#include "model/driver_side.h"

#include <algorithm>

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "model/register_name.h"
#include "shared/protocol.h"

namespace model {

namespace {

constexpr unsigned char kUntouched = 0xA5;

DriverSide *&listening()
{
    static DriverSide *side = nullptr;
    return side;
}

KEY_ADDRESS keyOf(const Range &range)
{
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = range.station;
    key.regName = QString::fromStdString(range.name);
    key.startAddr = range.start;
    key.count = range.count;
    return key;
}

Bytes look(const Range &range)
{
    Bytes bytes(kValueAreaSize, kUntouched);
    QString name = QString::fromStdString(range.name);
    intf_getData(range.station, name, range.start, range.count, bytes.data());
    return bytes;
}

/**
 * Back to how the library is loaded. Start of communication empties most of it, but a sequence must
 * not see what a faulty start left behind from the one before.
 */
void forgetEverything()
{
    driver.cyclicReads.clear();
    driver.pendingWrites.clear();
    driver.conditionReads.clear();
    driver.dataArea.clear();
    driver.frames.clear();
    driver.sendState = 0;
    driver.tryCount = 0;
    driver.needHandshake = 0;
    driver.failCount = 0;
    driver.lastFailed = 0;
    driver.rcpItems.clear();
    driver.rcpBlocks.clear();
    driver.rcpBlockStarts.clear();
    driver.rcpIndex = 0;
    driver.lastVar = VARIABLE();
    driver.curVar = VARIABLE();
    int status = 0;
    intf_initProperty(nullptr, 0, nullptr, &status, "0#0#0#0#0", nullptr);
}

} // namespace

DriverSide::DriverSide(HostThreads threads)
    : m_block(kBlockBytes)
    , m_recipe(kRecipeBytes)
{
    if (threads == HostThreads::Several) {
        for (auto &thread : m_threads) {
            thread = std::make_unique<OtherThread>();
        }
    }
    forgetEverything();
    listening() = this;
    intf_setAddrValueChangeCallBack(hear);
}

Sizes DriverSide::sizes()
{
    const auto size = [](const auto &list) { return static_cast<std::size_t>(list.size()); };
    return {size(driver.pendingWrites), size(driver.conditionReads), size(driver.cyclicReads),
            size(driver.dataArea)};
}

DriverSide::~DriverSide()
{
    intf_setAddrValueChangeCallBack(nullptr);
    listening() = nullptr;
    forgetEverything();
}

int DriverSide::hear(int deviceNo, int stationNo, QString &name, int address)
{
    DriverSide *const side = listening();
    if (side != nullptr) {
        Notice heard = {deviceNo, stationNo, name.toStdString(), address, {}};
        if (side->m_looks && registerPlace(heard.name) >= 0) {
            heard.seen = look({stationNo, heard.name, address, 1});
            heard.seen.resize(isWordRegister(heard.name) ? 2 : 1);
        }
        side->m_heard.push_back(heard);
        side->actWithin();
    }
    name = QString::fromLatin1("changed by the host");
    return 0;
}

void DriverSide::actWithin()
{
    if (m_within.empty()) {
        return;
    }
    const Operation operation = m_within.front();
    m_within.pop_front();
    ++m_depth;
    const Observation seen = actOnOtherThread(operation, std::string());
    --m_depth;
    m_heard.push_back(noticeWithin(seen));
}

Observation DriverSide::apply(const Operation &operation, const std::string &answer)
{
    m_heard.clear();
    Observation seen;
    if (operation.within) {
        m_within.push_back(operation);
    } else {
        seen =
            mayBeWithin(operation) ? actOnOtherThread(operation, answer) : act(operation, answer);
    }
    seen.notices = m_heard;
    if (m_lock.tryLock()) {
        m_lock.unlock();
    } else {
        seen.text += " and keeps the host's lock";
    }
    return seen;
}

// Whoever is waited for does the same as the waiting thread would.
Observation DriverSide::actOnOtherThread(const Operation &operation, const std::string &answer)
{
    if (m_depth >= m_threads.size() || !m_threads[m_depth]) {
        return act(operation, answer);
    }
    Observation seen;
    m_threads[m_depth]->call([&] { seen = act(operation, answer); });
    return seen;
}

Observation DriverSide::act(const Operation &operation, const std::string &answer)
{
    Observation seen;
    switch (operation.act) {
    case Act::Start:
        start(operation);
        break;
    case Act::Listen:
        m_looks = operation.value == 2;
        intf_setAddrValueChangeCallBack(operation.value != 0 ? hear : nullptr);
        break;
    case Act::Monitor:
        seen.text = monitor(operation);
        break;
    case Act::Recipe:
        seen.text = setRecipe(operation);
        break;
    case Act::Buffer:
        std::copy_n(recipeBytes(operation.value).begin(), m_recipe.size(), m_recipe.begin());
        break;
    case Act::Ask:
        m_block[kRequestPlace + (operation.text == "read" ? 1U : 0U)] =
            static_cast<unsigned char>(operation.value);
        break;
    case Act::Write:
        write(operation);
        break;
    case Act::ReadOnce:
        readOnce(operation);
        break;
    case Act::Look:
        seen.bytes = look(operation.ranges.front());
        break;
    case Act::Handshake:
        driver.needHandshake = operation.value;
        break;
    case Act::Send:
        seen.text = send(seen.bytes);
        break;
    case Act::Answer:
        seen.text = takeAnswer(answer);
        break;
    }
    return seen;
}

void DriverSide::start(const Operation &operation)
{
    int status = -1;
    intf_initProperty(operation.missing == "block" ? nullptr : m_block.data(), 0,
                      operation.missing == "buffer" ? nullptr : m_recipe.data(), &status,
                      operation.text.c_str(), operation.missing == "lock" ? nullptr : &m_lock);
}

std::string DriverSide::monitor(const Operation &operation)
{
    QList<KEY_ADDRESS> keys;
    for (const Range &range : operation.ranges) {
        keys.append(keyOf(range));
    }
    return textOf(intf_addrMerge(keys), std::string());
}

std::string DriverSide::setRecipe(const Operation &operation)
{
    QVector<_RCP_VAR_PRO> items;
    for (std::size_t i = 0; i < operation.ranges.size(); ++i) {
        const Range &range = operation.ranges[i];
        _RCP_VAR_PRO item = _RCP_VAR_PRO();
        item.deviceNo = operation.devices[i];
        item.stationNo = range.station;
        item.regName = QString::fromStdString(range.name);
        item.startAddr = range.start;
        item.count = range.count;
        item.bufOffset = operation.places[i];
        items.append(item);
    }
    return textOf(intf_setRcpAddress(items), std::string());
}

void DriverSide::write(const Operation &operation)
{
    const Range &range = operation.ranges.front();
    Bytes bytes = bytesOf(range, operation.value);
    bytes.push_back(kUntouched); // a write of nothing has a buffer too
    QString name = QString::fromStdString(range.name);
    intf_setData(range.station, name, range.start, range.count, bytes.data(), operation.tag);
}

void DriverSide::readOnce(const Operation &operation)
{
    KEY_ADDRESS key = keyOf(operation.ranges.front());
    key.bitFlag = operation.value;
    intf_addConditionRead(key, operation.tag);
}

std::string DriverSide::send(Bytes &values)
{
    static FRAME_PRO frame;
    std::fill(std::begin(frame.sendBuf), std::end(frame.sendBuf), kUntouched);
    std::fill(std::begin(frame.var.data), std::end(frame.var.data), kUntouched);
    if (intf_getSendFrame(frame) == 0) {
        return textOf(nullptr);
    }
    SentFrame sent;
    sent.bytes.assign(reinterpret_cast<const char *>(frame.sendBuf),
                      static_cast<std::size_t>(std::clamp(frame.sendLen, 0, int{kSendBufSize})));
    sent.answerSize = frame.recvLen;
    sent.dataPlace = frame.dataPos;
    sent.units = frame.unitCount;
    sent.spare = frame.spare;
    sent.tag = frame.var.opKind;
    sent.range = {frame.var.stationNo, frame.var.regName.toStdString(), frame.var.startAddr,
                  frame.var.count};
    values.assign(std::begin(frame.var.data), std::end(frame.var.data));
    const bool isBlankBehind =
        std::all_of(std::begin(frame.sendBuf) + sent.bytes.size(), std::end(frame.sendBuf),
                    [](unsigned char byte) { return byte == 0; });
    return textOf(&sent) + (isBlankBehind ? "" : " and something behind it");
}

std::string DriverSide::takeAnswer(const std::string &answer)
{
    QByteArray reply(answer.data(), static_cast<int>(answer.size()));
    QString text = QString::fromLatin1("left over");
    const int code = intf_dealRcvFrame(reply, text);
    return textOf(code, text.toStdString());
}

} // namespace model
