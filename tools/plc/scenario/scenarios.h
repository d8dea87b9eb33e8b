#pragma once

#include "plc/scenario/scenario.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace plc {

/** Makes a scenario. @return null if none has this name. @param seed of what is random in it */
std::shared_ptr<Scenario> makeScenario(const QString &name, quint32 seed);

/** The names of all scenarios with what each is, a line each. */
QStringList scenarioHelp();

} // namespace plc
