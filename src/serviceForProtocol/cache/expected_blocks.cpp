#include "serviceForProtocol/cache/expected_blocks.h"

#include <climits>

#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/address/block_overlap.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"
#include "shared/wrap.h"

/// The most words that the two digits of a request can ask for, and the length of the answer. A
/// longer block is read as well, but its answers are not remembered.
enum { kMostWords = 255, kLongestAnswer = kReadAnswerOverhead + kMostWords * kWordCharacters };

static BlockMemory newMemory(const MergeKey &block, int wordBits, int place)
{
    BlockMemory memory = BlockMemory();
    copyPlace(memory, block);
    memory.answerLength = wordBits == 1
                              ? static_cast<int>(kContactAnswerLength)
                              : wrapAdd(kReadAnswerOverhead, wrapMul(kWordCharacters, block.count));
    memory.answerPlace = place;
    return memory;
}

static bool isAnswerKept(const BlockMemory &memory)
{
    return memory.count <= kMostWords && memory.answerPlace <= INT_MAX - kLongestAnswer;
}

void expectBlocks(const QVector<MergeKey> &blocks)
{
    forgetBlocks();
    const QVector<bool> onItsOwn = blocksOnTheirOwn(blocks);
    QVector<BlockMemory> &memories = driver.blockMemories.blocks;
    memories.reserve(blocks.size());
    int wordBits = 0;
    int place = 0;
    for (int i = 0; i < blocks.size(); ++i) {
        if (i == 0 || blocks.at(i).regName != blocks.at(i - 1).regName) {
            wordBits = registerWidths(blocks.at(i).regName).wordBits;
        }
        memories.append(newMemory(blocks.at(i), wordBits, place));
        BlockMemory &memory = memories[i];
        memory.standsAlone = onItsOwn.at(i) && isAnswerKept(memory);
        place += memory.standsAlone ? memory.answerLength : 0;
    }
    driver.blockMemories.answers.resize(place);
}

void forgetBlocks()
{
    driver.blockMemories = BlockMemories();
    driver.nextCyclicRead = 0;
    driver.blockInFlight = -1;
    ++driver.answerSerial;
}
