#pragma once

#include <QByteArray>
#include <QString>

namespace cnet {

/** What became of a block that was to be written. */
enum class CaptureWrite {
    Done,
    Dropped, ///< the reader does not read: it is left out
    Failed,  ///< nothing can be written any more; errorText() says why
};

/**
 * Where a capture goes: a regular file, which holds whole blocks only whatever happens, or a pipe
 * with a reader, for which nobody waits long.
 */
class CaptureOutput
{
public:
    /** Blocks up to this size reach a pipe as a whole or not at all. */
    static constexpr int kLongestBlock = 4096;

    CaptureOutput() = default;
    ~CaptureOutput() { close(); }
    CaptureOutput(const CaptureOutput &) = delete;
    CaptureOutput &operator=(const CaptureOutput &) = delete;

    /**
     * Opens a path; what a regular file holds stays until empty(). A regular file is refused while
     * another program writes a capture to it.
     * @return false when it cannot be written; errorText() says why
     */
    bool open(const QString &path);

    /**
     * Takes standard output. What the program prints there from now on goes to standard error.
     * @return false when that is a terminal, or not there; errorText() says why
     */
    bool openStandardOutput();

    void close();

    bool isOpen() const { return m_descriptor >= 0; }
    bool isRegular() const { return m_regular; }
    /** Bytes that a regular file had when it was opened, or that were written since empty(). */
    qint64 size() const { return m_size; }

    /** Leaves a regular file without content; without effect on anything else. */
    bool empty();

    /** @param block at most kLongestBlock bytes */
    CaptureWrite write(const QByteArray &block);

    /** The same for what no reader can do without. @return false unless it is written */
    bool writeAll(const QByteArray &block);

    QString errorText() const { return m_error; }

private:
    bool fail(const QString &text);
    bool fail(int code);
    bool readerHasRoom();

    int m_descriptor = -1;
    bool m_regular = false;
    bool m_readerSlow = false; ///< it was waited for in vain, and has not read since
    qint64 m_size = 0;
    QString m_error;
};

/**
 * Makes room for a new file in a ring: PATH becomes PATH.1, that becomes PATH.2, and so on, with
 * the number before the suffix ("line.1.pcapng"). The oldest goes.
 *
 * @param files how many there are at most with the new one, 1 or more
 * @return false when PATH is still there; errno says why
 */
bool makeRoomInRing(const QString &path, int files);

/** The name of an older file of the ring. @param age 1 for the one before the present one */
QString ringFile(const QString &path, int age);

} // namespace cnet
