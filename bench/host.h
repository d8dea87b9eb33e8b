#pragma once

#include <ls_master_k_cnet/ls_master_k_cnet.h>

#include <QByteArray>
#include <QMutex>

namespace bench {

/**
 * A minimal host of the driver: owns the shared memory, and has a callback that only counts. The
 * driver has one state per process, so there can be only one host at a time.
 */
class Host
{
public:
    /** The device number of this line. */
    static constexpr int kDevice = 1;
    /** Words of a block read. */
    static constexpr int kBlockWords = 60;
    /** Words of the recipe buffer. */
    static constexpr int kRecipeWords = 4096;

    /** Restarts communication, with blocks of kBlockWords words. */
    Host();
    ~Host();
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    /** Callbacks since the start of the program. */
    static qint64 callbacks();

    /** The byte of the shared block that is 1 while a recipe transfer is requested. */
    unsigned char &recipeWriteRequest();
    unsigned char &recipeReadRequest();

    /** Gets the next frame from the driver. @return false if there is none */
    bool ask() { return intf_getSendFrame(m_frame) != 0; }

    /** The frame that ask() got. */
    const FRAME_PRO &frame() const { return m_frame; }
    bool isWrite() const { return m_frame.sendBuf[3] == 'w'; }

    /** Passes an answer to the driver, and ends the program if the driver rejects it. */
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

/** Makes a key for a range that the panel shows; sets `bitFlag` for names that end in "_bit". */
KEY_ADDRESS key(int station, const char *registerName, int address, int count);

} // namespace bench
