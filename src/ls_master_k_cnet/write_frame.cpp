#include "ls_master_k_cnet/write_frame.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/frame_writer.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/read_frame.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/bytes.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

static_assert(static_cast<int>(kWaitsForWords) == static_cast<int>(kBlockRequestDataPos),
              "the mark is the position of the first placeholder");

static FRAME_PRO &appendWriteFrame(const VARIABLE &item)
{
    FRAME_PRO &frame = driver.frames.append(item);
    frame.recvLen = kWriteAnswerLength;
    return frame;
}

// The part of a block write before its data: ENQ st(2) "wSB" "08" "%DW" address(5) words(2).
static FrameWriter openBlockWrite(FRAME_PRO &frame, const VARIABLE &item, const QString &device,
                                  int startWord, int words)
{
    FrameWriter writer(frame, item.stationNo, "wSB");
    writer.text("08");
    writer.device(device);
    writer.decimal(startWord, 5);
    writer.hexByte(words);
    return writer;
}

static void appendBlockWrite(const VARIABLE &item, const QString &device)
{
    FrameWriter writer =
        openBlockWrite(appendWriteFrame(item), item, device, item.startAddr, item.count);
    for (int i = 0; i < item.count && i < kValueAreaSize / 2; ++i) {
        writer.hexByte(item.data[2 * i + 1]);
        writer.hexByte(item.data[2 * i]);
    }
    writer.finish();
}

// ENQ st(2) "wSS" "01" "09" "%MX" address(6) value(2) EOT BCC(2): 24 bytes. The address of a relay
// bit is a word number and a hexadecimal bit number, that of a contact a plain number.
static void appendBitWrite(const VARIABLE &item, const QString &device)
{
    FrameWriter writer(appendWriteFrame(item), item.stationNo, "wSS");
    writer.text("0109");
    writer.device(device);
    if (isBitName(item.regName)) {
        const unsigned char bit[] = {hexCharacter(item.startAddr % 16), 0};
        writer.decimal(item.startAddr / 16, 5);
        writer.text(reinterpret_cast<const char *>(bit));
    } else {
        writer.decimal(item.startAddr, 6);
    }
    writer.hexByte(item.data[0] != 0 ? 1 : 0);
    writer.finish();
}

// Adds the remainder of the bit count instead of the first bit's position in its word, so bits that
// extend into one more word are not covered. Kept for compatibility; do not fix.
static int coveringWords(int bits)
{
    const int padded = wrapAdd(bits, bits % 16);
    return padded / 16 + (padded % 16 != 0 ? 1 : 0);
}

static void appendReadModifyWrite(const VARIABLE &item)
{
    VARIABLE words = item;
    words.regName = registerLetter(item.regName) + QLatin1String("_W");
    words.startAddr = item.startAddr / 16;
    words.count = coveringWords(item.count);

    QList<VARIABLE> readHalf;
    readHalf.append(words);
    getReadFrame(readHalf);      // every letter with bits has words as well
    driver.frames[0].var = item; // tells the decoder of the answer which bits to change

    const QString &device = ADDRESS_W_COMMAND[getIndexFromReg(words.regName)];
    FRAME_PRO &frame = appendWriteFrame(item);
    FrameWriter writer = openBlockWrite(frame, item, device, words.startAddr, words.count);
    for (int i = 0; i < words.count && frame.sendLen < kSendBufSize; ++i) {
        writer.text("0000");
    }
    writer.finish();
    frame.dataPos = kWaitsForWords;
}

void getWriteFrame(const VARIABLE &item)
{
    const int index = getIndexFromReg(item.regName);
    if (index < 0) {
        return;
    }
    const QString &device = ADDRESS_W_COMMAND[index];
    const bool isContact = ADDRESS_RANGE_PRO[index][kWordWidthColumn] == QLatin1String("1");
    const bool hasBitDevice = device.endsWith(QLatin1Char('X')); // all but data registers
    if (isContact || (item.count == 1 && hasBitDevice)) {
        appendBitWrite(item, device);
    } else if (isBitName(item.regName)) {
        appendReadModifyWrite(item);
    } else {
        appendBlockWrite(item, device);
    }
}
