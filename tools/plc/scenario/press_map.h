#pragma once

namespace plc {

/**
 * Where the press keeps its values; examples/press/tags.csv says the same for masters. Values of
 * several words have the lower half first.
 */
namespace press_map {

// Set points, data registers
constexpr int kSpeedSet = 100;       ///< strokes a minute, tenths
constexpr int kPressureSet = 101;    ///< bar
constexpr int kTemperatureSet = 102; ///< as kTemperature

// Actual values, data registers
constexpr int kSpeed = 110;       ///< strokes a minute, tenths
constexpr int kPosition = 111;    ///< of the ram above the table, tenths of a millimetre, signed
constexpr int kTemperature = 112; ///< of the oil: tenths of a degree above -40
constexpr int kLoad = 113;        ///< percent
constexpr int kPressure = 114;    ///< bar, float
constexpr int kStrokes = 116;     ///< 32 bits
constexpr int kGood = 118;        ///< 32 bits
constexpr int kBad = 120;         ///< 32 bits
constexpr int kEnergy = 122;      ///< Wh, 64 bits
constexpr int kTilt = 126;        ///< of the ram, micrometres, 32 bits, signed
constexpr int kState = 130;       ///< PressState
constexpr int kAlarms = 131;      ///< bits

// The job, data registers
constexpr int kJobName = 140; ///< characters, two a word
constexpr int kJobNameWords = 10;
constexpr int kJobSize = 150;  ///< parts, four BCD digits
constexpr int kJobTotal = 151; ///< parts of all jobs, eight BCD digits
constexpr int kJobDone = 153;  ///< parts
constexpr int kZones = 160;    ///< four temperatures of the mould, tenths of a degree, signed
constexpr int kZoneCount = 4;

// The recipe, data registers
constexpr int kRecipe = 200;
constexpr int kRecipeWords = 10;
constexpr int kRecipeSpeed = 1;       ///< word of the recipe, as kSpeedSet
constexpr int kRecipePressure = 2;    ///< as kPressureSet
constexpr int kRecipeTemperature = 3; ///< as kTemperatureSet
constexpr int kRecipeStroke = 4;      ///< way of the ram, tenths of a millimetre
constexpr int kRecipeDwell = 5;       ///< at the bottom, milliseconds
constexpr int kRecipeZones = 6;       ///< four words, as kZones

// Bits of the auxiliary relay M, word 0. Buttons are reset when they were obeyed.
constexpr int kRunning = 0;
constexpr int kStart = 1;
constexpr int kStop = 2;
constexpr int kReset = 3;

// The input relay P, word 0
constexpr int kDoorClosed = 0;

// Bits of kAlarms
constexpr int kDoorAlarm = 0;
constexpr int kHeatAlarm = 1;
constexpr int kPressureAlarm = 2;
constexpr int kOilWarning = 3; ///< does not stop the press

// Timer 0 runs while the ram dwells, in hundredths of a second; counter 0 counts the parts of a
// job. Their contacts are on when they are through.
constexpr int kDwellTimer = 0;
constexpr int kJobCounter = 0;

} // namespace press_map
} // namespace plc
