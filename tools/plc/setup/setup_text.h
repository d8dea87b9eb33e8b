#pragma once

#include "plc/stations/bus.h"

#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace plc {

/** One sentence for the user: what is wrong with a command line and what was expected. */
struct TextError
{
    QString message;
};

template <typename T>
using Parsed = std::variant<T, TextError>;

/** Initial values of consecutive addresses. */
struct Setting
{
    int station = -1; ///< negative: all stations
    Point first;
    std::vector<quint16> values;
};

/** A ramp and its station; negative: all stations. */
struct RampSetting
{
    int station = -1;
    Ramp ramp;
};

/** A fault and its station; negative: all stations. */
struct FaultSetting
{
    int station = -1;
    Fault fault;
};

/**
 * Parses a register and an address, in the notation of the panel: "D_W:100", "M_bit:3.5", "TX:7".
 * Word registers are D_W C_W T_W K_W P_W F_W L_W M_W. The bits of a word, written WORD.BIT with
 * both numbers decimal, are D_bit K_bit P_bit F_bit L_bit M_bit. Contacts are TX and CX.
 */
Parsed<Point> parsePoint(const QString &text);

/** "[STATION/]REGISTER:ADDRESS=VALUE[,VALUE...]"; values like 12, -3 or 0x1234. */
Parsed<Setting> parseSetting(const QString &text);

/** "[STATION/]REGISTER:FIRST[-LAST][=LOW..HIGH][@MS]". */
Parsed<RampSetting> parseRamp(const QString &text);

/** "[STATION:]KIND[=VALUE[..VALUE]][*TIMES][@PERCENT%]". */
Parsed<FaultSetting> parseFault(const QString &text);

/** The table of fault kinds with their values and limits, for --help. */
QString faultHelp();

/** Applies a setting to its stations. @return the error if a station or address does not exist. */
std::optional<TextError> apply(const Setting &setting, Bus &bus);
std::optional<TextError> apply(const RampSetting &setting, Bus &bus);
std::optional<TextError> apply(const FaultSetting &setting, Bus &bus);

} // namespace plc
