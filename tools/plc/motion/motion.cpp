#include "plc/motion/motion.h"

#include <algorithm>
#include <cmath>

namespace plc {

namespace {

constexpr int kStepsPerTurn = 360;
constexpr int kWordsPerCounter = 2;

/** A random number for each place; neighbouring places have nothing in common. */
quint64 mixed(quint64 place)
{
    place += 0x9E3779B97F4A7C15ULL;
    place = (place ^ place >> 30U) * 0xBF58476D1CE4E5B9ULL;
    place = (place ^ place >> 27U) * 0x94D049BB133111EBULL;
    return place ^ place >> 31U;
}

/** From 0 to 1. */
double randomAt(quint64 series, quint64 octave, qint64 place)
{
    const quint64 bits = mixed(mixed(series * 16 + octave) + static_cast<quint64>(place));
    return static_cast<double>(bits >> 11U) / static_cast<double>(1ULL << 53U);
}

int stepLength(const Motion &motion)
{
    const int length =
        motion.kind == MotionKind::Sine ? motion.stepMs / kStepsPerTurn : motion.stepMs;
    return std::max(length, 1);
}

/** Somewhere between low and high; 0 is low, 1 is high. */
qint64 between(const Motion &motion, double share)
{
    const auto span = static_cast<double>(std::max<qint64>(motion.high - motion.low, 0));
    return motion.low + static_cast<qint64>(std::llround(span * share));
}

qint64 sineAt(const Motion &motion, qint64 step, int index)
{
    const int turnMs = std::max(motion.stepMs, 1);
    const auto ms = static_cast<double>(step * stepLength(motion) % turnMs);
    const double turns = ms / turnMs + static_cast<double>(index) / std::max(motion.count, 1);
    return between(motion, (1 - std::cos(turns * kTurn)) / 2);
}

qint64 valueAt(const Motion &motion, qint64 step, int index)
{
    const qint64 span = std::max<qint64>(motion.high - motion.low, 0) + 1;
    switch (motion.kind) {
    case MotionKind::Ramp:
        return motion.low + (step + index) % span;
    case MotionKind::Sine:
        return sineAt(motion, step, index);
    case MotionKind::Square:
        return (step + index) % 2 == 0 ? motion.low : motion.high;
    case MotionKind::Walk:
        return between(motion, walkAt((quint64{motion.seed} << 24U) +
                                          static_cast<quint64>(motion.first.address + index),
                                      step));
    case MotionKind::Counter: {
        const qint64 value = motion.low + step % span * (motion.increment % span) % span;
        return index % kWordsPerCounter == 0 ? value : value >> kBitsPerWord;
    }
    }
    return motion.low;
}

} // namespace

double walkAt(quint64 series, qint64 step)
{
    // Random numbers 8, 32 and 128 steps apart with straight lines in between, the slower the
    // wider.
    static constexpr struct
    {
        qint64 steps;
        double share;
    } kOctaves[] = {{8, 0.2}, {32, 0.3}, {128, 0.5}};
    // The sum of several random numbers is seldom near its ends.
    constexpr double kStretch = 1.6;
    double sum = 0;
    quint64 number = 0;
    for (const auto &octave : kOctaves) {
        const qint64 place = step / octave.steps;
        const double from = randomAt(series, number, place);
        const double to = randomAt(series, number, place + 1);
        const auto way =
            static_cast<double>(step % octave.steps) / static_cast<double>(octave.steps);
        sum += octave.share * (from + (to - from) * way);
        ++number;
    }
    return std::clamp(0.5 + (sum - 0.5) * kStretch, 0.0, 1.0);
}

void Motion::advance(Memory &memory, qint64 nowMs)
{
    const qint64 step = std::max<qint64>(nowMs - startMs, 0) / stepLength(*this);
    if (step == current) {
        return;
    }
    current = step;
    for (int i = 0; i < count; ++i) {
        const Point point{first.device, first.kind, first.address + i};
        if (!memory.setValue(point, static_cast<quint16>(valueAt(*this, step, i)))) {
            return;
        }
    }
}

} // namespace plc
