#include "host/exchange/report_text.h"

#include "host/wire/frame_words.h"

namespace cnet {

QString failureText(const ExchangeReport &report)
{
    if (report.outcome == Outcome::Refused) {
        return QLatin1String("refused: ") + refusalInWords(report.refusal);
    }
    return report.isSilence() ? QLatin1String("no answer") : QLatin1String("no usable answer");
}

bool isWriteRequest(const QByteArray &frame)
{
    const int commandPosition = 3; // ENQ st(2) command
    const char command = frame.size() > commandPosition ? frame.at(commandPosition) : '\0';
    return command == 'w' || command == 'W';
}

} // namespace cnet
