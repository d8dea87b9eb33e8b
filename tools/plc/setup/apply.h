#pragma once

#include "plc/setup/fault_text.h"
#include "plc/setup/motion_text.h"
#include "plc/setup/setting_text.h"
#include "plc/stations/bus.h"

#include <optional>
#include <vector>

namespace plc {

/** A station has at most so many motions, and as many faults. */
constexpr int kMostPerStation = 1000;
/** The motions of a station move at most so many values: each costs time at every step. */
constexpr int kMostMoving = 65536;

/** The stations with this number; negative: all. There is always one at least. */
Parsed<std::vector<Unit *>> unitsOf(int station, Bus &bus);

/** @return the error if a range does not exist in a station. */
std::optional<TextError> checkRange(const Unit &unit, const Point &first, int count);

/**
 * Applies a setting to its stations. A motion takes the place of one of just the same range.
 * @return the error if a station or address does not exist, or if it would be too many.
 */
std::optional<TextError> apply(const Setting &setting, Bus &bus);
std::optional<TextError> apply(const MotionSetting &setting, Bus &bus);
std::optional<TextError> apply(const FaultSetting &setting, Bus &bus);

} // namespace plc
