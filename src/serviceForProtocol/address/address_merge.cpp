#include "serviceForProtocol/address/address_merge.h"

#include <algorithm>

#include <QtCore/QStringList>

#include "ls_master_k_cnet/merge_rule.h"
#include "serviceForProtocol/address/address_number.h"
#include "serviceForProtocol/address/weight_order.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

static const char *wordSuffix(int wordBits)
{
    switch (wordBits) {
    case 8:
        return "_B";
    case 16:
        return "_W";
    case 32:
        return "_D";
    default:
        return "";
    }
}

namespace {

/// How the keys of one register are converted to the words that are read for them.
struct WordForm
{
    QString regName; ///< name of the word register
    RegisterWidths widths;
    bool fromBits;
};

} // namespace

static WordForm wordForm(const QString &regName, const RegisterWidths &widths)
{
    WordForm form = {regName, widths, false};
    const QStringList parts = regName.split(QLatin1Char('_'));
    if (parts.size() == 2) {
        form.fromBits = parts.at(1) == QLatin1String("bit") && widths.wordBits > 0;
        form.regName = parts.at(0) + QLatin1String(wordSuffix(widths.wordBits));
    }
    return form;
}

// From bits to the words that contain them. The rounding uses the low four bits of the count,
// whatever the word width is. Kept for compatibility; do not fix.
static void bitsToWords(int &startAddr, int &count, int wordBits)
{
    const int bits = wrapAdd(count, startAddr % wordBits);
    count = bits / wordBits + ((bits & 15) != 0 ? 1 : 0);
    startAddr /= wordBits;
}

template <class Key>
static void convertToWords(Key &key, const WordForm &form)
{
    key.regName = form.regName;
    if (form.fromBits) {
        bitsToWords(key.startAddr, key.count, form.widths.wordBits);
    }
    if (form.widths.unitBits > 1) {
        key.count = truncToInt(key.count * (16.0 / form.widths.unitBits));
    }
}

void convertReadKey(KEY_ADDRESS &key, const RegisterWidths &widths)
{
    convertToWords(key, wordForm(key.regName, widths));
}

// Divides by the word width, while reads divide by the unit width; the difference is intended.
template <class Key>
static void convertToRecipeWords(Key &key, const RegisterWidths &widths)
{
    if (widths.unitBits != 1 && widths.wordBits > 0) {
        key.count = truncToInt(key.count * (16.0 / widths.wordBits));
    }
}

void convertRecipeKey(KEY_ADDRESS &key, const RegisterWidths &widths)
{
    convertToRecipeWords(key, widths);
}

static QVector<MergeKey> smallKeys(const QList<KEY_ADDRESS> &keys)
{
    QVector<MergeKey> small;
    small.reserve(static_cast<int>(keys.size()));
    for (int i = 0; i < keys.size(); ++i) {
        small.append(mergeKeyOf(keys.at(i), i));
    }
    return small;
}

// Keys of one register are usually adjacent, and all of them get the same name.
static void convertReadKeys(QVector<MergeKey> &keys)
{
    QString regName;
    WordForm form = WordForm();
    bool isKnown = false;
    for (MergeKey &key : keys) {
        if (!isKnown || key.regName != regName) {
            regName = key.regName;
            form = wordForm(regName, registerWidths(regName));
            isKnown = true;
        }
        convertToWords(key, form);
    }
}

static void convertRecipeKeys(QVector<MergeKey> &keys)
{
    for (MergeKey &key : keys) {
        if (getIndexFromRegName(key.regName) >= 0) {
            convertToRecipeWords(key, registerWidths(key.regName));
        }
    }
}

// Extends `block` to cover `next` if possible. Returns whether it did.
static bool joinBlock(MergeKey &block, const MergeKey &next, int decisionMode)
{
    if (judgeAddrMerge(block, next, decisionMode) != 0) {
        return false;
    }
    const int span = wrapSub(wrapAdd(next.startAddr, next.count), block.startAddr);
    if (span > driver.maxBlockWords) {
        return false;
    }
    block.count = std::max(block.count, span);
    return true;
}

// @param blockStarts  receives the index of the first key of every block; may be null
static QVector<MergeKey> joinedBlocks(const QVector<MergeKey> &keys, int decisionMode,
                                      QList<int> *blockStarts)
{
    QVector<MergeKey> blocks;
    for (int i = 0; i < keys.size(); ++i) {
        if (!blocks.isEmpty() && joinBlock(blocks.last(), keys.at(i), decisionMode)) {
            continue;
        }
        blocks.append(keys.at(i));
        if (blockStarts != nullptr) {
            blockStarts->append(i);
        }
    }
    return blocks;
}

QVector<MergeKey> mergedReads(const QList<KEY_ADDRESS> &keys)
{
    QVector<MergeKey> sorted = smallKeys(keys);
    convertReadKeys(sorted);
    sortByWeight(sorted);
    return joinedBlocks(joinedBlocks(sorted, 0, nullptr), 1, nullptr);
}

static QVector<MergeKey> mergedRecipe(const QList<KEY_ADDRESS> &keys)
{
    QVector<MergeKey> items = smallKeys(keys);
    convertRecipeKeys(items);
    return joinedBlocks(items, 0, &driver.rcpBlockStarts);
}

void addrMerge(QList<KEY_ADDRESS> &keys, int mode)
{
    const QVector<MergeKey> blocks = mode == kMergeRecipe ? mergedRecipe(keys) : mergedReads(keys);
    QList<KEY_ADDRESS> merged;
    for (const MergeKey &block : blocks) {
        KEY_ADDRESS key = keys.at(block.source);
        key.regName = block.regName;
        key.startAddr = block.startAddr;
        key.count = block.count;
        merged.append(key);
    }
    keys = merged;
}
