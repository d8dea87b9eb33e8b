#pragma once

#include "bus.h"

#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace plc {

/** What is wrong with a text from the command line, and what was expected: one sentence. */
struct TextError
{
    QString message;
};

template <typename T>
using Parsed = std::variant<T, TextError>;

/** Values for consecutive addresses of one station. */
struct Setting
{
    int station = -1; ///< negative: all stations
    Point first;
    std::vector<quint16> values;
};

/** A ramp and the station it belongs to, all where negative. */
struct RampSetting
{
    int station = -1;
    Ramp ramp;
};

/** A fault and the station it belongs to, all where negative. */
struct FaultSetting
{
    int station = -1;
    Fault fault;
};

/**
 * A register and an address, named as the panel's user names them: "D_W:100", "M_bit:3.5", "TX:7".
 * Word registers are D_W C_W T_W K_W P_W F_W L_W M_W; bits of a word, written WORD.BIT with both
 * numbers decimal, are D_bit K_bit P_bit F_bit L_bit M_bit; contacts are TX and CX.
 */
Parsed<Point> parsePoint(const QString &text);

/** "[STATION/]REGISTER:ADDRESS=VALUE[,VALUE...]"; values decimal, negative, or hexadecimal "0x..".
 */
Parsed<Setting> parseSetting(const QString &text);

/** "[STATION/]REGISTER:FIRST[-LAST][=LOW..HIGH][@MS]". */
Parsed<RampSetting> parseRamp(const QString &text);

/** "[STATION:]KIND[=VALUE[..VALUE]][*TIMES][@PERCENT%]". */
Parsed<FaultSetting> parseFault(const QString &text);

/** The table of fault kinds with their values, for --help. */
QString faultHelp();

/** Puts a setting into effect. @return what went wrong: no such station or address. */
std::optional<TextError> apply(const Setting &setting, Bus &bus);
std::optional<TextError> apply(const RampSetting &setting, Bus &bus);
std::optional<TextError> apply(const FaultSetting &setting, Bus &bus);

} // namespace plc
