#pragma once

#include "ls_master_k_cnet/ls_master_k_cnet.h"
#include "plc/stations/line.h"

#include <QMutex>
#include <QString>

#include <array>
#include <atomic>
#include <mutex>
#include <vector>

namespace threads {

constexpr int kStation = 1;
constexpr int kLiveWords = 40;  ///< from D 0 on: the PLC changes them itself
constexpr int kPanelWord = 200; ///< D; so many words for each panel thread
constexpr int kPanelWords = 64;
constexpr int kBitWord = 400; ///< D; words whose bits a panel thread writes
constexpr int kBitWords = 4;
constexpr int kRecipeWord = 500; ///< D
constexpr int kRecipeWords = 8;
constexpr int kEchoWord = 600; ///< D; one for each thread, written from within the callback
constexpr int kThreads = 3;    ///< the exchange and at most two of the panel
constexpr int kExchangeThread = 2;

/**
 * Register names. They live as long as the program, so that no thread ever drops the last user of a
 * text: Qt counts these safely, but is not instrumented, so the sanitizer does not see that it
 * does.
 */
struct Names
{
    QString words = QString::fromLatin1("D_W");
    QString dataBits = QString::fromLatin1("D_bit");
    QString relayBits = QString::fromLatin1("M_bit");
    QString contacts = QString::fromLatin1("TX");
};
Names &names();

/** Which of the host's threads hold the host's own lock while they call the driver. */
enum class HostLock {
    None,
    Panel, ///< the exchange thread takes it in its callback
    All
};

/** A place of the PLC and the value that a thread has written there last. */
struct Written
{
    QString *regName;
    plc::Point point; ///< its address is the driver's as well
    int value;
};

/** What the host's threads share. */
struct Host
{
    explicit Host(HostLock lock)
        : hostLock(lock)
    {}

    const HostLock hostLock;
    std::recursive_mutex own; ///< the host's lock: around calls, and in the callback
    QMutex requests;          ///< of the two request bytes; the driver takes it by itself
    std::vector<unsigned char> shared = std::vector<unsigned char>(kSharedBlockSize, 0);
    std::vector<unsigned char> recipe = std::vector<unsigned char>(2 * kRecipeWords, 0);
    std::array<int, kThreads> echoes{}; ///< values in the echo words; each its thread's alone
    std::atomic<int> exchanges{0};
    std::atomic<int> changes{0};
    std::atomic<int> inCallback{0};
    std::atomic<int> meetings{0}; ///< callbacks that began while another one ran
    std::atomic<bool> panelEnded{false};
};

/** The lock of the request bytes of the host that runs. */
extern std::atomic<const QMutex *> requestsLock;

/** Holds the host's lock where this thread does so. */
class Calling
{
public:
    Calling(Host &host, bool isPanel);

private:
    std::unique_lock<std::recursive_mutex> m_lock;
};

/** Starts communication: settings, screen and recipe. */
void start(Host &host);

/** The same calls, at any moment. */
void startAgain(Host &host, int turn);

/** The exchange until the panel has ended and all that waits is served. */
void exchange(Host &host, plc::Bus &bus);

/** One panel thread: writes, reads and asks, so many turns at least. @param thread 0 or 1 */
std::vector<Written> usePanel(Host &host, int thread, int turns);

/** The thread that is running, for its own places. */
void beThread(int thread);

} // namespace threads
