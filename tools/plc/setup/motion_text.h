#pragma once

#include "plc/motion/motion.h"
#include "plc/setup/point_text.h"

#include <array>

namespace plc {

/** How a kind of motion is written: as an option, and as a command. */
struct MotionKindText
{
    MotionKind kind;
    const char *name; ///< "ramp"
    const char *form; ///< what stands behind it
    const char *meaning;
};

constexpr int kMotionKinds = 5;

/** All kinds, in the order of MotionKind. */
const std::array<MotionKindText, kMotionKinds> &motionKindTexts();

/** How one of them is written. */
const MotionKindText &motionKindText(MotionKind kind);

/** A motion and its station; negative: all stations. */
struct MotionSetting
{
    int station = -1;
    Motion motion;
};

/** "[STATION/]REGISTER:FIRST[-LAST][=LOW..HIGH][+STEP][@MS]"; +STEP is for counters only. */
Parsed<MotionSetting> parseMotion(MotionKind kind, const QString &text);

/** The kind and what parseMotion() takes: "ramp 1/D_W:100-119=0..9999@1000". */
QString motionText(const MotionSetting &setting);

} // namespace plc
