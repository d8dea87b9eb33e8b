#include "plc/scenario/scenarios.h"

#include "plc/scenario/press.h"

namespace plc {

std::shared_ptr<Scenario> makeScenario(const QString &name, quint32 seed)
{
    return name == QLatin1String("press") ? std::make_shared<Press>(seed) : nullptr;
}

QStringList scenarioHelp()
{
    return {QLatin1String("press  a press line: strokes, temperatures, pressure, counters, alarms, "
                          "a job and a recipe")};
}

} // namespace plc
