#include "ls_master_k_cnet/frame_writer.h"

#include <algorithm>

#include "ls_master_k_cnet/cnet_frame.h"
#include "shared/bytes.h"

FrameWriter::FrameWriter(FRAME_PRO &frame, int stationNo, const char *command)
    : m_frame(frame)
{
    m_frame.sendLen = 0;
    put(kEnq);
    hexByte(stationNo);
    text(command);
}

void FrameWriter::text(const char *characters)
{
    for (; *characters != '\0'; ++characters) {
        put(static_cast<unsigned char>(*characters));
    }
}

void FrameWriter::hexByte(int value)
{
    put(hexCharacter(value >> 4));
    put(hexCharacter(value));
}

void FrameWriter::device(const QString &command)
{
    put('%');
    put(static_cast<unsigned char>(command.at(0).unicode()));
    put(static_cast<unsigned char>(command.at(1).unicode()));
}

void FrameWriter::decimal(int value, int digits)
{
    unsigned char places[kMostDigits];
    int rest = value;
    for (int i = std::min<int>(digits, kMostDigits) - 1; i >= 0; --i) {
        places[i] = static_cast<unsigned char>('0' + rest % 10);
        rest /= 10;
    }
    if (value < 0 || rest != 0 || digits > kMostDigits) {
        longDecimal(value, digits);
        return;
    }
    for (int i = 0; i < digits; ++i) {
        put(places[i]);
    }
}

// Numbers that no device has: negative, or with more digits than fit.
void FrameWriter::longDecimal(int value, int digits)
{
    const QString number = QString::fromLatin1("%1").arg(value, digits, 10, QLatin1Char('0'));
    for (int i = 0; i < digits; ++i) {
        put(static_cast<unsigned char>(number.at(i).unicode()));
    }
}

void FrameWriter::finish()
{
    put(kEot);
    const int check =
        computate_check(m_frame.sendBuf, static_cast<unsigned short>(m_frame.sendLen));
    hexByte(check);
}

void FrameWriter::put(unsigned char character)
{
    if (m_frame.sendLen < kSendBufSize) {
        m_frame.sendBuf[m_frame.sendLen++] = character;
    }
}
