#pragma once

#include <ls_master_k_cnet/ls_master_k_cnet.h>

#include <QByteArray>
#include <QMutex>

namespace bench {

/**
 * A host of the driver: what it shares with the driver, and a callback that does no more than
 * count. The driver keeps one state for the process, so there is one host at a time.
 */
class Host
{
public:
    /** The panel's number for this line. */
    static constexpr int kDevice = 1;
    /** Words of a block read. */
    static constexpr int kBlockWords = 60;
    /** Words of the recipe buffer. */
    static constexpr int kRecipeWords = 4096;

    /** Starts communication anew; blocks have kBlockWords words. */
    Host();
    ~Host();
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    /** Callbacks since the start of the program. */
    static qint64 callbacks();

    /** Byte of the shared block that is 1 while a recipe transfer is asked for. */
    unsigned char &recipeWriteRequest();
    unsigned char &recipeReadRequest();

    /** Asks the driver for its next frame. @return false where it has none */
    bool ask() { return intf_getSendFrame(m_frame) != 0; }

    /** What ask() was given. */
    const FRAME_PRO &frame() const { return m_frame; }
    bool isWrite() const { return m_frame.sendBuf[3] == 'w'; }

    /** Hands an answer over; one that the driver does not take ends the program. */
    void answer(QByteArray &bytes)
    {
        if (intf_dealRcvFrame(bytes, m_requestText) != kAnswerGood) {
            refuse(bytes);
        }
    }

private:
    [[noreturn]] void refuse(const QByteArray &bytes) const;

    QByteArray m_block;
    QByteArray m_recipe;
    QMutex m_blockLock;
    FRAME_PRO m_frame{};
    QString m_requestText;
};

/** A range that the panel shows. Registers whose name ends in "_bit" are marked as such. */
KEY_ADDRESS key(int station, const char *registerName, int address, int count);

} // namespace bench
