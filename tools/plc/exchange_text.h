#pragma once

#include "line.h"

#include <QString>

namespace plc {

/** What a frame says, in words: "station 1: read 5 words from %DW0100". Never fails. */
QString frameInWords(const QByteArray &frame);

/** Bytes for the eye: control characters by name, others as themselves, the rest as hexadecimal. */
QString visible(const QByteArray &bytes);

/** The fault as it is written on the command line, without its times and its likelihood. */
QString faultName(FaultKind kind);

/** The lines of a trace, without line end: the request, and what is sent or that nothing is. */
QString exchangeText(const Exchange &exchange);

} // namespace plc
