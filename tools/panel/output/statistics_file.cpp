#include "panel/output/statistics_file.h"

#include "host/text/whole_file.h"
#include "panel/output/statistics_json.h"
#include "panel/system/output_file.h"

namespace cnet::panel {

StatisticsFile::StatisticsFile(const QString &path, const Session &session, Messages &messages)
    : m_path(path)
    , m_session(session)
    , m_messages(messages)
{
    connect(&m_signal, &ReportSignal::caught, this, &StatisticsFile::write);
}

bool StatisticsFile::write()
{
    QString error;
    const auto file = openOutputFile(m_path, error);
    if (!file) {
        m_messages.say(error);
        return false;
    }
    const StatisticsMoment moment{m_session.linkName(), m_session.nowMs(),
                                  QDateTime::currentDateTime()};
    const QByteArray json = statisticsJson(m_session.statistics(), moment);
    if (!replaceFile(*file, json)) {
        m_messages.say(QString::fromLatin1("cannot write %1: %2").arg(m_path, file->errorString()));
        return false;
    }
    return true;
}

} // namespace cnet::panel
