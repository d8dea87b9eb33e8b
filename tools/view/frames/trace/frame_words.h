#pragma once

#include "view/frames/trace/frame_row.h"
#include "view/look/colours.h"

#include <QIcon>

namespace cnet::view {

/** "request", "answer", "refusal", "nothing": what a row is, with an arrow for its way. */
QString wayWords(const FrameRow &row);

/** "read", "write", "sign of life", "other". */
QString kindWords(FrameKind kind);

/** The same for a project, whatever the language. */
QString kindName(FrameKind kind);

/** What became of it: "good", "no answer", "too late: ..."; empty for a request with no fault. */
QString resultWords(const FrameRow &row);

/** Local time of the day with milliseconds; empty where nobody knows it. */
QString timeWords(const FrameRow &row);

/** "12.3 ms"; empty where nobody knows it. */
QString responseWords(const FrameRow &row);

/** How bad it is. @param faults at least one */
Tone toneOf(FrameFaults faults);

/** A sign known by its shape: a cross, a clock, a triangle. @param faults at least one */
QIcon faultIcon(FrameFaults faults, const QPalette &palette);

} // namespace cnet::view
