#include "panel/standard_output.h"

#include <cstdio>

namespace panel {

void writeToStandardOutput(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace panel
