#include "serviceForProtocol/exchange/known_block.h"

#include <cstring>

#include "ls_master_k_cnet/cnet_frame.h"
#include "serviceForProtocol/cache/data_area.h"
#include "serviceForProtocol/exchange/error_info.h"
#include "shared/request_copy.h"
#include "shared/wrap.h"

enum { kCacheLine = 64 };

static bool isKnown(int block)
{
    return block >= 0 && block < driver.blockMemories.blocks.size();
}

// The reads cycle through the blocks, and many blocks do not fit the processor's cache: prefetch
// what the next ones need.
static void fetchNextBlocks(int block)
{
    const int blocks = static_cast<int>(driver.blockMemories.blocks.size());
    const BlockMemory *const memories = driver.blockMemories.blocks.constData();
    if (block + 2 < blocks) {
        __builtin_prefetch(memories + block + 2);
        __builtin_prefetch(&memories[block + 2].description);
    }
    if (block + 1 < blocks && memories[block + 1].hasAnswer) {
        const BlockMemory &next = memories[block + 1];
        const char *const answer = driver.blockMemories.answers.constData() + next.answerPlace;
        for (int i = 0; i < next.answerLength; i += kCacheLine) {
            __builtin_prefetch(answer + i);
        }
        __builtin_prefetch(next.description.constData());
        for (int i = 0; i < kUnitsAhead; ++i) {
            fetchAhead(driver.dataArea, wrapAdd(next.firstRecord, i));
        }
    }
}

bool repeatRequest()
{
    const int block = driver.nextCyclicRead;
    if (!isKnown(block) || driver.blockMemories.blocks.at(block).requestLength == 0) {
        return false;
    }
    const BlockMemory &memory = driver.blockMemories.blocks.at(block);
    VARIABLE &var = driver.curVar;
    var.opKind = kJobCyclicRead;
    copyPlace(var, memory);
    FRAME_PRO &frame = driver.frames.appendRead(var);
    std::memcpy(frame.sendBuf, memory.request, static_cast<size_t>(memory.requestLength));
    frame.sendLen = memory.requestLength;
    frame.recvLen = memory.answerLength;
    frame.dataPos = kReadAnswerDataPos;
    frame.unitCount = memory.count;
    driver.blockInFlight = block;
    fetchNextBlocks(block);
    return true;
}

void keepRequest()
{
    const int block = driver.nextCyclicRead;
    if (!isKnown(block) || driver.frames.isEmpty()) {
        return;
    }
    const FRAME_PRO &frame = driver.frames.at(0);
    BlockMemory &memory = driver.blockMemories.blocks[block];
    if (frame.sendLen > BlockMemory::kLongestRequest || frame.recvLen != memory.answerLength) {
        return;
    }
    std::memcpy(memory.request, frame.sendBuf, static_cast<size_t>(frame.sendLen));
    memory.requestLength = frame.sendLen;
    driver.blockInFlight = block;
}

static const BlockMemory *memoryInFlight()
{
    return isKnown(driver.blockInFlight) ? &driver.blockMemories.blocks.at(driver.blockInFlight)
                                         : nullptr;
}

static bool isStillInArea(const BlockMemory &memory)
{
    return memory.hasAnswer && memory.valuesStamp == driver.valuesStamp;
}

static const char *lastAnswerOf(const BlockMemory &memory)
{
    return driver.blockMemories.answers.constData() + memory.answerPlace;
}

bool isLastAnswer(const QByteArray &answer)
{
    const BlockMemory *const memory = memoryInFlight();
    return memory != nullptr && isStillInArea(*memory) && answer.size() == memory->answerLength &&
           std::memcmp(answer.constData(), lastAnswerOf(*memory),
                       static_cast<size_t>(memory->answerLength)) == 0;
}

void describeRequest(const QByteArray &answer, QString &text)
{
    const BlockMemory *const memory = memoryInFlight();
    if (memory == nullptr || answer.size() != memory->answerLength) {
        text = getErrorInfo(answer);
        return;
    }
    if (memory->description.isNull()) {
        driver.blockMemories.blocks[driver.blockInFlight].description = getErrorInfo(answer);
    }
    shareText(text, memory->description);
}

KeptAnswer::KeptAnswer(const QByteArray &answer)
    : m_answer(answer)
    , m_block(driver.blockInFlight)
    , m_serial(driver.answerSerial)
{
    if (!isKnown(m_block) ||
        answer.size() != driver.blockMemories.blocks.at(m_block).answerLength) {
        return;
    }
    BlockMemory &memory = driver.blockMemories.blocks[m_block];
    m_standsAlone = memory.standsAlone;
    m_firstRecord = memory.firstRecord;
    if (isStillInArea(memory)) {
        m_lastAnswers = driver.blockMemories.answers;
        m_lastCharacters = lastAnswerOf(memory);
    }
    memory.hasAnswer = false;
}

void KeptAnswer::keep(int firstRecord)
{
    m_lastAnswers.clear(); // or the next line would copy them all
    if (!m_standsAlone || !isUndisturbed()) {
        return;
    }
    BlockMemory &memory = driver.blockMemories.blocks[m_block];
    std::memcpy(driver.blockMemories.answers.data() + memory.answerPlace, m_answer.constData(),
                static_cast<size_t>(memory.answerLength));
    memory.hasAnswer = true;
    memory.firstRecord = firstRecord;
    memory.valuesStamp = driver.valuesStamp;
}
