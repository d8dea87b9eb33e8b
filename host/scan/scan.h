#pragma once

#include "host/exchange/reply.h"
#include "host/link/link.h"
#include "host/scan/scan_options.h"
#include "host/scan/scan_result.h"
#include "host/time/clock.h"

#include <QObject>

#include <array>
#include <functional>
#include <memory>

namespace cnet {

class Conversation;
class ResponseTimes;
class StationSearch;
class StationSurvey;

/**
 * Finds out who is on a line: with which settings something answers, which stations, how fast, and
 * which registers they have. It only reads, and announces beforehand how many frames it sends.
 *
 * An answer counts only for the station and the settings that were asked: each try of other
 * settings uses frames of a form whose late answers cannot come any more.
 *
 * It runs on the event loop of its thread, and nothing in it waits.
 */
class Scan : public QObject
{
    Q_OBJECT

public:
    /** Makes a link with these settings, not opened yet. */
    using LinkFactory = std::function<std::unique_ptr<Link>(const LineSettings &line)>;

    /** @param clock must outlive this object */
    Scan(LinkFactory makeLink, const ScanOptions &options, Clock &clock, QObject *parent = nullptr);
    ~Scan() override;

    /** Begins; finished() follows. Once only. */
    void start();

    /** Ends it with what was found so far; finished() follows. */
    void cancel();

    /** Frames that are sent at most until the stations are known. */
    int mostSearchFrames() const;
    /** Frames that are sent at most for the registers of one station. */
    int mostSurveyFrames() const;

    /** Frames sent so far. */
    int frames() const { return m_frames; }
    const QVector<FoundStation> &found() const { return m_found; }
    /** Why the line could not be opened or was lost; empty: it was not. */
    QString lineError() const { return m_lineError; }
    bool isFinished() const { return m_phase == Phase::Finished; }

Q_SIGNALS:
    /** Other settings are tried now. */
    void trying(const cnet::LineSettings &line);
    /** A station is there; found() has it. */
    void stationFound(int station);
    /** The registers of a station are known; found() has them. */
    void surveyed(int station);
    /** @param total what `done` reaches at most, as far as it is known now */
    void progressed(int done, int total);
    void frameSent(const QByteArray &frame);
    void frameEnded(const cnet::Reply &reply);
    void finished();

private:
    enum class Phase { Idle, Searching, Surveying, Finished };

    void step();
    void trySettings();
    void search();
    void survey();
    void wireConversation();
    void noteFound(int station, double tookMs);
    void noteAnswer(const Reply &reply);
    void noteQuestion();
    int takeForm();
    void fail(const QString &reason);
    void end();
    const LineSettings &line() const { return m_options.settings.at(m_tried - 1); }

    LinkFactory m_makeLink;
    ScanOptions m_options;
    Clock &m_clock;
    std::unique_ptr<Alarm> m_step; ///< what is next is done from the event loop
    std::unique_ptr<Link> m_link;
    std::unique_ptr<ResponseTimes> m_times;
    std::unique_ptr<Conversation> m_conversation;
    std::unique_ptr<StationSearch> m_search;
    std::unique_ptr<StationSurvey> m_survey;
    std::array<qint64, 76> m_formUsedMs{}; ///< when each form was sent last; long ago: never
    QVector<FoundStation> m_found;
    Phase m_phase = Phase::Idle;
    int m_tried = 0;    ///< settings
    int m_surveyed = 0; ///< stations
    int m_frames = 0;
    int m_questions = 0;
    int m_form = 0;
    QString m_lineError;
};

} // namespace cnet
