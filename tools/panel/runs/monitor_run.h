#pragma once

#include "host/driver/driver.h"
#include "host/tag/tag_set.h"
#include "panel/options/link_settings.h"
#include "panel/options/tag_input.h"
#include "panel/output/monitor_output.h"
#include "panel/system/messages.h"

#include <functional>
#include <optional>

namespace cnet::panel {

/** What a monitor shows and for how long. */
struct MonitorRun
{
    QVector<Tag> tags; ///< what is watched
    TagSet writable;   ///< whose names can be written; empty: none has one
    QString tagFile;   ///< where they come from; empty: from no file
    /** Reads the file again; see panel::chooseAgain(). */
    std::function<std::optional<ChosenTags>(QStringList &complaints)> chooseAgain;
    OutputFormat format = OutputFormat::Text;
    qint64 durationMs = 0; ///< 0: no limit
    int rounds = 0;        ///< 0: no limit
    QByteArray request;    ///< ends when this is sent more often than in `rounds`; empty: no limit
};

/**
 * Reads and shows the items until a limit is reached or a signal asks for the end. Tags of a file
 * that somebody stores anew meanwhile, or has read again by the key r, take the place of those
 * before.
 *
 * @return exit code: kDeviceFailed when at the end any item was not good, or a value implausible
 */
int runMonitor(Driver &driver, const LinkSettings &link, const MonitorRun &run, Messages &messages);

} // namespace cnet::panel
