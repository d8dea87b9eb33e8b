#include "ls_master_k_cnet/read_frame.h"

#include "ls_master_k_cnet/address_text.h"
#include "ls_master_k_cnet/cnet_frame.h"
#include "ls_master_k_cnet/frame_writer.h"
#include "ls_master_k_cnet/protocol_tables.h"
#include "ls_master_k_cnet/register_row.h"
#include "shared/protocol.h"
#include "shared/wrap.h"

// ENQ st(2) "rSS" "01" "07" "%TX" address(4) EOT BCC(2): 20 bytes.
static void writeContactRead(FRAME_PRO &frame, const VARIABLE &item, const QString &device)
{
    FrameWriter writer(frame, item.stationNo, "rSS");
    writer.text("0107");
    writer.device(device);
    writer.decimal(item.startAddr, 4);
    writer.finish();
    frame.recvLen = kContactAnswerLength;
}

// ENQ st(2) "rSB" "08" "%DW" address(5) words(2) EOT BCC(2): 21 bytes.
static void writeBlockRead(FRAME_PRO &frame, const VARIABLE &item, const QString &device)
{
    FrameWriter writer(frame, item.stationNo, "rSB");
    writer.text("08");
    writer.device(device);
    writer.decimal(item.startAddr, 5);
    writer.hexByte(item.count);
    writer.finish();
    frame.recvLen = wrapAdd(kReadAnswerOverhead, wrapMul(kWordCharacters, item.count));
}

int getReadFrame(const QList<VARIABLE> &list)
{
    if (list.isEmpty()) {
        return 0;
    }
    const VARIABLE &item = list.at(0);
    const int index = getIndexFromReg(item.regName);
    if (index < 0) {
        return 0;
    }
    FRAME_PRO &frame = driver.frames.append(item);
    if (registerWidths(item.regName).wordBits == 1) {
        writeContactRead(frame, item, ADDRESS_R_COMMAND[index]);
    } else {
        writeBlockRead(frame, item, ADDRESS_R_COMMAND[index]);
    }
    frame.dataPos = kReadAnswerDataPos;
    frame.unitCount = item.count;
    return 1;
}
