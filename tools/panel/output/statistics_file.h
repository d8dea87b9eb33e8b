#pragma once

#include "host/session.h"
#include "panel/system/messages.h"
#include "panel/system/report_signal.h"

#include <QObject>

namespace cnet::panel {

/** A session's numbers in a file: whenever SIGUSR1 asks for them, and when told. */
class StatisticsFile : public QObject
{
    Q_OBJECT

public:
    /** @param path of the file to replace; @param session,messages must outlive this object */
    StatisticsFile(const QString &path, const Session &session, Messages &messages);

    /** Replaces the file as a whole. @return false, and it was said why, when it could not */
    bool write();

private:
    QString m_path;
    const Session &m_session;
    Messages &m_messages;
    ReportSignal m_signal;
};

} // namespace cnet::panel
