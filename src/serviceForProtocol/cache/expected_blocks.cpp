#include "serviceForProtocol/cache/expected_blocks.h"

#include <climits>

#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/register_row.h"
#include "serviceForProtocol/address/block_overlap.h"
#include "shared/protocol.h"
#include "shared/request_copy.h"
#include "shared/wrap.h"

/// The most words that the two digits of a request can ask for, and the answer with them. A block
/// of more is read all the same, and never known.
enum { kMostWords = 255, kLongestAnswer = kReadAnswerOverhead + kMostWords * kWordCharacters };

static BlockMemory newMemory(const MergeKey &block, bool isContact, bool isOnItsOwn, int place)
{
    BlockMemory memory = BlockMemory();
    copyPlace(memory, block);
    memory.answerLength = isContact
                              ? static_cast<int>(kContactAnswerLength)
                              : wrapAdd(kReadAnswerOverhead, wrapMul(kWordCharacters, block.count));
    memory.answerPlace = place;
    memory.standsAlone =
        isOnItsOwn && memory.count <= kMostWords && place <= INT_MAX - kLongestAnswer;
    return memory;
}

void expectBlocks(const QVector<MergeKey> &blocks)
{
    forgetBlocks();
    const QVector<bool> onItsOwn = blocksOnTheirOwn(blocks);
    QVector<BlockMemory> &memories = driver.blockMemories.blocks;
    memories.reserve(blocks.size());
    bool isContact = false;
    int place = 0;
    for (int i = 0; i < blocks.size(); ++i) {
        if (i == 0 || blocks.at(i).regName != blocks.at(i - 1).regName) {
            isContact = registerWidths(blocks.at(i).regName).wordBits == 1;
        }
        memories.append(newMemory(blocks.at(i), isContact, onItsOwn.at(i), place));
        place += memories.at(i).standsAlone ? memories.at(i).answerLength : 0;
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
