#pragma once

#include "host/exchange/exchange_report.h"

#include <QString>

namespace cnet {

/** Why a request failed, for a message: "no answer", "refused: 1132, no such device...". */
QString failureText(const ExchangeReport &report);

/** True when a frame asks a station to write. */
bool isWriteRequest(const QByteArray &frame);

} // namespace cnet
