#pragma once

#include "host/capture/capture_output.h"
#include "host/capture/packet_format.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace cnet {

/** Nanoseconds as the system has them, or as a test does. */
struct CaptureClock
{
    std::function<qint64()> wallNs;   ///< since 1970 in UTC; may jump
    std::function<qint64()> steadyNs; ///< from any zero; never falling
};

CaptureClock systemCaptureClock();

/** Where a capture goes and what it looks like. */
struct CaptureOptions
{
    QString path; ///< "-": standard output
    CaptureFormat format = CaptureFormat::ExportedPdu;
    qint64 fileBytes = 0;   ///< a file is at most so long; 0: no limit
    qint64 fileSeconds = 0; ///< a file spans at most so much; 0: no limit
    int files = 1;          ///< how many are kept with the present one, where either is limited
    QString program;        ///< that writes it, with its version

    bool isRing() const { return fileBytes > 0 || fileSeconds > 0; }
};

/** Who may have bytes that are not written yet. */
class CaptureSource
{
public:
    CaptureSource() = default;
    virtual ~CaptureSource() = default;
    CaptureSource(const CaptureSource &) = delete;
    CaptureSource &operator=(const CaptureSource &) = delete;

    /** Hands over what was followed by nothing since then. @param steadyNs on the capture's clock
     */
    virtual void flushOlderThan(qint64 steadyNs) = 0;
};

/** What a capture knows of a line. */
struct CaptureInterface
{
    QString name;
    int file = 0; ///< in which it was described last, counted from 1
    quint32 number = 0;
    quint64 lost = 0; ///< packets since the last one that was written
};

/**
 * A capture that Wireshark opens, written packet by packet as the lines talk. One for a program,
 * for any number of lines, on one thread; lines come and go (CaptureLine).
 *
 * Whatever happens to its output ends the capture and not the program, which ignores SIGPIPE where
 * the output may be a pipe.
 */
class Capture
{
public:
    /** What a frame says, in words for its comment. It takes any bytes. */
    using Words = std::function<QString(const QByteArray &frame, CaptureDirection direction)>;
    /** One sentence for people: the capture has ended too early, or has begun to miss packets. */
    using Trouble = std::function<void(const QString &what)>;

    /**
     * Opens the output; what a file holds stays until the first line begins.
     * @param error receives one sentence when the result is null
     */
    static std::unique_ptr<Capture> open(const CaptureOptions &options, QString &error,
                                         const CaptureClock &clock = systemCaptureClock());

    /** A file that was made for a capture that never began goes again. */
    ~Capture();
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;

    void setWords(Words words) { m_words = std::move(words); }
    void setTrouble(Trouble trouble) { m_trouble = std::move(trouble); }

    /** False once it has ended too early. */
    bool isRunning() const { return !m_ended; }

    /** Whether anything that went over the lines is missing. */
    bool isIncomplete() const { return m_incomplete; }

    /** Begins the file, as the first line does. Until then a file holds what it held. */
    void begin();

    /** For CaptureLine. @param source until removeSource() */
    void addSource(CaptureSource *source);
    void removeSource(CaptureSource *source);

    /** For CaptureLine: writes what has waited for more for too long, of any line. */
    void flushStale(qint64 nowNs);

    /** For CaptureLine: writes a packet. @param byteNs when its last byte came or went */
    void record(CaptureInterface &line, CaptureDirection direction, qint64 byteNs,
                const QByteArray &bytes, const QString &remark);

    qint64 steadyNs() const { return m_clock.steadyNs(); }

private:
    Capture(const CaptureOptions &options, const CaptureClock &clock);
    bool openOutput(QString &error);
    CaptureWrite writePacket(CaptureInterface &line, CapturePacket packet, const QByteArray &bytes);
    bool beginFile();
    bool isFull(qint64 more) const;
    bool rotate();
    void end(const QString &reason);
    void tellTrouble(const QString &what);
    QString comment(const QByteArray &bytes, CaptureDirection direction,
                    const QString &remark) const;

    CaptureOptions m_options;
    CaptureClock m_clock;
    Words m_words;
    Trouble m_trouble;
    CaptureOutput m_output;
    std::vector<CaptureSource *> m_sources;
    bool m_created = false; ///< the file was not there before
    bool m_begun = false;
    bool m_ended = false; ///< too early
    bool m_incomplete = false;
    bool m_toldSlow = false;
    int m_file = 0;             ///< from 1
    quint32 m_interfaces = 0;   ///< described in the present file
    qint64 m_packets = 0;       ///< in the present file
    qint64 m_startWallNs = 0;   ///< when the present file began
    qint64 m_startSteadyNs = 0; ///< the same
    qint64 m_lastSteadyNs = 0;  ///< of the last packet
};

} // namespace cnet
